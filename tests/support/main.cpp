// The start of test programs that need nothing of their own.

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>

#include "host/CMSGFunction.h"
#include "support/JudgedRun.h"

namespace {

/// What tests see of texts: their keys, unless they bring a table.
class Keys final : public qd::CMSGFunction::ITable {
 public:
  bool Find(std::string_view key, qd::CString& text) const override {
    text.assign(key.begin(), key.end());
    return true;
  }
};

/// A table for each test, since one that a test brings leaves none.
class KeysInEachTest final : public ::testing::EmptyTestEventListener {
 public:
  void OnTestStart(const ::testing::TestInfo&) override { m_keys = std::make_unique<Keys>(); }
  void OnTestEnd(const ::testing::TestInfo&) override { m_keys.reset(); }

 private:
  std::unique_ptr<Keys> m_keys;
};

}  // namespace

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  ::testing::UnitTest::GetInstance()->listeners().Append(new KeysInEachTest);  // the list's
  return qd::test::RunJudged(std::filesystem::path(argv[0]).stem().string());
}

// The start of test programs that need nothing of their own.

#include <gmock/gmock.h>

#include <filesystem>

#include "support/JudgedRun.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  return qd::test::RunJudged(std::filesystem::path(argv[0]).stem().string());
}

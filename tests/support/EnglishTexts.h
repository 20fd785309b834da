#pragma once

#include <fstream>
#include <sstream>

#include "host/CMSGFunction.h"
#include "support/Places.h"
#include "workbench/text/MessageFile.h"

namespace qd::test {

/// The program's English texts, for tests of whole sentences.
class EnglishTexts final : public CMSGFunction::ITable {
 public:
  EnglishTexts() {
    std::ifstream file(SourceFolder() + "/workbench/app/messages/en.txt", std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    m_texts = workbench::ParseMessages(bytes.str()).texts;
  }
  bool Find(std::string_view key, CString& text) const override {
    return workbench::LookUpText(key, {&m_texts}, text);
  }

 private:
  workbench::MessageTexts m_texts;
};

}  // namespace qd::test

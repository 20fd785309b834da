#pragma once

#include <fstream>
#include <sstream>

#include "host/CMSGFunction.h"
#include "host/MessageFile.h"
#include "support/Places.h"

namespace qd::test {

/// The program's English texts, for tests of whole sentences.
class EnglishTexts final : public CMSGFunction::ITable {
 public:
  EnglishTexts() {
    std::ifstream file(SourceFolder() + "/workbench/app/messages/en.txt", std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    m_texts = ParseMessages(bytes.str()).texts;
  }
  bool Find(std::string_view key, CString& text) const override { return LookUpText(key, {&m_texts}, text); }

 private:
  MessageTexts m_texts;
};

}  // namespace qd::test

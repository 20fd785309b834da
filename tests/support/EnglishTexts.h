#pragma once

#include <fstream>

#include "host/MessageFile.h"
#include "support/Places.h"

namespace qd::test {

/// The program's English texts, for tests of whole sentences.
class EnglishTexts {
 public:
  EnglishTexts() : m_table(Read()) {}

 private:
  static MessageTexts Read() {
    std::ifstream file(SourceFolder() + "/workbench/app/messages/en.txt", std::ios::binary);
    return ReadMessages(file).texts;
  }

  MessageTable m_table;
};

}  // namespace qd::test

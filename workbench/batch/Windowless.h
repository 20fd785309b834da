#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/MessageOutput.h"
#include "platform/headless/HeadlessToolkit.h"

namespace qd::workbench {

/// What documents without a window need once in a program: a window system that shows nothing, and who hears what
/// the model warns of.
class Windowless final {
 public:
  /// Whether the program has a window system and hears warnings by itself; it notes them here then.
  enum class Beside { Nothing, Window };

  /// `exchangeProgram` reads and writes files of shapes and works on them.
  explicit Windowless(std::string exchangeProgram, Beside beside = Beside::Nothing)
      : m_exchangeProgram(std::move(exchangeProgram)),
        m_own(beside == Beside::Nothing ? std::make_unique<Own>(*this) : nullptr) {}

  const std::string& ExchangeProgram() const { return m_exchangeProgram; }
  /// Lets windows that nobody sees handle what was posted to them: rows follow their records then.
  void Settle() {
    if (m_own != nullptr) m_own->toolkit.Pump();
  }
  void NoteWarning(const CString& text) { m_warnings.push_back(text); }
  /// The warnings since the last call.
  std::vector<CString> TakeWarnings() { return std::exchange(m_warnings, {}); }

 private:
  /// Both register themselves as the only ones of the program.
  struct Own final : IMessageOutput {
    explicit Own(Windowless& user) : all(user) {}
    void Warn(const CString& text) override { all.NoteWarning(text); }
    Windowless& all;
    HeadlessToolkit toolkit;
  };

  std::string m_exchangeProgram;
  std::vector<CString> m_warnings;
  std::unique_ptr<Own> m_own;
};

/// A sentence of the program with its arguments, which are UTF-8 or the bytes of a file's name.
CString Sentence(std::string_view key, std::initializer_list<std::string> arguments = {});

}  // namespace qd::workbench

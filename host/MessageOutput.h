#pragma once

#include <initializer_list>
#include <span>

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

/// Where the host shows what its parts have to say to the user. The object registers itself; there is one at a
/// time.
class QD_EXPORT IMessageOutput {
 public:
  IMessageOutput();
  virtual ~IMessageOutput();
  IMessageOutput(const IMessageOutput&) = delete;
  IMessageOutput& operator=(const IMessageOutput&) = delete;
  virtual void Warn(const CString& text) = 0;  ///< shows a text to the user and goes on
};

/// A text with its arguments, which are put in as they are: "%s" is the next of them, "%1" to "%9" the one of that
/// number, so that a language can have them in its own order. Where there is none of that number the place stays.
QD_EXPORT CString qdFormat(const CString& format, std::span<const CString> arguments);
/// Likewise, with arguments that are written out.
inline CString qdFormat(const CString& format, std::initializer_list<CString> arguments) {
  return qdFormat(format, std::span(arguments.begin(), arguments.size()));
}

/// Shows a warning, a format with its arguments. Without an output nothing happens.
QD_EXPORT void qdMsgOutFormatWarning(const CString& format, std::initializer_list<CString> arguments = {});

}  // namespace qd

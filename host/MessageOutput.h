#pragma once

#include <initializer_list>

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
  virtual void Warn(const CString& text) = 0;
};

/// A text with each "%s" replaced by the next argument, which is put in as it is.
QD_EXPORT CString qdFormat(const CString& format, std::initializer_list<CString> arguments);

/// Shows a warning. Each "%s" of `format` is replaced by the next argument. Without an output nothing happens.
QD_EXPORT void qdMsgOutFormatWarning(const CString& format, std::initializer_list<CString> arguments = {});

}  // namespace qd

#pragma once

#include <string_view>

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

/// The host's message table: display texts by key in the current language.
class QD_EXPORT CMSGFunction {
 public:
  /// The host's side. The object registers itself and must outlive every look-up.
  class QD_EXPORT ITable {
   public:
    ITable();
    virtual ~ITable();
    ITable(const ITable&) = delete;
    ITable& operator=(const ITable&) = delete;
    /// False when the key has no text.
    virtual bool Find(std::string_view key, CString& text) const = 0;
  };

  /// The text of a key in the current language; the key itself when it has none.
  static CString GetValue(std::string_view key);
};

}  // namespace qd

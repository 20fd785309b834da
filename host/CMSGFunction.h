#pragma once

#include <string_view>

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

/// Display texts by key, from the host's message table in the current language. Hosts that bring no table have the
/// module's own texts in English.
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

  /// The text of a key in the current language; without one the module's own in English, else the key itself.
  static CString GetValue(std::string_view key);
};

}  // namespace qd

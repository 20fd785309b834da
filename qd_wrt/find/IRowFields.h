#pragma once

#include <cstddef>

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

class CQDTreeItem;

/// What a host lets its users search rows by, beside what the module knows of a row itself (title, ID, colour,
/// box, type, selection, ancestors): numbers and texts by the names of fields, `elements:>1000`, `vendor:smith`.
///
/// The operations are called while a query is answered, on any row and in any order, at most once a row and
/// condition. They are not told about the ends of nodes: a node is good during the call only.
class QD_EXPORT IRowFields {
 public:
  /// What can be asked for.
  struct Field {
    CString name;           ///< letters, digits and underscores, a letter first; case does not count
    bool isNumber = false;  ///< whether it holds numbers, else texts
  };

  virtual ~IRowFields() = default;
  /// All fields; the operations below call them by their index. Asked for each query. A field whose name the
  /// module has itself is used for `material` and `set` only, of which the host may know more.
  virtual TArray<Field> GetFields() const = 0;
  /// 1 and the number of a row; 0 when it has none, `value` stays.
  virtual int GetNumber(const CQDTreeItem& node, std::size_t field, double& value) const = 0;
  /// Appends the texts of a row, of which it may have any number. Returns 1; 0 when it has none.
  virtual int GetTexts(const CQDTreeItem& node, std::size_t field, TArray<CString>& texts) const = 0;
};

}  // namespace qd

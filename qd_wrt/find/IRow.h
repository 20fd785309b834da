#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

/// Types of rows; a row may be of several, as a part that is a solid.
enum RowKind : std::uint32_t {
  kRowPart = 1,
  kRowSolid = 2,
  kRowSurface = 4,
  kRowCurve = 8,
  kRowPoint = 16,
  kRowSet = 32,
  kRowMesh = 64,
  kRowMaterial = 128,
  kRowCoordinate = 256
};

/// @{
/// Fields of text that every query knows. Others are numbered as the host does (IRowFields).
inline constexpr std::size_t kMaterialField = SIZE_MAX;
inline constexpr std::size_t kSetField = SIZE_MAX - 1;
/// @}

/// What a query asks of a row, each only when the answer depends on it. Views must last until the next call.
class QD_EXPORT IRow {
 public:
  virtual ~IRow() = default;
  virtual std::wstring_view Title() const = 0;  ///< as it is shown
  /// The title as SearchKeys keeps it.
  virtual std::string_view Key() const = 0;
  virtual std::optional<std::uint64_t> Id() const = 0;  ///< none for a row without a number
  virtual std::optional<COLORREF> Colour() const = 0;   ///< none for a row without a colour
  /// Whether the box is checked, none for a row without a box.
  virtual std::optional<bool> IsShown() const = 0;
  virtual bool IsSelected() const = 0;  ///< whether it is selected
  /// Bits of RowKind.
  virtual std::uint32_t Kinds() const = 0;
  /// A number of the host's, by the index of the field; none for a row without it.
  virtual std::optional<double> Number(std::size_t field) const = 0;
  /// Appends the texts of a field; see above for which.
  virtual void AppendTexts(std::size_t field, TArray<CString>& texts) const = 0;
};

}  // namespace qd

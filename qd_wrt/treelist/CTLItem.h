#pragma once

#include <cstdint>
#include <string_view>

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

/// The record of one row of a tree-list control: the texts of all columns, the caller's data value, colour and
/// flags. The control owns it from the insertion of its row to the row's end.
///
/// The column texts stand in one counted string, divided by characters of code 0, so a text may hold any other
/// character.
class QD_EXPORT CTLItem {
 public:
  const CString& GetItemString() const { return m_text; }  ///< all columns, as they are kept
  /// Sets column 0.
  void InsertItem(const CString& text) { SetSubstring(0, text); }
  /// The text of a column; empty for a column that the record does not have.
  CString GetSubstring(int column) const { return CString(View(column)); }
  /// Likewise without a copy; valid until the record changes.
  std::wstring_view View(int column) const;
  /// Replaces the text of a column; missing columns before it become empty. When column 0 is empty and column 1
  /// is written, the empty column 0 and its separator are dropped and the text becomes column 0. A negative
  /// column writes nothing.
  void SetSubstring(int column, const CString& text);
  /// Column 0.
  CString GetItemText() const { return GetSubstring(0); }
  /// Column 1 as a decimal number, 0 when it is none.
  std::uint32_t GetItemKey() const;

  /// @{
  /// The owner's, for whatever it wants.
  std::uint32_t GetData() const { return m_data; }
  void SetData(std::uint32_t data) { m_data = data; }
  /// @}
  /// @{
  /// Whether its texts are bold.
  bool IsBold() const { return m_bold; }
  void SetBold(bool bold) { m_bold = bold; }
  /// @}
  COLORREF GetColor() const { return m_colour; }  ///< says something only where HasColor does
  bool HasColor() const { return m_hasColour; }   ///< whether it shows a swatch
  /// The low 24 bits of `colour` are in force from now on; there is no way back to a row without colour.
  void SetColor(COLORREF colour);
  /// @{
  /// Whether its title is edited in a box, or chosen from a list.
  bool IsEditable() const { return m_editable; }
  bool HasCombo() const { return m_combo; }
  /// @}
  /// A non-zero flag clears the other one.
  void SetEditable(int editable);
  void SetCombo(int combo);  ///< other than 0 when it is chosen from a list

 private:
  CString m_text;
  std::uint32_t m_data = 0;
  COLORREF m_colour = 0xFFFFFF;
  // Nothing ever sets another separator. It is widened with sign for comparison.
  std::int8_t m_separator = 0;
  bool m_bold = false;
  bool m_hasColour = false;
  bool m_editable = false;
  bool m_combo = false;
};

}  // namespace qd

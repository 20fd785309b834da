#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Export.h"
#include "platform/Types.h"
#include "qd_wrt/find/IRowFields.h"

namespace qd {

/// The words that a query may use: names of fields, and of types and colours, these in English and in the language
/// on show. Made anew when the language or the host's fields change.
class QD_EXPORT QueryWords {
 public:
  /// What stands behind a field's colon.
  enum class Value : std::uint8_t { Title, In, Ids, Type, Colour, Shown, Hidden, Selected, Number, Text };
  /// What can stand before a colon.
  struct Field {
    CString name;               ///< without the colon
    std::string key;            ///< what it is compared by
    Value value = Value::Text;  ///< what may stand behind it
    std::size_t number = 0;     ///< of Number and Text: as IRow calls it
  };
  /// A type or a colour.
  struct Name {
    CString english;  ///< in small letters
    CString shown;    ///< in the language on show
    /// @{
    /// What it is compared by.
    std::string englishKey;
    std::string shownKey;
    /// @}
    std::uint32_t bit = 0;  ///< of a type: its RowKind; of a colour: its place in the table of colours
  };
  /// The text of a message key in the language on show: CMSGFunction::GetValue.
  using TextOf = CString (*)(std::string_view key);

  /// `fields`: the host's, null for none; read here only.
  explicit QueryWords(TextOf textOf, const IRowFields* fields = nullptr);

  /// @{
  /// All that there are, in the order in which they are offered.
  const TArray<Field>& Fields() const { return m_fields; }
  const TArray<Name>& Types() const { return m_types; }
  const TArray<Name>& Colours() const { return m_colours; }
  /// @}
  /// Null when there is none. `color` is a `colour`, too.
  const Field* FindField(std::wstring_view name) const;
  /// The bits of the names that are written so, or of those that begin so; 0 for none.
  static std::uint32_t BitsOf(const TArray<Name>& names, std::wstring_view text);

 private:
  void AddHostFields(const IRowFields& fields);

  TArray<Field> m_fields;
  TArray<Name> m_types;
  TArray<Name> m_colours;
};

}  // namespace qd

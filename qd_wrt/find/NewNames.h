#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/Export.h"
#include "platform/Types.h"
#include "qd_wrt/find/QueryFault.h"
#include "qd_wrt/find/Replacing.h"

namespace qd {

/// How many names are made from the old ones, as people type it (docs/manual/rename.md).
struct NamingRule {
  /// What becomes of letters.
  enum class Letters : std::uint8_t { AsTheyAre, Capitals, Small };
  /// Text with `{name}`, the old name; `{n}`, a number that counts on, and `{n:03}`, the same with at least three
  /// digits; `{id}` and `{id:03}`. A brace itself is `{{` or `}}`.
  CString pattern = L"{name}";
  /// What is replaced in the old name before: a text as it is, or an expression between slashes; nothing when
  /// empty.
  CString sought{};
  CString replacement{};                 ///< stands in its place
  Letters letters = Letters::AsTheyAre;  ///< see Letters
  CString first = L"1";                  ///< the number of the first name
  CString step = L"1";                   ///< from one name to the next
};

/// Makes names by a rule. One thread at a time.
class QD_EXPORT NameMaker {
 public:
  /// None for a rule that cannot be followed, and the fault says why; its place is not said.
  static std::optional<NameMaker> Make(const NamingRule& rule, QueryFault& fault);

  /// The new name of what is called `name`, has the number `id`, and is the one at `place`, from 0.
  CString NewName(std::wstring_view name, std::int64_t id, std::size_t place);

  /// Numbers to begin with, and steps, are no greater than this, nor smaller than its opposite.
  static constexpr std::int64_t kMostNumber = 1'000'000'000;
  /// As many as a name has room for.
  static constexpr unsigned kMostDigits = 63;

 private:
  struct Piece {
    enum class Kind : std::uint8_t { Text, Name, Number, Id };
    Kind kind = Kind::Text;
    CString text{};
    unsigned digits = 1;
  };

  static const char* ReadPattern(std::wstring_view pattern, std::vector<Piece>& pieces);
  CString Replaced(std::wstring_view name);

  std::vector<Piece> m_pieces;
  CString m_sought;  // as it is
  std::optional<find::Replacer> m_replacer;
  CString m_replacement;
  NamingRule::Letters m_letters = NamingRule::Letters::AsTheyAre;
  std::int64_t m_first = 1;
  std::int64_t m_step = 1;
};

}  // namespace qd

#include "qd_wrt/treelist/FitText.h"

#include <algorithm>
#include <vector>

#include "platform/text/Characters.h"

namespace qd {

namespace {

/// These would let one name pass for another.
constexpr wchar_t kLeftToRightOverride = 0x202D;
constexpr wchar_t kRightToLeftOverride = 0x202E;
constexpr wchar_t kReplacement = 0xFFFD;

/// A row has one line, whatever its text holds.
bool EndsLine(wchar_t element) {
  constexpr wchar_t kNextLine = 0x85;
  constexpr wchar_t kLineSeparator = 0x2028;
  constexpr wchar_t kParagraphSeparator = 0x2029;
  return (element >= 9 && element <= 13) || element == kNextLine || element == kLineSeparator ||
         element == kParagraphSeparator;
}

}  // namespace

CString FitText(const Font& font, std::wstring_view text, int width) {
  CString shown(text);
  for (wchar_t& element : shown) {
    if (EndsLine(element)) element = L' ';
    if (element == kLeftToRightOverride || element == kRightToLeftOverride) element = kReplacement;
  }
  if (shown.empty() || IToolkit::Instance().TextWidth(font, shown) <= width) return shown;
  std::vector<int> widths;
  IToolkit::Instance().PrefixWidths(font, shown, widths);
  // Widths grow with the prefix, so the longest one that fits is found without measuring each.
  const auto beyond = std::upper_bound(widths.begin(), widths.end(), width);
  const auto length = static_cast<std::size_t>(std::max<std::ptrdiff_t>(beyond - widths.begin() - 1, 0));
  shown.resize(CutLength(shown, length));
  return shown + L"...";
}

}  // namespace qd

#include "qd_wrt/panel/FindTexts.h"

#include <algorithm>

#include "host/CMSGFunction.h"
#include "host/MessageOutput.h"
#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

namespace {

int WidthOf(const CString& text) {
  std::vector<int> widths;
  IToolkit::Instance().PrefixWidths({}, text, widths);
  return widths.back();
}

CString TwoNumbers(const char* key, std::size_t first, std::size_t second) {
  return qdFormat(CMSGFunction::GetValue(key), {GroupedNumber(first), GroupedNumber(second)});
}

}  // namespace

CString GroupedNumber(std::size_t number) {
  constexpr std::size_t kGroup = 3;
  const CString given = CMSGFunction::GetValue("IDS_QD_WRT_FIND_THOUSANDS");
  const wchar_t sign = given.size() == 1 ? given.front() : L',';
  const CString digits = std::to_wstring(number);
  CString text;
  for (std::size_t at = 0; at < digits.size(); ++at) {
    if (at != 0 && (digits.size() - at) % kGroup == 0) text += sign;
    text += digits[at];
  }
  return text;
}

CString CountText(RowFinder& finder, std::size_t rows) {
  if (!finder.IsOn()) return {};
  if (!finder.IsDone()) return CMSGFunction::GetValue("IDS_QD_WRT_FIND_SEARCHING");
  const std::size_t matches = finder.GetMatchCount();
  if (matches == 0) return CMSGFunction::GetValue("IDS_QD_WRT_FIND_NONE");
  const std::size_t place = finder.IsFiltering() ? 0 : finder.GetMatchOfCaret();
  return place != 0 ? TwoNumbers("IDS_QD_WRT_FIND_PLACE", place, matches)
                    : TwoNumbers("IDS_QD_WRT_FIND_COUNT", matches, rows);
}

int WidestCount(std::size_t rows) {
  return std::max({WidthOf(TwoNumbers("IDS_QD_WRT_FIND_COUNT", rows, rows)),
                   WidthOf(TwoNumbers("IDS_QD_WRT_FIND_PLACE", rows, rows)),
                   WidthOf(CMSGFunction::GetValue("IDS_QD_WRT_FIND_SEARCHING")),
                   WidthOf(CMSGFunction::GetValue("IDS_QD_WRT_FIND_NONE"))});
}

CString SearchText(RowFinder& finder, std::size_t rows, int width) {
  if (!finder.IsOn()) return {};
  const CString format =
      CMSGFunction::GetValue(finder.IsFiltering() ? "IDS_QD_WRT_FIND_FILTERED" : "IDS_QD_WRT_FIND_FOUND");
  const CString count = CountText(finder, rows);
  const int rest = std::max(width - WidthOf(qdFormat(format, {CString(), count})), 0);
  return qdFormat(format, {FitText({}, finder.GetQuery(), rest), count});
}

}  // namespace qd

#include "qd_wrt/treelist/SelectedText.h"

#include <string_view>

#include "qd_wrt/treelist/RowRecord.h"
#include "qd_wrt/treelist/TreeColumns.h"

namespace qd {

namespace {

CString ColourText(COLORREF colour) {
  CString text = L"#";
  for (const unsigned part : {colour & 0xFFU, colour >> 8U & 0xFFU, colour >> 16U & 0xFFU}) {
    text += L"0123456789ABCDEF"[part >> 4U];
    text += L"0123456789ABCDEF"[part & 0xFU];
  }
  return text;
}

void AppendCell(CString& line, std::wstring_view text) {
  // What ends a cell or a line cannot stand in one.
  for (const wchar_t element : text) line += element < L' ' ? L' ' : element;
  while (!line.empty() && line.back() == L' ') line.pop_back();
}

}  // namespace

CString SelectedText(const RowTree& rows, const IRowRecords& records, const TreeColumns& columns,
                     const std::function<std::optional<CString>(HTREEITEM, int)>& asked) {
  CString all;
  LaterRow spare;
  const std::vector<int> shown(columns.Shown().begin(), columns.Shown().end());  // who is asked may change them
  for (const HTREEITEM row : rows.Selected(true)) {
    const CTLItem* record = records.LookAt(row, spare);
    if (record == nullptr) continue;
    for (const int column : shown) {
      if (column > 0) all += L'\t';
      if (columns.IsAsked(column)) {
        const std::optional<CString> text = asked(row, column);
        if (!text.has_value()) return all;
        AppendCell(all, *text);
        record = records.LookAt(row, spare);
      } else if (record != nullptr && column == TreeColumns::kSwatch && ShowsSwatch(*record)) {
        all += ColourText(record->GetColor());
      } else if (record != nullptr) {
        AppendCell(all, record->View(column));
      }
    }
    all += L'\n';
  }
  return all;
}

}  // namespace qd

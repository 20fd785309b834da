#include "workbench/native/PropertyPane.h"

#include <algorithm>
#include <utility>

#include "host/CMSGFunction.h"
#include "platform/text/Characters.h"
#include "workbench/native/PickColour.h"

namespace qd::workbench {

namespace {

constexpr int kValueColumn = 1;
constexpr std::size_t kLongestShown = 250;  // characters that a list shows of a text

CString Shown(const CString& text) {
  CString shown = text.substr(0, CutLength(text, kLongestShown));
  std::replace(shown.begin(), shown.end(), L'\0', L' ');
  return shown;
}

CString TextOf(HWND window) {
  CString text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

bool IsHidden(const CBCGPProp& row) {
  for (const CBCGPProp* above = row.parent; above != nullptr; above = above->parent) {
    if (above->collapsed) return true;
  }
  return false;
}

}  // namespace

PropertyPane::PropertyPane(HWND parent)
    : m_list(CreateWindowExW(
          WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"",
          WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | LVS_REPORT | LVS_NOCOLUMNHEADER | LVS_SINGLESEL, 0, 0, 0, 0,
          parent, nullptr, nullptr, nullptr)),
      m_apply(CreateWindowExW(0, WC_BUTTONW, L"", WS_CHILD, 0, 0, 0, 0, parent, nullptr, nullptr, nullptr)) {
  ListView_SetExtendedListViewStyle(m_list, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
  LVCOLUMNW column{};
  column.mask = LVCF_WIDTH;
  for (int index = 0; index <= kValueColumn; ++index) {
    SendMessageW(m_list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&column));
  }
}

PropertyPane::~PropertyPane() {
  CloseEditor(false);
}

void PropertyPane::Place(const RECT& area, HFONT font) {
  const bool button = Page() != nullptr && Page()->HasApplyButton();
  const int line = static_cast<int>(GetDpiForWindow(m_list)) / 4;
  const int width = area.right - area.left;
  MoveWindow(m_list, area.left, area.top, width, area.bottom - area.top - (button ? line : 0), TRUE);
  MoveWindow(m_apply, area.right - 4 * line, area.bottom - line, 4 * line, line, TRUE);
  ShowWindow(m_apply, button ? SW_SHOW : SW_HIDE);
  ListView_SetColumnWidth(m_list, 0, width / 2);
  ListView_SetColumnWidth(m_list, kValueColumn, width / 2 - GetSystemMetrics(SM_CXVSCROLL) - 4);
  for (const HWND window : {m_list, m_apply})
    SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

void PropertyPane::SetPropertySet(std::unique_ptr<IPropertySet> page) {
  // The old page may be in the middle of a change that it makes itself, and an editor may be over one of its rows.
  CloseEditor(false);
  m_rows.clear();
  m_retired.push_back(std::exchange(m_page, std::move(page)));
  if (m_page != nullptr) m_page->SetOnLayout([this] { ShowRows(); });
  m_due = true;
}

void PropertyPane::Refresh() {
  m_due = true;
}

void PropertyPane::ShowIfDue() {
  if (!std::exchange(m_due, false)) return;
  CloseEditor(false);
  m_retired.clear();
  m_rows.clear();
  m_ownPage = m_page == nullptr && m_makeOwnPage ? m_makeOwnPage() : nullptr;
  if (m_ownPage != nullptr) m_ownPage->SetOnLayout([this] { ShowRows(); });
  SetWindowTextW(m_apply, CMSGFunction::GetValue("IDS_WB_APPLY").c_str());
  if (Page() != nullptr) {
    Page()->ShowProperty();
  } else {
    ShowRows();
  }
  SendMessageW(GetParent(m_list), WM_SIZE, 0, 0);  // the button comes and goes
}

void PropertyPane::ShowRows() {
  CloseEditor(false);
  ListView_DeleteAllItems(m_list);
  m_rows.clear();
  const auto insert = [this](const CString& name, const CString& value, int indent) {
    CString text = CString(static_cast<std::size_t>(indent) * 3, L' ') + Shown(name);
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = ListView_GetItemCount(m_list);
    item.pszText = text.data();
    const auto index = SendMessageW(m_list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    CString second = Shown(value);
    item.iSubItem = kValueColumn;
    item.pszText = second.data();
    SendMessageW(m_list, LVM_SETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
  };
  if (Page() == nullptr) return insert(CMSGFunction::GetValue("IDS_WB_NO_PROPERTIES"), L"", 0);
  for (const auto& row : Page()->GetRows()) {
    if (IsHidden(*row)) continue;
    int indent = 0;
    for (const CBCGPProp* above = row->parent; above != nullptr; above = above->parent) ++indent;
    m_rows.push_back(row.get());
    insert(row->name, row->value, indent);
  }
}

// ---- editing --------------------------------------------------------------------------------------------

std::optional<LRESULT> PropertyPane::OnNotify(NMHDR& notice) {
  if (notice.hwndFrom != m_list) return std::nullopt;
  if (notice.code == NM_CUSTOMDRAW) return Draw(reinterpret_cast<NMLVCUSTOMDRAW&>(notice));
  if (notice.code == NM_CLICK || notice.code == NM_DBLCLK) {
    Open(reinterpret_cast<const NMITEMACTIVATE&>(notice).iItem);
  } else if (notice.code == NM_RETURN) {
    Open(ListView_GetNextItem(m_list, -1, LVNI_SELECTED));
  }
  return 0;
}

/// Colours show themselves.
LRESULT PropertyPane::Draw(NMLVCUSTOMDRAW& draw) const {
  if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT) return CDRF_NOTIFYSUBITEMDRAW;
  draw.clrTextBk = GetSysColor(COLOR_WINDOW);
  const std::size_t index = draw.nmcd.dwItemSpec;
  const bool colour = index < m_rows.size() && m_rows[index]->kind == CBCGPProp::Kind::Colour;
  if (colour && draw.iSubItem == kValueColumn) draw.clrTextBk = m_rows[index]->colour;
  return CDRF_NEWFONT;
}

bool PropertyPane::OnCommand(HWND sender) {
  if (sender != m_apply) return false;
  CloseEditor(true);
  if (Page() != nullptr) Page()->ApplyProperty();
  m_due = true;
  return true;
}

void PropertyPane::Open(int index) {
  CloseEditor(true);
  if (index < 0 || index >= static_cast<int>(m_rows.size())) return;
  CBCGPProp& row = *m_rows[static_cast<std::size_t>(index)];
  if (row.kind == CBCGPProp::Kind::Title) {
    row.collapsed = !row.collapsed;
    return ShowRows();
  }
  if (row.calculate) {
    Page()->CalProp(&row);
    return ShowRows();
  }
  if (row.readOnly) return;
  if (row.kind == CBCGPProp::Kind::Colour) return ChooseColour(row);
  OpenEditor(index, row);
}

void PropertyPane::OpenEditor(int index, CBCGPProp& row) {
  RECT area{};
  ListView_GetSubItemRect(m_list, index, kValueColumn, LVIR_LABEL, &area);
  const bool options = row.kind == CBCGPProp::Kind::Options;
  const int height = area.bottom - area.top + (options ? 160 : 0);
  m_editor = CreateWindowExW(
      0, options ? WC_COMBOBOXW : WC_EDITW, L"",
      WS_CHILD | WS_VISIBLE | (options ? CBS_DROPDOWNLIST | WS_VSCROLL : WS_BORDER | ES_AUTOHSCROLL), area.left,
      area.top, area.right - area.left, height, m_list, nullptr, nullptr, nullptr);
  m_edited = &row;
  SendMessageW(m_editor, WM_SETFONT, static_cast<WPARAM>(SendMessageW(m_list, WM_GETFONT, 0, 0)), FALSE);
  for (const CString& option : row.options) {
    SendMessageW(m_editor, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(option.c_str()));
    if (option == row.value)
      SendMessageW(m_editor, CB_SETCURSEL, static_cast<WPARAM>(&option - row.options.data()), 0);
  }
  if (!options) {
    SetWindowTextW(m_editor, row.value.c_str());
    SendMessageW(m_editor, EM_SETSEL, 0, -1);
  }
  SetWindowSubclass(m_editor, EditorProcedure, 0, reinterpret_cast<DWORD_PTR>(this));
  SetFocus(m_editor);
}

LRESULT CALLBACK PropertyPane::EditorProcedure(HWND editor, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                               DWORD_PTR self) {
  auto* pane = reinterpret_cast<PropertyPane*>(self);
  if (message == WM_GETDLGCODE) return DLGC_WANTALLKEYS;
  if (message == WM_CHAR && (w == VK_RETURN || w == VK_ESCAPE)) return 0;
  if (message == WM_KEYDOWN && (w == VK_RETURN || w == VK_ESCAPE)) return pane->CloseEditor(w == VK_RETURN), 0;
  const LRESULT result = DefSubclassProc(editor, message, w, l);
  if (message == WM_KILLFOCUS) pane->CloseEditor(true);
  return result;
}

void PropertyPane::CloseEditor(bool keep) {
  const HWND editor = std::exchange(m_editor, nullptr);
  if (editor == nullptr) return;
  CBCGPProp& row = *std::exchange(m_edited, nullptr);
  const CString text = TextOf(editor);
  const bool hadFocus = GetFocus() == editor;
  RemoveWindowSubclass(editor, EditorProcedure, 0);
  DestroyWindow(editor);
  if (hadFocus) SetFocus(m_list);
  // A text that the box cannot hold as it is has not been changed when it looks the same.
  if (!keep || text == row.value.substr(0, row.value.find(L'\0'))) return;
  row.value = text;
  const IPropertySet* page = Page();
  if (row.kind == CBCGPProp::Kind::Options) Page()->OnSelChangeComboBox(&row);
  if (page == Page()) Tell(row);
}

void PropertyPane::ChooseColour(CBCGPProp& row) {
  const IPropertySet* page = Page();
  COLORREF chosen = row.colour;
  if (!PickColour(GetParent(m_list), chosen) || page != Page()) return;  // the page has changed meanwhile
  row.colour = chosen;
  Tell(row);
}

void PropertyPane::Tell(CBCGPProp& row) {
  const IPropertySet* page = Page();
  Page()->OnPropertyChanged(&row, row.data);
  if (page != Page()) return;  // what it wrote has brought another page
  // What is written at once is shown anew, for the page may have refused it; with an apply button it waits.
  if (!Page()->HasApplyButton()) {
    m_due = true;
  } else {
    ShowRows();
  }
}

}  // namespace qd::workbench

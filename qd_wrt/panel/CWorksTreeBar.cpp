#include "qd_wrt/panel/CWorksTreeBar.h"

#include <algorithm>
#include <array>

#include "host/CMSGFunction.h"
#include "platform/CDC.h"
#include "qd_wrt/core/CQDTreeIcon.h"
#include "qd_wrt/panel/FindBar.h"
#include "qd_wrt/panel/PaneLayout.h"

namespace qd {

namespace {

struct Column {
  const char* key;
  int width;
};
constexpr int kLeastTitleWidth = 120;
constexpr std::array<Column, 3> kColumns{
    {{"IDS_QD_WRT_Item", kLeastTitleWidth}, {"IDS_QD_WRT_ID", 60}, {"IDS_QD_WRT_Color", 60}}};
constexpr int kHeaderMargin = 8;
constexpr int kColumnStep = 20;

}  // namespace

CWorksTreeBar::CWorksTreeBar() : m_find(std::make_unique<FindBar>(m_tree, [this] { LayOut(); })) {}

CWorksTreeBar::~CWorksTreeBar() {
  DestroyWindow();
  SetDocument(nullptr);
}

void CWorksTreeBar::SetDocument(CQDDocBase* doc) {
  if (m_doc != nullptr) m_doc->Unfollow(*this);
  m_doc = doc;
  if (m_doc != nullptr) m_doc->Follow(*this);
}

std::unique_ptr<IWorksTree> CWorksTreeBar::CreateObject() {
  return std::make_unique<CWorksTreeBar>();
}

// ---- creation -------------------------------------------------------------------------------------------

int CWorksTreeBar::OnCreate() {
  Initialize();
  const CQDTreeIcon& icons = CQDTreeIcon::Instance();
  m_tree.SetImageList(&icons.GetRowImageList(), &icons.GetStateImageList());
  for (std::size_t i = 0; i < kColumns.size(); ++i) {
    m_tree.InsertColumn(static_cast<int>(i), CMSGFunction::GetValue(kColumns[i].key), 0, kColumns[i].width, 0);
  }
  OnLookChanged();
  m_tip.Create(this);
  m_tip.AddTool(m_tree, L"whatever");
  LayOut();
  return 0;
}

void CWorksTreeBar::Initialize() {
  const CRect client = GetClientRect();
  CQDTreeListHeaderCtrl& header = m_tree.GetHeader();
  const int headerHeight = IToolkit::Instance().FontHeight({}) + kHeaderMargin;
  header.Create(this, kHeaderId, {0, 0, client.right, headerHeight});
  header.SetImageList(&CQDTreeIcon::Instance().GetHeaderImageList());
  const int barHeight = IToolkit::Instance().GetMetric(Metric::ScrollBarHeight);
  m_tree.Create(this, kTreeId, {0, headerHeight, client.right - 5, client.bottom - barHeight - 4});
  m_tree.SetPane(this);
  m_bar.Create(this, kScrollBarId, {0, client.bottom - barHeight, client.right, client.bottom});
  m_find->Create(this, kFindBarId, kFindListId);
}

// ---- layout ---------------------------------------------------------------------------------------------

void CWorksTreeBar::ResetScrollBar() {
  if (m_layoutPending || !IsCreated()) return;
  m_layoutPending = true;
  Post(kLayoutMessage, 0);
}

void CWorksTreeBar::OnPosted(unsigned id, std::uint64_t) {
  if (id != kLayoutMessage) return;
  m_layoutPending = false;
  LayOut();
}

void CWorksTreeBar::OnSize() {
  StretchWidth();
  LayOut();
}

void CWorksTreeBar::SetBkColor(COLORREF colour) {
  m_ownBackground = true;
  m_tree.SetBackgroundColor(colour);
}

void CWorksTreeBar::OnLookChanged() {
  if (!m_ownBackground) m_tree.SetBackgroundColor(IToolkit::Instance().GetColour(SystemColour::Window));
}

CPoint CWorksTreeBar::GetPreferredSize() const {
  constexpr int kTitleWidth = 220;
  constexpr int kRows = 20;
  const IToolkit& toolkit = IToolkit::Instance();
  return {kTitleWidth + OtherColumnsWidth() + toolkit.GetMetric(Metric::ScrollBarWidth),
          toolkit.FontHeight({}) + kHeaderMargin + kRows * m_tree.GetItemHeight()};
}

int CWorksTreeBar::OtherColumnsWidth() const {
  return m_tree.GetColumnsWidth() - m_tree.GetColumnWidth(0);
}

/// The title column takes what the others leave, until the user sets widths.
void CWorksTreeBar::StretchWidth() {
  if (m_columnsAreUsers || m_tree.GetColumnsNum() == 0) return;
  const int bar = IToolkit::Instance().GetMetric(Metric::ScrollBarWidth);
  m_stretching = true;
  m_tree.GetHeader().SetItemWidth(0,
                                  std::max(GetClientRect().Width() - OtherColumnsWidth() - bar, kLeastTitleWidth));
  m_stretching = false;
}

void CWorksTreeBar::LayOut() {
  const CRect client = GetClientRect();
  const IToolkit& toolkit = IToolkit::Instance();
  const PaneLayout layout = LayOutPane(
      {client.Width(), client.Height(), toolkit.FontHeight({}) + kHeaderMargin, m_tree.GetColumnsWidth(),
       m_tree.VisibleRowCount(), m_tree.GetItemHeight(), toolkit.GetMetric(Metric::ScrollBarWidth),
       toolkit.GetMetric(Metric::ScrollBarHeight), m_find->HeightFor(client.Width())});
  m_find->Place(layout.find);
  m_tree.GetHeader().MoveWindow(layout.header);
  m_tree.MoveWindow(layout.tree);
  m_bar.MoveWindow(layout.bar);
  m_bar.ShowWindow(layout.showBar);
  // Columns that shrank while scrolled keep their right edge at the edge of the pane.
  m_tree.SetHorizontalOffset(std::max(m_tree.GetHorizontalOffset(), -layout.largestOffset));
  m_bar.SetState({layout.largestOffset, layout.visibleWidth, -m_tree.GetHorizontalOffset(), kColumnStep});
}

void CWorksTreeBar::OnHeaderChanged() {
  m_tree.EndEditors();
  if (!m_stretching) m_columnsAreUsers = true;
  m_tree.RecalcColumnsWidth();
  LayOut();
  m_tree.Invalidate();
}

std::vector<int> CWorksTreeBar::GetColumnWidths() const {
  std::vector<int> widths;
  for (int column = 0; m_columnsAreUsers && column < m_tree.GetColumnsNum(); ++column) {
    widths.push_back(m_tree.GetColumns().FullWidthOf(column));
  }
  return widths;
}

void CWorksTreeBar::SetColumnWidths(const std::vector<int>& widths) {
  constexpr int kWidest = 10000;
  const bool usable = widths.size() == static_cast<std::size_t>(m_tree.GetColumnsNum()) &&
                      std::all_of(widths.begin(), widths.end(), [](int width) {
                        return width >= CHeaderBase::kMinimumWidth && width <= kWidest;
                      });
  if (!usable) return;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    m_tree.GetHeader().SetItemWidth(static_cast<int>(column), widths[column]);
  }
}

void CWorksTreeBar::OnKeyDown(int key, unsigned flags) {
  m_find->OnPanelKey(key, flags);
}

// ---- search ---------------------------------------------------------------------------------------------

int CWorksTreeBar::SetFilter(const CString& query) {
  return m_find->Search(RowFinder::Mode::Filter, query);
}

int CWorksTreeBar::SetFind(const CString& query) {
  return m_find->Search(RowFinder::Mode::Find, query);
}

void CWorksTreeBar::ClearFilter() {
  m_find->Clear();
}

int CWorksTreeBar::GetMatchCount() {
  return m_tree.GetFinder().IsOn() ? static_cast<int>(m_tree.GetFinder().GetMatchCount()) : 0;
}

int CWorksTreeBar::IsFilterDone() const {
  return m_tree.GetFinder().IsDone() ? 1 : 0;
}

int CWorksTreeBar::FindNext(int forward) {
  return m_find->FindNext(forward != 0);
}

int CWorksTreeBar::SelectMatches() {
  return m_find->SelectMatches();
}

void CWorksTreeBar::ShowFindBar(int show) {
  if (show != 0) {
    m_find->Open();
  } else {
    m_find->Hide();
  }
}

void CWorksTreeBar::OnPaint(CDC& dc) {
  dc.FillSolidRect(GetClientRect(), IToolkit::Instance().GetColour(SystemColour::ButtonFace));
}

// ---- notices --------------------------------------------------------------------------------------------

std::intptr_t CWorksTreeBar::OnNotify(Notice& notice) {
  if (notice.from == &m_bar && notice.code == CScrollBar::kNoticeScroll) {
    m_tree.SetHorizontalOffset(-static_cast<CScrollBar::ScrollNotice&>(notice).position);
    return 0;
  }
  if (notice.from == &m_tree.GetHeader()) {
    const auto& header = static_cast<CHeaderBase::HeaderNotice&>(notice);
    if (notice.code == CHeaderBase::kNoticeItemChanged) OnHeaderChanged();
    if (notice.code == CHeaderBase::kNoticeItemClick) OnCaptionClicked(header.item);
    if (notice.code == CHeaderBase::kNoticeMenu) {
      if (m_offersColumns) ShowColumnMenu(header.item, header.screen);
      return m_offersColumns ? 1 : 0;
    }
    if (notice.code == CHeaderBase::kNoticeEdgeDoubleClick) m_tree.FitColumn(header.item);
  }
  // A press that selects has moved the caret, which may have left a match or come to one.
  const bool moves = notice.code == kNoticeClick || notice.code == kNoticeRightClick ||
                     notice.code == CTreeListCtrl::kNoticeBeginDrag ||
                     notice.code == CTreeListCtrl::kNoticeBeginRightDrag;
  if (notice.from == &m_tree && moves) m_find->Follow();
  if (notice.code != CHeaderBase::kNoticeItemClick && notice.code != CHeaderBase::kNoticeItemChanged) {
    const std::weak_ptr<void> life = Life();
    TellParent(notice);
    if (life.expired()) return 0;
  }
  return IWorksTree::OnNotify(notice);
}

void CWorksTreeBar::DisplayToolTip(CPoint point, const CRect& row, bool caret, const CString& text) {
  if (!m_tip.HasTool(m_tree)) return;
  constexpr COLORREF kWhite = 0xFFFFFF;
  constexpr int kGap = 3;
  m_tip.SetTipColors(caret ? 0x5F8080 : 0xDAFEFA, caret ? kWhite : 0);
  m_tip.Track(m_tree.ClientToScreen({point.x, row.bottom + kGap}), text);
}

// ---- requests of the host -------------------------------------------------------------------------------

void CWorksTreeBar::OnChangeLanguage() {
  for (std::size_t i = 0; i < kColumns.size(); ++i) {
    if (i < m_ownTitles.size() && m_ownTitles[i]) continue;
    m_tree.GetHeader().SetItemText(static_cast<int>(i), CMSGFunction::GetValue(kColumns[i].key));
  }
  m_tree.OnChangeLanguage();
  m_find->OnChangeLanguage();
}

void CWorksTreeBar::CreateTreeItems(int treeType, IQDTreeGroupFactory* factory, int active) {
  m_tree.CreateTreeItems(treeType, m_doc, factory, active);
}

void CWorksTreeBar::ResetFilePath() {
  if (m_doc != nullptr) m_tree.SetTitle(m_doc->GetPathName());
}

void CWorksTreeBar::ShowHideLabel(CQDDocBase*, const int& itemType, const iterator& itr, int show) {
  m_tree.ShowHideLabel(itemType, itr, show);
}

void CWorksTreeBar::ShowHideLabel(CQDDocBase*, const TArray<iterator>& itrs, int show) {
  m_tree.ShowHideLabel(itrs, show);
}

void CWorksTreeBar::ShowHideCordLabel(CQDDocBase*, TArray<iterator>& itrs, int show) {
  m_tree.SetShowHideItem(1, itrs, show, 0);
}

void CWorksTreeBar::ShowHideManfLabel(CQDDocBase*, TArray<iterator>& itrs, int show) {
  m_tree.SetShowHideItem(2, itrs, show, 0);
}

void CWorksTreeBar::ShowHideDatum(CQDDocBase*, TArray<iterator>& itrs, int show) {
  m_tree.SetShowHideItem(3, itrs, show, 0);
}

void CWorksTreeBar::SetShowHideItem(CQDDocBase*, int kind, TArray<iterator>& itrs, int show, unsigned flags) {
  m_tree.SetShowHideItem(kind, itrs, show, flags);
}

void CWorksTreeBar::GetGeomTitleAndColor(CQDDocBase*, int& title, int& colour) {
  m_tree.GetGeomTitleAndColor(title, colour);
}

}  // namespace qd

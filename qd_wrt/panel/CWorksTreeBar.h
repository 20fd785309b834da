#pragma once

#include <memory>

#include "host/IWorksTree.h"
#include "platform/CScrollBar.h"
#include "platform/Export.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/treelist/CTreeToolTipCtrl.h"

namespace qd {

class FindBar;

/// The panel that shows one works tree of one document: find bar, header, tree, scroll bar and tool tip. Host
/// requests go to the control's operation of the same name.
class QD_EXPORT CWorksTreeBar : public IWorksTree, private ITreeListPane, private IDocumentFollower {
 public:
  /// @{
  /// Child ids of the parts.
  static constexpr int kHeaderId = 337;
  static constexpr int kTreeId = 373;
  static constexpr int kScrollBarId = 377;
  static constexpr int kFindBarId = 381;
  static constexpr int kFindListId = 382;
  /// @}

  CWorksTreeBar();
  ~CWorksTreeBar() override;
  /// Makes a panel without a window for the host, which owns it.
  static std::unique_ptr<IWorksTree> CreateObject();

  /// The document that the next CreateTreeItems shows; not owned.
  void SetDocument(CQDDocBase* doc);
  CQDDocBase* GetDocument() const { return m_doc; }  ///< not owned; null for none
  CQDTreeListCtrl& GetTreeCtrl() { return m_tree; }  ///< the tree, which lives as long as the panel
  /// What the host lets its users search rows by, null for nothing; not owned.
  void SetRowFields(const IRowFields* fields) { m_tree.SetRowFields(fields); }
  /// The widths of the columns once the user has set one; empty before. For a host that keeps them.
  std::vector<int> GetColumnWidths() const;
  /// Gives kept widths back; a list of another length or with numbers that are no widths is ignored.
  void SetColumnWidths(const std::vector<int>& widths);

  // ---- columns -------------------------------------------------------------------------------------------
  // Three are there: title (0), number (1), colour (2). Their texts are the module's until a host gives others.

  /// Adds a column behind the others and returns its number. What stands in it is asked of nodes when they are
  /// painted (HostNodeKind::cell, CQDTreeItem::DescribeCell), and costs nothing a row. From then on the caption's
  /// menu lets the user show, hide and move columns.
  int AddColumn(const TreeColumn& column);
  int RemoveLastColumn();  ///< takes the last of these away; 0 when there is none
  /// Gives any column another caption, in all languages.
  void SetColumnTitle(int column, const CString& title);
  /// Whether the user shows, hides and moves columns by the menu of their captions.
  void OfferColumns(bool offer) { m_offersColumns = offer; }
  /// Whether a click on a caption sorts the rows by it, then the other way round, then as they were made.
  void SetColumnSortable(int column, bool sortable) { m_tree.SetColumnSortable(column, sortable); }
  /// Shows these columns and no others, from left to right; 0 is the first one. Returns 1; 0 with nothing changed.
  int ShowColumns(const std::vector<int>& columns);
  /// What the user has made of the columns, for a host that keeps it.
  ColumnLayout GetColumnLayout() const;
  /// Gives that back, as far as there are such columns.
  void SetColumnLayout(const ColumnLayout& layout);

  // ---- search --------------------------------------------------------------------------------------------
  // docs/manual/find.md describes queries. A search goes on while the user and the program go on; see RowFinder.

  /// Shows the rows that match a query, and what they stand in, and no others. An open find bar shows the query.
  /// Returns 1; 0 for a wrong query, and the search that was on goes on. An empty query ends it.
  int SetFilter(const CString& query);
  /// Likewise, but shows all rows and marks those that match.
  int SetFind(const CString& query);
  /// All rows show again, none is marked; what was open, the first row on screen and the caret are as before.
  void ClearFilter();
  /// Rows that match; 0 while nothing is searched for.
  int GetMatchCount();
  /// Whether the search has seen all rows.
  int IsFilterDone() const;
  /// Goes to the next match in display order, or to the one before, and selects it alone. Returns 1; 0 for none.
  int FindNext(int forward);
  /// Selects all matches and no other row. Returns 1; 0 without a match.
  int SelectMatches();
  /// Opens the find bar, with the focus in its field; or closes it, and a search that is on goes on.
  void ShowFindBar(int show);

  // ---- requests of the host -----------------------------------------------------------------------------
  void OnChangeLanguage() override;
  void OnChangeProgram() override { m_tree.OnChangeProgram(); }
  void CreateTreeItems(int treeType, IQDTreeGroupFactory* factory, int active) override;
  void DestroyTreeItems() override { m_tree.DestroyTreeItems(); }
  void UpdateDB(CQDDocBase* doc, std::uint64_t hint) override { m_tree.UpdateDB(doc, hint); }
  /// Until a host calls this, the tree has the system's colour for windows.
  void SetBkColor(COLORREF colour) override;
  void ResetSelection(CQDDocBase*, int flag) override { m_tree.ResetSelection(flag); }
  void ResetFilePath() override;
  void RestoreLabel(CQDDocBase*) override { m_tree.RestoreLabel(); }
  void ShowHideLabel(CQDDocBase*, const int& itemType, const iterator& itr, int show) override;
  void ShowHideLabel(CQDDocBase*, const TArray<iterator>& itrs, int show) override;
  void ShowHideAllLabel(CQDDocBase*, int show) override { m_tree.ShowHideAllLabel(show); }
  void ShowHideAllSection(CQDDocBase*, int show) override { m_tree.ShowHideAllSection(show); }
  void ShowHideCordLabel(CQDDocBase* doc, TArray<iterator>& itrs, int show) override;
  void ShowHideManfLabel(CQDDocBase* doc, TArray<iterator>& itrs, int show) override;
  void ShowHideDatum(CQDDocBase* doc, TArray<iterator>& itrs, int show) override;
  void SetShowHideItem(CQDDocBase*, int kind, TArray<iterator>& itrs, int show, unsigned flags) override;
  void SetSelection(CQDDocBase*, int kind, TArray<iterator>& itrs) override { m_tree.SetSelection(kind, itrs); }
  void ChangeGeomTitle(CQDDocBase*, int mode) override { m_tree.ChangeGeomTitle(mode); }
  void GetGeomTitleAndColor(CQDDocBase*, int& title, int& colour) override;
  void ChangeGeomColor(CQDDocBase*, int mode) override { m_tree.ChangeGeomColor(mode); }
  void OnPrePostMode(CQDDocBase*, int mode) override { m_tree.OnPrePostMode(mode); }
  void OnSelectGeom(CQDDocBase*) override { m_tree.OnSelectGeom(); }
  void OnSelectMesh(CQDDocBase*) override { m_tree.OnSelectMesh(); }
  void OnSelectDatum(CQDDocBase*) override { m_tree.OnSelectDatum(); }
  void OnMenuEvent(CQDDocBase*, unsigned command) override { m_tree.OnMenuEvent(command); }
  void OnMenuEventGeomRoot(CQDDocBase*, unsigned command) override { m_tree.OnMenuEventGeomRoot(command); }
  void OnMenuEventMeshRoot(CQDDocBase*, unsigned command) override { m_tree.OnMenuEventMeshRoot(command); }
  void OnMenuEventSLoadRoot(CQDDocBase*, unsigned command) override { m_tree.OnMenuEventSLoadRoot(command); }
  void OnMenuEventBCRoot(CQDDocBase*, unsigned command) override { m_tree.OnMenuEventBCRoot(command); }
  void OnMenuEventDLoadRoot(CQDDocBase*, unsigned command) override { m_tree.OnMenuEventDLoadRoot(command); }
  int IsSelectedItemExist(CQDDocBase*) override { return m_tree.IsAnySelected() ? 1 : 0; }
  void SetGeomRenderMode(CQDDocBase*, TArray<iterator>& itrs) override { m_tree.SetGeomRenderMode(itrs); }
  void ShowHideGeom(CQDDocBase*, TArray<iterator>& itrs, int show) override { m_tree.ShowHideGeom(itrs, show); }
  void ShowHideNode(CQDDocBase*, TArray<iterator>& itrs, int show) override { m_tree.ShowHideNode(itrs, show); }

  // What the tree asks of its pane.
  void ResetScrollBar() override;
  void DisplayToolTip(CPoint point, const CRect& row, bool caret, const CString& text) override;

  void OnPaint(CDC& dc) override;
  /// As wide as titles of the usual length with the other columns beside them.
  CPoint GetPreferredSize() const override;

 protected:
  int OnCreate() override;
  void OnSize() override;
  void OnLookChanged() override;
  void OnKeyDown(int key, unsigned flags) override;
  void OnContextMenu(CPoint screen) override { m_tree.ShowContextMenu(screen); }
  void OnSetFocus() override { m_tree.SetFocus(); }
  void OnPosted(unsigned id, std::uint64_t parameter) override;
  std::intptr_t OnNotify(Notice& notice) override;

 private:
  static constexpr unsigned kLayoutMessage = 0x7F01;

  void HideToolTip() override { m_tip.Pop(); }
  void OnDocumentGone() override { m_doc = nullptr; }
  void ScrollColumns(int steps) override { m_bar.ScrollLines(steps); }

  void Initialize();
  void LayOut();
  int OtherColumnsWidth() const;
  void StretchWidth();
  void OnHeaderChanged();
  void OnCaptionClicked(int column);
  void ShowColumnMenu(int column, CPoint screen);

  CQDTreeListCtrl m_tree;
  CScrollBar m_bar;
  CTreeToolTipCtrl m_tip;
  std::unique_ptr<FindBar> m_find;
  CQDDocBase* m_doc = nullptr;
  std::vector<bool> m_ownTitles;  // by column, as far as a host has given any
  bool m_layoutPending = false;
  bool m_offersColumns = false;
  bool m_columnsAreUsers = false;  // widths were dragged: stretch no more
  bool m_stretching = false;
  bool m_ownBackground = false;  // the host has given one
};

}  // namespace qd

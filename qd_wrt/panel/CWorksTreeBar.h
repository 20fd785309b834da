#pragma once

#include <memory>

#include "host/IWorksTree.h"
#include "platform/CScrollBar.h"
#include "platform/Export.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/treelist/CTreeToolTipCtrl.h"

namespace qd {

/// The panel that shows one works tree of one document: header, tree, horizontal scroll bar and tool tip. Host
/// requests go to the control's operation of the same name.
class QD_EXPORT CWorksTreeBar : public IWorksTree, private ITreeListPane {
 public:
  static constexpr int kHeaderId = 337;
  static constexpr int kTreeId = 373;
  static constexpr int kScrollBarId = 377;

  CWorksTreeBar() = default;
  ~CWorksTreeBar() override;
  /// Makes a panel without a window for the host, which owns it.
  static std::unique_ptr<IWorksTree> CreateObject();

  /// The document that the next CreateTreeItems shows; not owned.
  void SetDocument(CQDDocBase* doc) { m_doc = doc; }
  CQDDocBase* GetDocument() const { return m_doc; }
  CQDTreeListCtrl& GetTreeCtrl() { return m_tree; }
  /// The widths of the columns once the user has set one; empty before. For a host that keeps them.
  std::vector<int> GetColumnWidths() const;
  /// Gives kept widths back; a list of another length or with numbers that are no widths is ignored.
  void SetColumnWidths(const std::vector<int>& widths);

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
  void OnContextMenu(CPoint screen) override { m_tree.ShowContextMenu(screen); }
  void OnSetFocus() override { m_tree.SetFocus(); }
  void OnPosted(unsigned id, std::uint64_t parameter) override;
  std::intptr_t OnNotify(Notice& notice) override;

 private:
  static constexpr unsigned kLayoutMessage = 0x7F01;

  void HideToolTip() override { m_tip.Pop(); }
  void ScrollColumns(int steps) override { m_bar.ScrollLines(steps); }

  void Initialize();
  void LayOut();
  int OtherColumnsWidth() const;
  void StretchWidth();
  void OnHeaderChanged();

  CQDTreeListCtrl m_tree;
  CScrollBar m_bar;
  CTreeToolTipCtrl m_tip;
  CQDDocBase* m_doc = nullptr;
  bool m_layoutPending = false;
  bool m_columnsAreUsers = false;  // widths were dragged: stretch no more
  bool m_stretching = false;
  bool m_ownBackground = false;  // the host has given one
};

}  // namespace qd

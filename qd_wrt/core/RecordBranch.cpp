#include "qd_wrt/core/RecordBranch.h"

#include <utility>

#include "host/ShowPage.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"

namespace qd {

namespace {

/// The row of a record.
class RecordItem final : public CQDTreeItem {
 public:
  RecordItem(CQDTreeListCtrl* control, CQDTreeRecordBranch* root, iterator itr, const RecordRow& row)
      : CQDTreeItem(control, root, row.title, root->Kind().icon, 0), m_itr(itr) {
    const RecordBranchKind& kind = root->Kind();
    m_editable = kind.rename != nullptr;
    m_leftDrag = kind.dropsOn != 0;
    RegsiterDragEnableType(kind.dropsOn);
    m_showID = true;
    m_id = row.number;
    m_showColour = row.colour.has_value();
    m_colour = row.colour.value_or(0);
  }

  int MakeChildItems() override { return 1; }
  iterator GetIterator() const override { return m_itr; }
  std::uint32_t GetRowKinds() const override { return Kind().rowKinds; }
  NameScope GetNameScope() const override { return {reinterpret_cast<std::uintptr_t>(&Kind()), false}; }
  void SetTitleIncludeType() override {
    if (const auto row = Read()) ChangeTitle(row->title);
  }
  void CreateContextMenu(CPoint& screen) override {
    if (Kind().menu == nullptr) return;
    TableMenu menu(Kind().menu());
    GetControl()->TrackMenu(menu.Menu(), screen);
  }
  void OnMenuEvent(unsigned command) override {
    if (Kind().run) Kind().run(*this, command);
  }
  void OnEditChange(const wchar_t* text) override {
    const CQDTreeListCtrl::Handler handler(*GetControl());  // the new name may take this row away
    if (Kind().rename) Kind().rename(*this, text);
    if (!IsDetached()) SetTitleIncludeType();
  }
  void SetPropertyView() override {
    if (!Kind().page) return CQDTreeItem::SetPropertyView();
    ShowPropertyPage(GetDocument(), Kind().page(*this));
  }

  void Follow() {
    const auto row = Read();
    if (!row) return;
    if (row->title != GetTitle()) ChangeTitle(row->title);
    if (row->number != GetID() && row->number != 0) ChangeID(row->number);
    if (!m_showColour || row->colour.value_or(0) == GetColor()) return;
    SetColor(row->colour.value_or(0));
    GetControl()->SetItemColor(GetTreeItemHandle(), GetColor(), 1);
  }

 private:
  const CQDTreeRecordBranch& Root() const { return *static_cast<const CQDTreeRecordBranch*>(GetParent()); }
  const RecordBranchKind& Kind() const { return Root().Kind(); }
  std::optional<RecordRow> Read() const { return Kind().read(Root(), m_itr); }

  iterator m_itr;
};

}  // namespace

CQDTreeRecordBranch::CQDTreeRecordBranch(CQDTreeListCtrl* control, CQDTreeItem* parent,
                                         std::shared_ptr<const RecordBranchKind> kind)
    : CQDTreeBranch(control, parent, kind->root), m_kind(std::move(kind)) {}

CQDTreeItem* CQDTreeRecordBranch::MakeNode(iterator itr) {
  const auto row = m_kind->read(*this, itr);
  return row ? new RecordItem(GetControl(), this, itr, *row) : nullptr;  // owned by this
}

int CQDTreeRecordBranch::ModifyChildItem(iterator itr) {
  CQDTreeItem* child = FindChild(itr);
  if (child == nullptr) return MakeChildItem(itr);
  static_cast<RecordItem*>(child)->Follow();
  return 1;
}

void CQDTreeRecordBranch::OnUpdate() {
  for (const tagTRNotify& change : PendingRecords()) ApplyChange(change);
}

void CQDTreeRecordBranch::OnMenuEvent(unsigned command) {
  if (m_kind->run) m_kind->run(*this, command);
}

}  // namespace qd

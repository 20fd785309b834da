#include "widgets/ModelNode.h"

#include <QBrush>

#include "platform/qt/QtConvert.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/treelist/LaterRows.h"
#include "widgets/ItemModelTree.h"

namespace qd {

namespace {

constexpr std::uint16_t kModelRow = 0xF002;  // tree-item type

bool HasBox(const QModelIndex& index) {
  return index.flags().testFlag(Qt::ItemIsUserCheckable) && index.data(Qt::CheckStateRole).isValid();
}

int BoxOf(const QModelIndex& index) {
  return index.data(Qt::CheckStateRole).toInt() == Qt::Unchecked ? kUnchecked : kChecked;
}

}  // namespace

ModelNode::ModelNode(CQDTreeListCtrl* control, ModelNode* parent, ItemModelTree& tree, const QModelIndex& index)
    : CQDTreeItem(control, parent, FromQt(index.data().toString()), 0, HasBox(index) ? 1 : 0), m_tree(tree) {
  SetTreeItemType(kModelRow);
}

ModelNode::~ModelNode() {
  m_tree.Forget(*this);
}

void ModelNode::OnInitialize() {
  if (!HasOwnRow()) return;
  const QModelIndex index = m_tree.IndexOf(*this);
  if (!index.isValid()) return;
  Refresh(index);
  if (index.model()->hasChildren(index)) PromiseChildren(1);
}

CQDTreeItem* ModelNode::MakeSupplied(std::size_t place) {
  const QModelIndex index = m_tree.IndexBelow(*this, place);
  return index.isValid() ? new ModelNode(GetControl(), this, m_tree, index) : nullptr;  // owned by this
}

bool ModelNode::DescribeSupplied(std::size_t place, LaterRow& shown) const {
  const QModelIndex index = m_tree.IndexBelow(*this, place);
  if (!index.isValid()) return false;
  shown.record.InsertItem(FromQt(index.data().toString()));
  shown.record.SetSubstring(1, FromQt(index.siblingAtColumn(1).data().toString()));
  if (HasBox(index)) shown.box = BoxOf(index);
  if (const QVariant colour = index.data(Qt::DecorationRole); colour.userType() == QMetaType::QColor) {
    shown.record.SetColor(FromQt(colour.value<QColor>()));
  }
  return true;
}

void ModelNode::DescribeSuppliedCell(std::size_t place, int column, TreeCell& cell) const {
  const QModelIndex row = m_tree.IndexBelow(*this, place);
  const QModelIndex index = row.isValid() ? row.siblingAtColumn(ItemModelTree::ModelColumnOf(column)) : row;
  if (!index.isValid()) return;
  const auto colour = [&index](int role) -> std::optional<COLORREF> {
    const QVariant value = index.data(role);
    if (!value.canConvert<QBrush>()) return std::nullopt;
    const QBrush brush = value.value<QBrush>();
    return brush.style() != Qt::NoBrush ? std::optional(FromQt(brush.color())) : std::nullopt;
  };
  cell.text = FromQt(index.data().toString());
  cell.colour = colour(Qt::ForegroundRole);
  cell.background = colour(Qt::BackgroundRole);
}

void ModelNode::Refresh(const QModelIndex& index) {
  CQDTreeListCtrl& control = *GetControl();
  const HTREEITEM row = GetTreeItemHandle();
  const CString title = FromQt(index.data().toString());
  if (title != GetTitle()) ChangeTitle(title);
  const CString second = FromQt(index.siblingAtColumn(1).data().toString());
  if (second != control.GetItemText(row, 1)) control.SetTextOf(row, 1, second);
  if (!control.GetColumns().ShownAsked().empty()) control.InvalidateRow(row);
  const Qt::ItemFlags flags = index.flags();
  const bool enabled = flags.testFlag(Qt::ItemIsEnabled);
  m_editable = enabled && flags.testFlag(Qt::ItemIsEditable);
  control.SetEditable(row, m_editable ? 1 : 0);
  m_leftDrag = m_multiLeftDrag = enabled && flags.testFlag(Qt::ItemIsDragEnabled);
  m_hasCheck = HasBox(index);
  if (m_hasCheck) {
    WriteBox(BoxOf(index));
  } else if (GetCheckStatus() != 0) {
    control.SetItemState(row, 0, kRowStateImage);
  }
  const QVariant colour = index.data(Qt::DecorationRole);
  if (const unsigned icon = m_tree.IconOf(colour); icon != GetIconIndex()) ChangeImage(static_cast<int>(icon));
  m_showColour = colour.userType() == QMetaType::QColor;
  if (!m_showColour) return;
  SetColor(FromQt(colour.value<QColor>()));
  control.SetItemColor(row, GetColor(), 0);
  control.SetTextOf(row, 1, second);  // repaints the row
}

void ModelNode::OnMakeChildren() {
  m_tree.MakeRows(*this);
}

// The model may do with the row what it likes while it is asked, and the widget may go.

int ModelNode::OnClickCheck(int oldState) {
  const Qt::CheckState state = oldState == kChecked ? Qt::Unchecked : Qt::Checked;
  Write(state, Qt::CheckStateRole);
  return 1;
}

void ModelNode::OnEditChange(const wchar_t* text) {
  Write(ToQt(CString(text)), Qt::EditRole);
}

void ModelNode::Write(const QVariant& value, int role) {
  const CQDTreeListCtrl::Handler handler(*GetControl());
  const std::weak_ptr<void> life = GetControl()->Life();
  const QPersistentModelIndex index = m_tree.IndexOf(*this);
  if (!index.isValid() || !index.flags().testFlag(Qt::ItemIsEnabled)) return;
  m_tree.model()->setData(index, value, role);
  if (!life.expired() && !IsDetached() && index.isValid()) Refresh(index);
}

void ModelNode::OnDrop(std::vector<CQDTreeItem*>& nodes) {
  const CQDTreeListCtrl::Handler handler(*GetControl());
  m_tree.Drop(m_tree.IndexOf(*this), nodes);
}

int ModelNode::IsEnableDragType(std::uint16_t type) const {
  return type == kModelRow && IsEnableLeftDrag() ? 1 : 0;
}

}  // namespace qd

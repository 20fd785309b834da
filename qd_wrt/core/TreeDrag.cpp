// Dragging nodes onto nodes and onto the 3-D view.

#include <algorithm>
#include <utility>

#include "qd_wrt/core/CQDTreeIcon.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"

namespace qd {

namespace {

constexpr unsigned kScrollUpTimer = 100;
constexpr unsigned kScrollDownTimer = 101;
constexpr unsigned kExpandTimer = 102;
constexpr unsigned kScrollPeriod = 80;
constexpr unsigned kExpandDelay = 700;

}  // namespace

bool CQDTreeListCtrl::MayDrag(DragButton button) const {
  if (m_dragList.empty()) return false;
  const bool left = button == DragButton::Left;
  const bool several = m_dragList.size() > 1;
  // Several nodes of the tree in use may always go with the left button.
  const bool needsMulti = several && !(left && m_active);
  return std::all_of(m_dragList.begin(), m_dragList.end(), [&](const CQDTreeItem* node) {
    const bool single = left ? node->IsEnableLeftDrag() : node->IsEnableRightDrag();
    const bool multi = left ? node->IsEnableMultiLeftDrag() : node->IsEnableMultiRightDrag();
    return single && (multi || !needsMulti);
  });
}

void CQDTreeListCtrl::OnBeginDrag(DragButton button) {
  GetSelectedTreeItems(m_dragList, 0);
  if (!MayDrag(button) || GetPeer() == nullptr) return m_dragList.clear();
  // The release that ends a right drag asks for a menu, which must not open.
  if (button == DragButton::Right) m_menuArmed = false;
  const Handler handler(*this);  // keeps the memory of dragged nodes that leave the tree meanwhile
  const std::weak_ptr<void> life = Life();
  m_dragging = true;
  if (const Picture* cursor = CQDTreeIcon::Instance().GetDragCursor(button == DragButton::Left)) {
    GetPeer()->SetCursor(*cursor);
  }
  bool released = false;
  CPoint point;
  IToolkit::Instance().RunCapture(*this, [&](const Message& message) {
    if (life.expired() || IsDragEmpty()) return CaptureVerdict::Stop;
    if (message.kind == MessageKind::KeyDown) {
      return message.key == kKeyEscape ? CaptureVerdict::Stop : CaptureVerdict::Swallow;
    }
    if (message.target != this) return CaptureVerdict::Dispatch;
    switch (message.kind) {
      case MessageKind::MouseMove:
        DragTo(message.point);
        return CaptureVerdict::Swallow;
      case MessageKind::LeftUp:
      case MessageKind::RightUp:
        released = true;
        point = message.point;
        return CaptureVerdict::Stop;
      default:
        return CaptureVerdict::Dispatch;
    }
  });
  if (life.expired()) return;
  EndDrag();
  if (released) Drop(button, point);
  if (!life.expired()) m_dragList.clear();
}

bool CQDTreeListCtrl::IsDragEmpty() const {
  return std::all_of(m_dragList.begin(), m_dragList.end(),
                     [](const CQDTreeItem* node) { return node->IsDetached(); });
}

CQDTreeItem* CQDTreeListCtrl::NodeAt(CPoint point) const {
  if (!GetClientRect().Contains(point)) return nullptr;
  unsigned hit = 0;
  return NodeOf(HitTestContent(point, hit));
}

// ---- on the way -----------------------------------------------------------------------------------------

void CQDTreeListCtrl::DragTo(CPoint point) {
  CQDTreeItem* target = NodeAt(point);
  const CQDTreeItem* before = m_dropHighlight;
  ShowDropTarget(target);
  ShowDragLabel(point);
  IPeer& peer = *GetPeer();
  const CRect client = GetClientRect();
  const int edge = GetItemHeight() / 2;
  const auto run = [&peer](unsigned timer, bool on, unsigned period) {
    if (on) {
      peer.SetTimer(timer, period);
    } else {
      peer.KillTimer(timer);
    }
  };
  run(kScrollUpTimer, point.y < client.top + edge, kScrollPeriod);
  run(kScrollDownTimer, point.y >= client.bottom - edge, kScrollPeriod);
  const bool opens =
      target != nullptr && CanOpen(target->GetTreeItemHandle()) && !IsExpanded(target->GetTreeItemHandle());
  if (target != before) run(kExpandTimer, opens, kExpandDelay);
}

void CQDTreeListCtrl::OnTimer(unsigned id) {
  const bool isOurs = id == kScrollUpTimer || id == kScrollDownTimer || id == kExpandTimer;
  if (!m_dragging || !isOurs) return CTreeListCtrl::OnTimer(id);
  const CPoint point = ScreenToClient(IToolkit::Instance().CursorPosition());
  if (id != kExpandTimer) {
    ScrollBy(id == kScrollUpTimer ? -1 : 1);
    ShowDropTarget(NodeAt(point));
  } else {
    GetPeer()->KillTimer(kExpandTimer);
    if (m_dropHighlight != nullptr && !m_dropHighlight->IsDetached()) m_dropHighlight->Expand(1);
  }
}

void CQDTreeListCtrl::ShowDropTarget(CQDTreeItem* target) {
  CQDTreeItem* before = std::exchange(m_dropHighlight, target);
  if (before == target) return;
  if (before != nullptr && IsLive(before->GetTreeItemHandle())) {
    SetRowState(before->GetTreeItemHandle(), 0, kRowDropHighlight);
  }
  if (target != nullptr) SetRowState(target->GetTreeItemHandle(), kRowDropHighlight, kRowDropHighlight);
}

/// Shows beside the pointer what is dragged; greyed where it cannot be dropped.
void CQDTreeListCtrl::ShowDragLabel(CPoint point) {
  constexpr CPoint kBeside{18, 14};
  constexpr COLORREF kGrey = Rgb(0x90, 0x90, 0x90);
  const auto live = [](const CQDTreeItem* node) { return !node->IsDetached(); };
  const auto first = std::find_if(m_dragList.begin(), m_dragList.end(), live);
  if (first == m_dragList.end()) return;
  const bool accepted = m_dropHighlight != nullptr
                            ? (*first)->IsEnableDragType(m_dropHighlight->GetTreeItemType()) != 0
                            : (*first)->IsEnableDragToView() && !GetClientRect().Contains(point);
  CString text = accepted ? L"" : L"\x2298 ";
  text += (*first)->GetTitle();
  if (m_dragList.size() > 1) text += L" +" + std::to_wstring(m_dragList.size() - 1);
  const IToolkit& toolkit = IToolkit::Instance();
  if (!m_dragLabel.IsCreated()) m_dragLabel.Create(this);
  m_dragLabel.SetTipColors(toolkit.GetColour(SystemColour::Window),
                           accepted ? toolkit.GetColour(SystemColour::WindowText) : kGrey);
  m_dragLabel.Track(ClientToScreen({point.x + kBeside.x, point.y + kBeside.y}), text);
}

// ---- the end --------------------------------------------------------------------------------------------

void CQDTreeListCtrl::EndDrag() {
  m_dragging = false;
  m_dragLabel.Pop();
  if (GetPeer() != nullptr) {
    for (const unsigned timer : {kScrollDownTimer, kScrollUpTimer, kExpandTimer}) GetPeer()->KillTimer(timer);
    GetPeer()->SetCursor(CursorShape::Arrow);
  }
  ShowDropTarget(nullptr);
}

void CQDTreeListCtrl::Drop(DragButton button, CPoint point) {
  std::vector<CQDTreeItem*> nodes = m_dragList;
  std::erase_if(nodes, [](const CQDTreeItem* node) { return node->IsDetached(); });
  if (nodes.empty()) return;
  unsigned hit = 0;
  const HTREEITEM row = GetClientRect().Contains(point) ? HitTestContent(point, hit) : HTREEITEM{};
  CQDTreeItem* target = NodeOf(row);
  if (row && target == nullptr) return;  // a row of somebody else is not the view
  if (button == DragButton::Right) {
    if (target != nullptr) target->OnRDrop(nodes, target);
  } else if (target != nullptr) {
    if (nodes.front()->IsEnableDragType(target->GetTreeItemType()) != 0) target->OnDrop(nodes);
  } else if ((m_active || nodes.size() == 1) && nodes.front()->IsEnableDragToView()) {
    CPoint screen = ClientToScreen(point);
    nodes.front()->OnDropToView(screen);
  }
}

}  // namespace qd

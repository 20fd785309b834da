#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/Export.h"
#include "platform/Message.h"
#include "platform/Toolkit.h"

namespace qd {

class CDC;
class IAccessibleRows;

/// A notification from a window to its parent.
struct Notice {
  CWnd* from = nullptr;
  int id = 0;  ///< child id of the sender
  int code = 0;
};

/// Codes of notices that all controls share.
enum NoticeCode : int { kNoticeClick = -2, kNoticeRightClick = -5 };

/// A window: a place in the tree of windows, a peer of the window system while it is created, and handlers for
/// what the window system reports. The owner of the object owns the window; children are members of their owner.
class QD_EXPORT CWnd {
 public:
  CWnd();
  virtual ~CWnd();
  CWnd(const CWnd&) = delete;
  CWnd& operator=(const CWnd&) = delete;

  /// Creates the window inside `parent` (null: to be embedded by the host). Returns 1; 0 when it exists already,
  /// there is no toolkit, the parent has no window, or OnCreate refuses.
  int Create(CWnd* parent, int id, const CRect& area, PeerKind kind = PeerKind::Surface);
  /// Destroys the window and those of its children; the objects stay. Safe to call at any time.
  void DestroyWindow();
  bool IsCreated() const { return m_peer != nullptr; }

  CWnd* GetParent() const { return m_parent; }
  int GetDlgCtrlID() const { return m_id; }
  IPeer* GetPeer() const { return m_peer.get(); }

  void MoveWindow(const CRect& area);
  /// Place in the parent's client coordinates, as last set.
  const CRect& GetPlace() const { return m_place; }
  CRect GetClientRect() const;
  void ShowWindow(bool show);
  bool IsShown() const { return m_shown; }
  void EnableWindow(bool enable);
  void Invalidate();
  void InvalidateRect(const CRect& area);
  CPoint ClientToScreen(CPoint point) const;
  CPoint ScreenToClient(CPoint point) const;
  void SetFocus();
  bool HasFocus() const;
  void Post(unsigned id, std::uint64_t parameter);

  /// Sends a notice to the parent and returns its answer; 0 without a parent. The sender's window and id are
  /// filled in.
  std::intptr_t Notify(Notice& notice);

  /// Tells the parent of a notice of one of this window's children; the parent does not reflect it.
  void TellParent(const Notice& notice);

  /// Hands a message to its handler. Called by the toolkit.
  void Dispatch(const Message& message);
  /// Called by the toolkit for a key that goes to an edit box or a list, before the box and before accelerators.
  /// True when the key is dealt with.
  virtual bool PreTranslateMessage(const Message&) { return false; }
  /// How a screen reader sees the window, null when it is not a tree of rows. Owned by the window.
  virtual const IAccessibleRows* GetAccessibleRows() const { return nullptr; }
  /// Width and height at which the window is of use, for layouts of the host; 0, 0 when it does not mind.
  virtual CPoint GetPreferredSize() const { return {}; }
  /// Paints the window. Called by the toolkit, never outside a paint request.
  virtual void OnPaint(CDC& dc);

  /// A token that is gone once the object is destroyed, for code that calls out and must know afterwards.
  std::weak_ptr<void> Life() const { return m_life; }

 protected:
  /// Called when the window exists and before anybody else sees it. Non-zero lets the creation fail.
  virtual int OnCreate() { return 0; }
  /// Called before the window goes; children are still there.
  virtual void OnDestroy() {}
  virtual void OnSize() {}
  virtual void OnLButtonDown(unsigned flags, CPoint point);
  virtual void OnLButtonUp(unsigned flags, CPoint point);
  virtual void OnLButtonDblClk(unsigned flags, CPoint point);
  virtual void OnRButtonDown(unsigned flags, CPoint point);
  virtual void OnRButtonUp(unsigned flags, CPoint point);
  virtual void OnMouseMove(unsigned flags, CPoint point);
  virtual void OnMouseLeave() {}
  virtual void OnMouseWheel(int lines);
  virtual void OnMouseWheelAcross(int steps);
  virtual void OnKeyDown(int key, unsigned flags);
  virtual void OnChar(int character);
  virtual void OnTextChanged() {}
  virtual void OnTimer(unsigned id);
  virtual void OnPosted(unsigned id, std::uint64_t parameter);
  virtual void OnScroll(int position);
  virtual void OnSetFocus() {}
  virtual void OnKillFocus() {}
  virtual void OnLookChanged() {}
  /// Unhandled requests for a context menu go up to the parent.
  virtual void OnContextMenu(CPoint screen);
  /// Where a menu opens that the keyboard asks for, in client coordinates.
  virtual CPoint KeyboardMenuPlace();
  /// Called for notices of children; the default reflects them to their sender. Returns the sender's answer.
  virtual std::intptr_t OnNotify(Notice& notice);
  /// Called when a child passes on a notice of its own children.
  virtual void OnToldNotice(const Notice&) {}
  /// Called for the window's own notices that its parent reflects.
  virtual std::intptr_t OnReflectedNotice(Notice& notice);

 private:
  std::unique_ptr<IPeer> m_peer;
  CWnd* m_parent = nullptr;
  std::vector<CWnd*> m_children;
  CRect m_place;
  int m_id = 0;
  bool m_shown = true;
  std::shared_ptr<void> m_life = std::make_shared<char>();
};

}  // namespace qd

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
  CWnd* from = nullptr;  ///< the sender
  int id = 0;            ///< child id of the sender
  int code = 0;          ///< what happened; each kind of sender has its own
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
  bool IsCreated() const { return m_peer != nullptr; }  ///< whether there is a window now

  CWnd* GetParent() const { return m_parent; }     ///< null for a window of the host's
  int GetDlgCtrlID() const { return m_id; }        ///< the child id that it was created with
  IPeer* GetPeer() const { return m_peer.get(); }  ///< null without a window

  void MoveWindow(const CRect& area);  ///< in the parent's client coordinates
  /// Place in the parent's client coordinates, as last set.
  const CRect& GetPlace() const { return m_place; }
  CRect GetClientRect() const;  ///< at 0, 0; empty without a window
  /// @{
  /// Whether the window is to be shown; its parents may hide it all the same.
  void ShowWindow(bool show);
  bool IsShown() const { return m_shown; }
  /// @}
  /// Whether the window and all that it stands in, the program's own windows too, are shown.
  bool IsSeen() const { return m_peer != nullptr && m_peer->IsSeen(); }
  void EnableWindow(bool enable);  ///< whether it takes input
  /// @{
  /// Asks for painting; the window, or a part in client coordinates.
  void Invalidate();
  void InvalidateRect(const CRect& area);
  /// @}
  /// @{
  /// Client and screen coordinates; unchanged without a window.
  CPoint ClientToScreen(CPoint point) const;
  CPoint ScreenToClient(CPoint point) const;
  /// @}
  /// @{
  /// Whether keys come here.
  void SetFocus();
  bool HasFocus() const;
  /// @}
  /// Has OnPosted called when the present message is over; dropped when the window goes first.
  void Post(unsigned id, std::uint64_t parameter);

  /// Sends a notice to the parent and returns its answer; 0 without a parent. The sender's window and id are
  /// filled in.
  std::intptr_t Notify(Notice& notice);

  /// How screen readers call the window, and what they take it for.
  void SetAccessible(const Accessible& what);

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
  /// Hands a key to the parent, which may act on it for all that stands in it.
  void PassKeyUp(int key, unsigned flags);

  /// Called when the window exists and before anybody else sees it. Non-zero lets the creation fail.
  virtual int OnCreate() { return 0; }
  /// Called before the window goes; children are still there.
  virtual void OnDestroy() {}
  virtual void OnSize() {}  ///< called when the client area has another size
  /// @{
  /// Called for buttons of the mouse; `flags` are MouseFlags, the point is in client coordinates.
  virtual void OnLButtonDown(unsigned flags, CPoint point);
  virtual void OnLButtonUp(unsigned flags, CPoint point);
  virtual void OnLButtonDblClk(unsigned flags, CPoint point);
  virtual void OnRButtonDown(unsigned flags, CPoint point);
  virtual void OnRButtonUp(unsigned flags, CPoint point);
  /// @}
  /// @{
  /// Called when the pointer moves over the window and when it leaves it.
  virtual void OnMouseMove(unsigned flags, CPoint point);
  virtual void OnMouseLeave() {}
  /// @}
  /// @{
  /// Called for the wheel; see MessageKind.
  virtual void OnMouseWheel(int lines);
  virtual void OnMouseWheelAcross(int steps);
  /// @}
  virtual void OnKeyDown(int key, unsigned flags);  ///< called for a key; who has no use for it calls PassKeyUp
  virtual void OnChar(int character);               ///< called for a typed character
  virtual void OnTextChanged() {}                   ///< called when the user changed the text; edit boxes only
  virtual void OnTimer(unsigned id);                ///< called when a timer of IPeer::SetTimer is due
  virtual void OnPosted(unsigned id, std::uint64_t parameter);  ///< called for what was posted
  virtual void OnScroll(int position);  ///< called with the position that the user asks of the scroll bar
  /// @{
  /// Called when keys come here, and when they do no longer.
  virtual void OnSetFocus() {}
  virtual void OnKillFocus() {}
  /// @}
  virtual void OnLookChanged() {}  ///< called when the system's colours or fonts are others
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

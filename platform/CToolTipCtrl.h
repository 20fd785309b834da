#pragma once

#include "platform/CWnd.h"
#include "platform/Export.h"

namespace qd {

/// A tracking tool tip: shown and hidden by its owner at places that the owner chooses.
class QD_EXPORT CToolTipCtrl : public CWnd {
 public:
  /// See CWnd::Create; not shown yet.
  int Create(CWnd* parent) { return CWnd::Create(parent, 0, {}, PeerKind::ToolTip); }
  /// Registers the window whose rows the tip explains. There is one tool at the most.
  void AddTool(const CWnd& tool, CString text);
  bool HasTool(const CWnd& tool) const { return m_tool == &tool; }  ///< whether this is the registered window
  void SetTipColors(COLORREF background, COLORREF text);            ///< for the next Track
  /// Shows the tip at a screen position.
  void Track(CPoint screen, CString text);
  void Pop();                                        ///< hides the tip
  const CString& GetText() const { return m_text; }  ///< what it says, or said

 private:
  const CWnd* m_tool = nullptr;
  CString m_text;
  COLORREF m_background = 0xFFFFFF;
  COLORREF m_textColour = 0;
  bool m_tracking = false;
};

}  // namespace qd

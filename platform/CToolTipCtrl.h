#pragma once

#include "platform/CWnd.h"
#include "platform/Export.h"

namespace qd {

/// A tracking tool tip: shown and hidden by its owner at places that the owner chooses.
class QD_EXPORT CToolTipCtrl : public CWnd {
 public:
  int Create(CWnd* parent) { return CWnd::Create(parent, 0, {}, PeerKind::ToolTip); }
  /// Registers the window whose rows the tip explains. There is one tool at the most.
  void AddTool(const CWnd& tool, CString text);
  bool HasTool(const CWnd& tool) const { return m_tool == &tool; }
  void SetTipColors(COLORREF background, COLORREF text);
  /// Shows the tip at a screen position.
  void Track(CPoint screen, CString text);
  void Pop();
  bool IsTracking() const { return m_tracking; }
  const CString& GetText() const { return m_text; }

 private:
  const CWnd* m_tool = nullptr;
  CString m_text;
  COLORREF m_background = 0xFFFFFF;
  COLORREF m_textColour = 0;
  bool m_tracking = false;
};

}  // namespace qd

#pragma once

#include "platform/Toolkit.h"

class QScrollBar;
class QWidget;

namespace qd {

class QtToolkit;

/// Windows over widgets of Qt's own.
std::unique_ptr<IPeer> MakeScrollBar(QtToolkit& toolkit, CWnd& owner, QWidget* parent, const CRect& area);
std::unique_ptr<IPeer> MakeEditBox(QtToolkit& toolkit, CWnd& owner, QWidget* parent, const CRect& area);
std::unique_ptr<IPeer> MakeDropDownList(QtToolkit& toolkit, CWnd& owner, QWidget* parent, const CRect& area);
std::unique_ptr<IPeer> MakeToolTip(QtToolkit& toolkit, CWnd& owner, QWidget* parent);

/// Gives a bar its numbers; nobody hears of them as of what the user does.
void ApplyScroll(QScrollBar& bar, const ScrollState& state);

}  // namespace qd

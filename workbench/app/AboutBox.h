#pragma once

class QWidget;

namespace qd::workbench {

/// Says which version the program is, and of which libraries it is made; their licences stand in the manual.
void ShowAboutBox(QWidget& parent);

}  // namespace qd::workbench

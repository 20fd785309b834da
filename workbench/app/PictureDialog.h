#pragma once

#include "workbench/app/DialogFrame.h"

class QSpinBox;

namespace qd::workbench {

/// Asks how large a picture of the view is to be.
class PictureDialog final : public DialogFrame {
 public:
  static constexpr int kMost = 8192;  ///< pixels of a side

  PictureDialog(QSize size, QWidget* parent);
  QSize Size() const;

 private:
  QSpinBox* m_width;  // owned by the dialog
  QSpinBox* m_height;
};

}  // namespace qd::workbench

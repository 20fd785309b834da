#include "workbench/app/PictureDialog.h"

#include <QSpinBox>

#include "workbench/app/Translated.h"

namespace qd::workbench {

PictureDialog::PictureDialog(QSize size, QWidget* parent)
    : DialogFrame("IDS_WB_PICTURE_TITLE", "picture", parent),
      m_width(new QSpinBox(this)),
      m_height(new QSpinBox(this)) {
  AddField("IDS_WB_PICTURE_WIDTH", m_width);
  AddField("IDS_WB_PICTURE_HEIGHT", m_height);
  constexpr int kLeast = 16;
  for (QSpinBox* side : {m_width, m_height}) side->setRange(kLeast, kMost);
  m_width->setObjectName("width");
  m_height->setObjectName("height");
  m_width->setValue(size.width());
  m_height->setValue(size.height());
  AddAct("IDS_WB_PICTURE_SAVE", "save", [this] { accept(); });
  Finish("IDS_WB_CANCEL");
}

QSize PictureDialog::Size() const {
  return {m_width->value(), m_height->value()};
}

}  // namespace qd::workbench

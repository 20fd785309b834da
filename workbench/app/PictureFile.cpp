#include "workbench/app/PictureFile.h"

#include <QBuffer>
#include <QImage>
#include <QString>

#include "workbench/app/FileName.h"
#include "workbench/files/WholeFile.h"

namespace qd::workbench {

bool IsPictureName(const QString& path) {
  return path.endsWith(".png", Qt::CaseInsensitive);
}

bool WritePicture(const QImage& picture, const QString& path) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (picture.isNull() || !IsPictureName(path) || !picture.save(&buffer, "PNG")) return false;
  WholeFile file(NameToBytes(path));
  return file.Write({bytes.constData(), static_cast<std::size_t>(bytes.size())}) && file.Finish();
}

}  // namespace qd::workbench

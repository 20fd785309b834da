#pragma once

class QImage;
class QString;

namespace qd::workbench {

/// Whether a picture may be written to a file of this name: another ending is that of something else.
bool IsPictureName(const QString& path);
/// Writes a picture whole or not at all; a file that is there is replaced. False when that cannot be done, or for
/// a name that is not that of a picture.
bool WritePicture(const QImage& picture, const QString& path);

}  // namespace qd::workbench

#include "workbench/app/FileName.h"

#include <QList>
#include <QStringDecoder>

namespace qd::workbench {

namespace {

constexpr unsigned kFirstOdd = 0xDC80;
constexpr unsigned kLastOdd = 0xDCFF;

/// How many bytes from a place on are one character of UTF-8; 0 for none.
qsizetype CharacterAt(std::string_view bytes, std::size_t place) {
  const auto lead = static_cast<unsigned char>(bytes[place]);
  const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (place + length > bytes.size()) return 0;
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  const QString character = decoder.decode(QByteArrayView(bytes.data() + place, static_cast<qsizetype>(length)));
  const bool one = !decoder.hasError() && character.toUcs4().size() == 1;
  return one ? static_cast<qsizetype>(length) : 0;
}

}  // namespace

QString NameFromBytes(std::string_view bytes) {
  QString name;
  for (std::size_t place = 0; place < bytes.size();) {
    const qsizetype length = CharacterAt(bytes, place);
    if (length > 0) {
      name += QString::fromUtf8(bytes.data() + place, length);
      place += static_cast<std::size_t>(length);
    } else {
      name += QChar(0xDC00U + static_cast<unsigned char>(bytes[place++]));
    }
  }
  return name;
}

std::string NameToBytes(const QString& name) {
  std::string bytes;
  qsizetype from = 0;
  for (qsizetype place = 0; place <= name.size(); ++place) {
    const bool end = place == name.size();
    const unsigned code = end ? 0 : name[place].unicode();
    const bool odd = code >= kFirstOdd && code <= kLastOdd && (place == 0 || !name[place - 1].isHighSurrogate());
    if (!end && !odd) continue;
    bytes += name.mid(from, place - from).toStdString();
    if (odd) bytes += static_cast<char>(code - 0xDC00U);
    from = place + 1;
  }
  return bytes;
}

}  // namespace qd::workbench

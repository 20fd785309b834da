#include "workbench/app/InfoText.h"

#include <QJsonArray>
#include <QLocale>

#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"

namespace qd::workbench {

namespace {

QString Counted(std::uint64_t count) {
  return QLocale().toString(static_cast<qulonglong>(count));
}

QString Shown(double value) {
  return QLocale().toString(value, 'g', 7);
}

QString Shown(const Point3& at) {
  return Shown(at.x) + "; " + Shown(at.y) + "; " + Shown(at.z);
}

QJsonArray JsonOf(const Point3& at) {
  return {at.x, at.y, at.z};
}

}  // namespace

QString InfoText(const QString& path, const ModelInfo& info) {
  QString text = path + "\n";
  const auto add = [&text](const QString& line) { text += "  " + line + "\n"; };
  const auto measure = [&add](const char* key, const QString& value, const QString& unit) {
    add(Text(key) + ": " + value + " " + unit);
  };
  const QString length = ToQt(info.units->length);
  add(Text("IDS_WB_MEASURE_OF", {Counted(info.Parts()), Counted(info.sets)}));
  add(Text("IDS_WB_COUNT_NODES", {Counted(info.nodes)}));
  add(Text("IDS_WB_COUNT_ELEMENTS", {Counted(info.elements)}));
  for (const auto& [name, count] : info.types) add("  " + QString::fromStdString(name) + ": " + Counted(count));
  add(Text("IDS_WB_MATERIALS") + ": " + Counted(info.materials));
  if (!info.box.IsEmpty()) {
    measure("IDS_WB_MEASURE_LEAST", Shown(info.box.least), length);
    measure("IDS_WB_MEASURE_GREATEST", Shown(info.box.greatest), length);
  }
  if (info.length > 0) measure("IDS_WB_MEASURE_LENGTH", Shown(info.length), length);
  if (info.area > 0) measure("IDS_WB_MEASURE_AREA", Shown(info.area), length + QChar(0xB2));
  if (info.volume > 0) measure("IDS_WB_MEASURE_VOLUME", Shown(info.volume), length + QChar(0xB3));
  if (info.volume > 0 || info.mass > 0) measure("IDS_WB_MEASURE_CENTRE", Shown(info.centre), length);
  if (info.mass > 0) measure("IDS_WB_MEASURE_MASS", Shown(info.mass), ToQt(info.units->mass));
  for (const ModelInfo::Quality& quality : info.quality) {
    add(Text(RuleOf(quality.measure).key) + ": " +
        Text("IDS_WB_CHECK_RANGE", {Shown(quality.worst), Shown(quality.mean)}));
  }
  return text;
}

QJsonObject InfoJson(const QString& path, const ModelInfo& info) {
  QJsonObject parts;
  for (std::size_t kind = 0; kind < info.parts.size(); ++kind) {
    if (info.parts[kind] != 0) parts[kPartKindNames[kind]] = static_cast<qint64>(info.parts[kind]);
  }
  QJsonObject types;
  for (const auto& [name, count] : info.types) {
    types[QString::fromStdString(name)] = static_cast<qint64>(count);
  }
  QJsonArray inertia;
  for (const double value : info.inertia) inertia.append(value);
  QJsonObject quality;
  for (const ModelInfo::Quality& found : info.quality) {
    quality[kQualityNames[static_cast<std::size_t>(found.measure)]] =
        QJsonObject{{"looked", static_cast<qint64>(found.looked)},
                    {"bad", static_cast<qint64>(found.bad)},
                    {"worst", found.worst},
                    {"mean", found.mean}};
  }
  QJsonObject json{{"file", path},
                   {"units", QJsonObject{{"length", ToQt(info.units->length)}, {"mass", ToQt(info.units->mass)}}},
                   {"parts", parts},
                   {"mesh_sets", static_cast<qint64>(info.sets)},
                   {"nodes", static_cast<qint64>(info.nodes)},
                   {"elements", static_cast<qint64>(info.elements)},
                   {"element_types", types},
                   {"materials", static_cast<qint64>(info.materials)},
                   {"centre", JsonOf(info.centre)},
                   {"inertia", inertia},
                   {"quality", quality}};
  for (const InfoNumber& number : NumbersOf(info)) json[number.name] = number.value;
  if (!info.box.IsEmpty()) json["box"] = QJsonArray{JsonOf(info.box.least), JsonOf(info.box.greatest)};
  return json;
}

}  // namespace qd::workbench

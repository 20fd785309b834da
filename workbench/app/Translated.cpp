#include "workbench/app/Translated.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QVariant>
#include <QWidget>

#include "workbench/app/MessageTables.h"

namespace qd::workbench {

namespace {

// Properties of Qt's objects that hold texts, and those of ours beside them that hold their keys.
constexpr struct {
  const char* text;
  const char* key;
  const char* arguments;
} kProperties[] = {{"text", "qdText", "qdTextArguments"},
                   {"windowTitle", "qdTitle", "qdTitleArguments"},
                   {"placeholderText", "qdHint", "qdHintArguments"}};
enum Which { kText, kTitle, kHint };
constexpr int kKeyRole = Qt::UserRole + 1;
constexpr const char* kIsLabel = "qdLabel";

QString Read(const QObject& object, const char* key, const QStringList& arguments) {
  const QString text = Text(key, arguments);
  return object.property(kIsLabel).toBool() ? Text("IDS_WB_LABEL", {text}) : text;
}

void Apply(QObject& object, Which which, const char* key, const QStringList& arguments) {
  const auto& property = kProperties[which];
  object.setProperty(property.key, QByteArray(key));
  object.setProperty(property.arguments, arguments);
  object.setProperty(property.text, Read(object, key, arguments));
}

void RetranslateOne(QObject& object) {
  for (const auto& property : kProperties) {
    const QByteArray key = object.property(property.key).toByteArray();
    if (key.isEmpty()) continue;
    const QStringList arguments = object.property(property.arguments).toStringList();
    object.setProperty(property.text, Read(object, key.constData(), arguments));
  }
  auto* box = qobject_cast<QComboBox*>(&object);
  for (int i = 0; box != nullptr && i < box->count(); ++i) {
    const QByteArray key = box->itemData(i, kKeyRole).toByteArray();
    if (!key.isEmpty()) box->setItemText(i, Text(key.constData()));
  }
}

}  // namespace

void SetText(QObject& object, const char* key, const QStringList& arguments) {
  Apply(object, kText, key, arguments);
}

void ClearText(QObject& object) {
  object.setProperty(kProperties[kText].key, {});
  object.setProperty(kProperties[kText].text, QString());
}

void SetTitle(QWidget& window, const char* key) {
  Apply(window, kTitle, key, {});
}

void SetHint(QObject& field, const char* key) {
  Apply(field, kHint, key, {});
}

void AddChoice(QComboBox& box, const char* key) {
  box.addItem(Text(key));
  box.setItemData(box.count() - 1, QByteArray(key), kKeyRole);
}

QLabel* NewLabel(const char* key, const QStringList& arguments) {
  auto* label = new QLabel;
  SetText(*label, key, arguments);
  return label;
}

QLabel* NewFieldLabel(const char* key) {
  auto* label = new QLabel;
  label->setProperty(kIsLabel, true);
  SetText(*label, key);
  return label;
}

void Retranslate(QWidget& root) {
  RetranslateOne(root);
  for (QObject* object : root.findChildren<QObject*>()) RetranslateOne(*object);
  // What has texts that are not from a table alone, numbers and units, is told, down to the last child.
  QEvent change(QEvent::LanguageChange);
  QCoreApplication::sendEvent(&root, &change);
}

}  // namespace qd::workbench

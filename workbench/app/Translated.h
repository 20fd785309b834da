#pragma once

#include <QStringList>

class QComboBox;
class QLabel;
class QObject;
class QVariant;
class QWidget;

namespace qd::workbench {

// Texts that follow the language: a widget or action remembers by which keys it got them.

/// The text of an action, label, button or menu.
void SetText(QObject& object, const char* key, const QStringList& arguments = {});
/// Takes a text away.
void ClearText(QObject& object);
/// The title of a window or pane.
void SetTitle(QWidget& window, const char* key);
/// What an empty field says.
void SetHint(QObject& field, const char* key);
/// An entry of a list of choices; it has no data of its own.
void AddChoice(QComboBox& box, const char* key);
/// A label with a text; the caller owns it.
QLabel* NewLabel(const char* key, const QStringList& arguments = {});
/// A label of a field, with the colon that the language has; the caller owns it.
QLabel* NewFieldLabel(const char* key);

/// Reads the texts of a widget, its actions and all below it anew.
void Retranslate(QWidget& root);

}  // namespace qd::workbench

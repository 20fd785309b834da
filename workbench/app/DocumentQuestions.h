#pragma once

#include <QPointer>
#include <QString>
#include <functional>

#include "workbench/store/DocumentKeeper.h"

class QMessageBox;
class QWidget;

namespace qd::workbench {

/// A fault of a document in the user's language.
QString TextOf(const DocumentError& error);

/// What the window asks and tells of its document.
class DocumentQuestions {
 public:
  explicit DocumentQuestions(QWidget* window) : m_window(window) {}

  enum class Recovery { Recover, Discard, Later };
  /// What is to become of a document that a crash has left behind.
  Recovery AskRecovery(const RecoverableDocument& document) const;

  enum class Closing { Save, Discard, Stay };
  /// Before a window closes whose document was never saved.
  Closing AskUnsaved() const;
  /// Before one closes whose document's file is not there any more as it was left.
  Closing AskLost(const QString& path) const;
  /// Before one closes that has recorded acts, which nobody has saved.
  Closing AskRecording() const;

  /// Asks whether a deck may take a file from a folder that is not its own; not to is what the keys choose. Does
  /// not wait: `answer` is called later.
  void AskInclude(const QString& deck, const QString& folder, const QString& file,
                  const std::function<void(bool)>& answer);
  /// Takes that question back.
  void ForgetInclude();

  /// Tells a fault that needs the user, with the offer to save under another name; does not wait for the answer.
  void Warn(const QString& text, const std::function<void()>& saveAs);

 private:
  Closing AskClosing(const QString& text) const;

  QWidget* m_window;
  QPointer<QMessageBox> m_include;
  QPointer<QMessageBox> m_warning;  // the last one, while it is open
};

}  // namespace qd::workbench

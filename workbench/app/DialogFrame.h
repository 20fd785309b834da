#pragma once

#include <QDialog>
#include <functional>
#include <map>
#include <vector>

#include "workbench/app/NumberField.h"
#include "workbench/model/Placement.h"

class QDialogButtonBox;
class QFormLayout;
class QPushButton;

namespace qd::workbench {

class PickedPlaces;
class WorkDocument;

/// The last thing that the user was warned of while this stands, so that whoever asked for an act can say why it
/// was not done. One at a time, or one within another.
class HeardWarnings final {
 public:
  HeardWarnings();
  ~HeardWarnings();
  HeardWarnings(const HeardWarnings&) = delete;
  HeardWarnings& operator=(const HeardWarnings&) = delete;
  const QString& Last() const { return m_last; }
  /// Called by who shows warnings.
  static void Note(const QString& text);

 private:
  HeardWarnings* m_outer;
  mutable QString m_last;  // who listens holds what cannot be changed otherwise
};

/// What all dialogs have in common. From top to bottom: what is acted upon, the fields with their labels and,
/// below each, what is wrong with it, what came of the last act, the buttons. Enter runs the first act wherever
/// the focus is, and never closes; Escape closes. The size that somebody gave it is kept for the next time.
class DialogFrame : public QDialog {
 public:
  /// `name` is that of the object.
  DialogFrame(const char* titleKey, const char* name, QWidget* parent);

 protected:
  /// The line that names what is acted upon.
  ToldLabel* AddWorkLine(const char* name);
  /// A field with its label; the dialog owns it then.
  void AddField(const char* key, QWidget* field);
  NumberRow* AddNumbers(const char* key, const std::vector<double>& values, const NumberKind& kind);
  /// Puts a button behind each place and way that was added, by which it is picked in the view. `frame` says where
  /// the system stands in which they are meant; null for that of the model.
  void OfferPicks(WorkDocument& doc, std::function<Placement()> frame = nullptr);
  /// Shows or hides a field and its label.
  void ShowField(QWidget& field, bool shown);
  /// Something that takes the whole width.
  void AddWide(QWidget* widget);
  /// A button; the first one is what Enter runs.
  QPushButton* AddAct(const char* key, const char* name, const std::function<void()>& act);
  /// What Enter runs from now on.
  void SetFirstAct(QPushButton& act);
  /// Closes the list of fields and acts. `leaveKey` is the text of the button that closes.
  void Finish(const char* leaveKey = "IDS_WB_CLOSE");

  /// Says what is wrong with a field, below it, and brings the focus there. It stands until the field is edited.
  void TellFault(QWidget& field, const char* key, const QStringList& arguments = {});
  /// Whether all numbers are good; takes away what was said of fields, and of an act.
  bool CheckFields();
  /// Says what came of an act.
  void Tell(const char* key, const QStringList& arguments = {});
  void TellText(const QString& text);
  void TellNothing();
  /// Nothing can be applied, for a reason by its key; null when all can. `told` when a line says it already.
  void Block(const char* reason, bool told = false);
  bool IsBlocked() const { return m_reason != nullptr; }

  bool event(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  /// Makes the window as high as what is told in it needs.
  void GrowToFit();
  void FocusFirst();
  void ForgetFault(QWidget* field);
  QString SizeKey() const;

  const char* m_titleKey;
  QFormLayout* m_form;  // these are owned by this dialog
  ToldLabel* m_outcome;
  QDialogButtonBox* m_buttons;
  QPushButton* m_leave = nullptr;
  std::vector<QPushButton*> m_acts;
  std::vector<QWidget*> m_fields;    // in their order
  PickedPlaces* m_places = nullptr;  // where places can be picked
  std::map<QWidget*, ToldLabel*> m_faults;
  const char* m_reason = nullptr;
  bool m_reasonShown = false;  // in the line of outcomes
  bool m_shown = false;
  // Sizes that nobody has chosen: at first, and as what was told has made it grow.
  QSize m_ownSize;
  QSize m_grown;
};

}  // namespace qd::workbench

#pragma once

#include <QHBoxLayout>
#include <QLineEdit>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "workbench/app/ToldLabel.h"
#include "workbench/text/NumberText.h"
#include "workbench/text/Units.h"

class QFormLayout;
class QLabel;

namespace qd::workbench {

/// A field for a number or an expression, with a unit or without, see ReadQuantity. Its text is selected when it
/// gets the focus, so that what is typed takes its place. When it is left, a number is shown as it was understood,
/// in the format of the language on show; anything else stays as it was typed and is told.
class NumberField final : public QLineEdit {
  Q_OBJECT

 public:
  /// Proposes a number.
  NumberField(double value, const NumberLimits& limits, Quantity quantity = Quantity::Plain);

  /// Shows a number of the model. Such a number is meant in the units on show, whatever they are; one that was
  /// typed or proposed keeps what it means when they change.
  void SetValue(double value);
  void Propose(double value);
  /// The number of the text; while that is none, the last that was good.
  double Value() const;
  NumberReading Reading() const;
  const NumberLimits& Limits() const { return m_limits; }
  /// Shows the number in the format of the language of now. A text that is none stays one of the language in which
  /// it was typed, until it is edited.
  void ShowInLanguage();
  /// Shows in another system of units what is meant in the one of now, by which texts are read until then.
  void Convert(const UnitSystem& to);
  /// Marks the field as one whose text is no number, or takes the mark away.
  void Mark(bool faulty);

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void Show(double value);

  NumberLimits m_limits;
  Quantity m_quantity;
  const UnitSystem* m_units;  // that the number is shown in
  double m_value;
  char m_decimalSign;
  bool m_ofModel = false;
  /// What was typed or proposed before it was converted, so that it comes back as it was.
  struct Origin {
    double value;
    const UnitSystem* system;
    QString shown;  ///< as what it is shown now
  };
  std::optional<Origin> m_origin;
  QAction* m_mark = nullptr;  // owned by this field
  bool m_selectsAll = false;  // at the end of the press that brought the focus
  bool m_visited = false;     // it has had the focus
};

/// What the numbers of one line of a form are.
struct NumberKind {
  Quantity quantity = Quantity::Plain;
  NumberLimits limits{};
  bool notNull = false;  ///< a vector of zeros is none
  /// What of three numbers can be picked in the view.
  enum class Picked : std::uint8_t { Nothing, Place, Way, Direction } picked = Picked::Nothing;
};

/// The kinds that several dialogs ask for.
struct NumberKinds {
  /// Far enough for any model, and near enough for all that is worked out of it.
  static constexpr NumberLimits kPlace{.least = -1e9, .greatest = 1e9};
  static constexpr NumberKind kPoint{Quantity::Length, kPlace, false, NumberKind::Picked::Place};
  static constexpr NumberKind kWay{Quantity::Length, kPlace, true, NumberKind::Picked::Way};
  static constexpr NumberKind kDirection{Quantity::Plain, kPlace, true, NumberKind::Picked::Direction};
  static constexpr NumberKind kAngle{Quantity::Angle, kPlace};
  static constexpr NumberKind kFactor{Quantity::Plain, {.least = -1e9, .greatest = 1e9, .notZero = true}};
};

/// The numbers of one line of a form, three for a point or a vector, with their unit and, below them, what is
/// wrong with what was typed.
class NumberRow final : public QWidget {
  Q_OBJECT

 public:
  /// `key` is the text of the line's label, which this does not show.
  NumberRow(const char* key, const std::vector<double>& values, const NumberKind& kind);

  double Value() const { return m_fields.front()->Value(); }
  /// Whether something was typed that is not shown as a number yet, since it is none or is still being typed.
  bool IsTyped() const { return m_fields.front()->isModified(); }
  std::array<double, 3> Point() const;
  // Numbers of the model, see NumberField.
  void SetPoint(const std::array<double, 3>& point);
  void SetValue(double value);
  void Propose(double value);
  /// What of the view these numbers can be taken from.
  NumberKind::Picked PickedKind() const { return m_kind.picked; }
  /// Puts a button behind the numbers, which this owns then.
  void AddButton(QWidget* button) { m_row->addWidget(button); }
  /// Tells what is wrong, if anything. The field to go on with, null when all is good.
  NumberField* Check();
  /// Tells what is wrong with good numbers, and brings the focus here. It stands until one is edited.
  void TellFault(const char* key);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  /// Shows numbers, unit and what is told in the language and units of now.
  void ShowInLanguage();
  void OnEdited();
  void OnFinished();

  const char* m_key;
  NumberKind m_kind;
  const UnitSystem* m_units;           // that the fields show
  std::vector<NumberField*> m_fields;  // all are owned by this row
  QHBoxLayout* m_row;
  QLabel* m_unit;
  ToldLabel* m_fault;
};

/// Adds a line to a form, which owns it then.
NumberRow* AddNumbers(QFormLayout& layout, const char* key, const std::vector<double>& values,
                      const NumberKind& kind);

/// Whether all numbers of a dialog are good. What is wrong is told, and the first such field gets the focus.
bool CheckNumbers(QWidget& dialog);

}  // namespace qd::workbench

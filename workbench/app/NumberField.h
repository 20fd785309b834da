#pragma once

#include <QLineEdit>
#include <array>
#include <vector>

#include "workbench/text/NumberText.h"

class QFormLayout;
class QLabel;

namespace qd::workbench {

/// A field for a number or an expression, see ReadNumber. Its text is selected when it gets the focus, so that
/// what is typed takes its place. When it is left, a number is shown as it was understood, in the format of the
/// language on show; anything else stays as it was typed and is told.
class NumberField final : public QLineEdit {
  Q_OBJECT

 public:
  NumberField(double value, const NumberLimits& limits);

  void SetValue(double value);
  /// The number of the text; while that is none, the last that was good.
  double Value() const;
  NumberReading Reading() const;
  const NumberLimits& Limits() const { return m_limits; }
  /// Shows the number in the format of the language of now. A text that is none stays one of the language in which
  /// it was typed, until it is edited.
  void ShowInLanguage();
  /// Marks the field as one whose text is no number, or takes the mark away.
  void Mark(bool faulty);

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  NumberLimits m_limits;
  double m_value;
  char m_decimalSign;
  QAction* m_mark = nullptr;  // owned by this field
  bool m_selectsAll = false;  // at the end of the press that brought the focus
  bool m_visited = false;     // it has had the focus
};

/// What a number measures: tells the unit behind it.
enum class Quantity { Plain, Length, Area, Angle, Stress, Density };

/// What the numbers of one line of a form are.
struct NumberKind {
  Quantity quantity = Quantity::Plain;
  NumberLimits limits{};
  bool notNull = false;  ///< a vector of zeros is none
};

/// The kinds that several dialogs ask for.
struct NumberKinds {
  /// Far enough for any model, and near enough for all that is worked out of it.
  static constexpr NumberLimits kPlace{.least = -1e9, .greatest = 1e9};
  static constexpr NumberKind kPoint{Quantity::Length, kPlace};
  static constexpr NumberKind kWay{Quantity::Length, kPlace, true};
  static constexpr NumberKind kDirection{Quantity::Plain, kPlace, true};
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
  std::array<double, 3> Point() const;
  void SetPoint(const std::array<double, 3>& point);
  void SetValue(double value);
  /// Tells what is wrong, if anything. The field to go on with, null when all is good.
  NumberField* Check();

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// Shows numbers, unit and what is told in the language and units of now.
  void ShowInLanguage();
  void OnEdited();
  void OnFinished();
  void FitFault();

  const char* m_key;
  NumberKind m_kind;
  std::vector<NumberField*> m_fields;  // all are owned by this row
  QLabel* m_unit;
  QLabel* m_fault;
};

/// Adds a line to a form, which owns it then.
NumberRow* AddNumbers(QFormLayout& layout, const char* key, const std::vector<double>& values,
                      const NumberKind& kind);

/// Whether all numbers of a dialog are good. What is wrong is told, and the first such field gets the focus.
bool CheckNumbers(QWidget& dialog);

}  // namespace qd::workbench

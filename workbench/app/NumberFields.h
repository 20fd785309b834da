#pragma once

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <array>

#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"

namespace qd::workbench {

/// A field for a length, a factor or an angle.
inline QDoubleSpinBox* MakeNumber(double value) {
  constexpr double kFar = 1e9;
  constexpr int kDecimals = 6;
  auto* number = new QDoubleSpinBox;
  number->setRange(-kFar, kFar);
  number->setDecimals(kDecimals);
  number->setValue(value);
  number->setButtonSymbols(QAbstractSpinBox::NoButtons);
  return number;
}

/// Three fields in a row, for a point or a way. They belong to the layout's window.
using TripleField = std::array<QDoubleSpinBox*, 3>;

inline TripleField AddTriple(QFormLayout& layout, const char* key, const std::array<double, 3>& values) {
  TripleField triple{};
  auto* row = new QHBoxLayout;
  for (std::size_t axis = 0; axis < triple.size(); ++axis) {
    triple[axis] = MakeNumber(values[axis]);
    row->addWidget(triple[axis]);
  }
  layout.addRow(NewLabel(key), row);
  return triple;
}

inline std::array<double, 3> ValuesOf(const TripleField& triple) {
  return {triple[0]->value(), triple[1]->value(), triple[2]->value()};
}

}  // namespace qd::workbench

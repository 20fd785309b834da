#pragma once

#include <QMetaType>
#include <QString>
#include <vector>

#include "host/Records.h"

namespace qd::workbench {

enum class Severity { Note, Warning, Failure };

/// Something that the program tells, and what it is about, where somebody may want to go.
struct Message {
  QString text;
  Severity severity = Severity::Note;
  QString file = {};                   // absolute path, or none
  std::vector<iterator> records = {};  // which may be gone meanwhile
};

}  // namespace qd::workbench

Q_DECLARE_METATYPE(qd::workbench::Message)

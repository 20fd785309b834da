#pragma once

#include <QHash>
#include <QString>
#include <vector>

#include "workbench/app/MessageTables.h"

namespace qd::workbench {

/// An entry of a list of records to choose from.
struct ListedName {
  QString name;
  std::uint64_t id;  ///< as the trees show it
};

/// What a list shows of records: their names, and behind those that several have the ID too.
inline void TellApart(std::vector<ListedName>& entries) {
  QHash<QString, int> counts;
  for (const ListedName& entry : entries) ++counts[entry.name];
  for (ListedName& entry : entries) {
    if (counts[entry.name] < 2) continue;
    entry.name = Text("IDS_WB_NAME_AND_ID", {entry.name, QString::number(entry.id)});
  }
}

}  // namespace qd::workbench

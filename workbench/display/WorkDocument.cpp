#include "workbench/display/WorkDocument.h"

#include <algorithm>
#include <utility>

#include "workbench/display/HostCommands.h"

namespace qd::workbench {

bool Concerns(const CQDUpdateRecord& record, std::uint16_t dataType) {
  return std::any_of(record.changes.begin(), record.changes.end(),
                     [dataType](const tagTRNotify& change) { return change.dataType == dataType; });
}

void WorkDocument::Select(Selection selection) {
  if (std::exchange(m_selectionTold, true) && selection == m_selection) return;
  m_selection = std::move(selection);
  m_selectionNotice.Tell(m_selection);
}

std::vector<iterator> WorkDocument::Meant() const {
  std::vector<iterator> meant = m_selection.records;
  if (m_selection.others == 0 || !m_belowRows) return meant;
  const std::vector<iterator> below = m_belowRows();
  meant.insert(meant.end(), below.begin(), below.end());
  return meant;
}

/// A tree that is about to say what is selected in it asks for no notice.
void WorkDocument::ClearSelectBuffer(int notify) {
  if (notify != 0) {
    if (!m_selection.records.empty()) Select({});
    return;
  }
  m_selection.records.clear();
  m_selectionTold = false;
}

void WorkDocument::AddToSelBuffer(iterator itr) {
  m_selection.records.push_back(itr);
}

void WorkDocument::Import() {
  if (m_onImport) m_onImport();
}

int WorkDocument::DeleteData(int operation, const std::vector<iterator>& itrs) {
  return operation == kDeleteModelData ? m_database.Delete(itrs) : 0;
}

int WorkDocument::RunCommand(const CQDCommandObj& command) {
  return RunHostCommand(m_database, command);
}

}  // namespace qd::workbench

#include "workbench/display/WorkDocument.h"

#include <utility>

#include "workbench/display/HostCommands.h"

namespace qd::workbench {

void WorkDocument::Select(Selection selection) {
  if (std::exchange(m_selectionTold, true) && selection == m_selection) return;
  m_selection = std::move(selection);
  m_selectionNotice.Tell(m_selection);
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

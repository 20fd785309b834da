#include "workbench/display/WorkDocument.h"

#include <utility>

#include "workbench/display/HostCommands.h"

namespace qd::workbench {

void WorkDocument::SetSelectBuffer(std::vector<iterator> itrs) {
  m_selection = std::move(itrs);
  m_display.MarkDirty();
}

void WorkDocument::ClearSelectBuffer(int notify) {
  if (m_selection.empty()) return;
  m_selection.clear();
  m_display.MarkDirty();
  if (notify != 0 && m_onSelection) m_onSelection();
}

void WorkDocument::AddToSelBuffer(iterator itr) {
  m_selection.push_back(itr);
  m_display.MarkDirty();
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

#include "workbench/app/ExchangeReader.h"

#include "workbench/app/FileName.h"

namespace qd::workbench {

void ExchangeReader::Run() {
  ExchangeRun::Result result = m_run.Run(*this);
  emit Ended(std::move(result.model), QString::fromStdString(result.reason.key),
             QString::fromStdString(result.reason.detail), NameFromBytes(result.reason.wanted));
}

bool ExchangeReader::OnStalled(const ExchangeRun::Message& reason) {
  if (!m_ask) return false;
  emit Stalled(QString::fromStdString(reason.key), QString::fromStdString(reason.detail));
  return true;
}

}  // namespace qd::workbench

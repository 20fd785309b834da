#include "workbench/app/QualityRangeDialog.h"

#include <algorithm>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"

namespace qd::workbench {

QualityRangeDialog::QualityRangeDialog(WorkDocument& doc, QWidget* parent)
    : DialogFrame("IDS_WB_COLOUR_RANGE", "range", parent), m_doc(doc), m_named(AddWorkLine("measure")) {
  m_least = AddNumbers("IDS_WB_COLOUR_LEAST", {0}, {});
  m_greatest = AddNumbers("IDS_WB_COLOUR_GREATEST", {1}, {});
  AddAct("IDS_WB_APPLY", "apply", [this] { Apply(); });
  AddAct("IDS_WB_COLOUR_AUTOMATIC", "automatic", [this] { Automatic(); });
  Finish();
  m_onDisplay = doc.GetDisplay().Subscribe([this](const DisplayNotice& notice) {
    if (notice.colours) Follow();
  });
  const MeshDisplay::Quality& quality = doc.GetDisplay().Meshes().GetColouring().quality;
  m_measure = quality.measure;
  const QualityRule& rule = RuleOf(m_measure);
  const auto [least, greatest] = std::minmax(rule.best, rule.limit);
  m_least->Propose(quality.isTyped ? quality.least : least);
  m_greatest->Propose(quality.isTyped ? quality.greatest : greatest);
  Follow();
}

void QualityRangeDialog::Follow() {
  const MeshDisplay::Quality* quality = m_doc.GetDisplay().Meshes().ColouringQuality();
  Block(quality == nullptr ? "IDS_WB_WHY_NO_QUALITY" : nullptr);
  if (quality == nullptr) return;
  SetText(*m_named, RuleOf(quality->measure).key);
  if (std::exchange(m_measure, quality->measure) == quality->measure) return;
  const QualityRule& rule = RuleOf(m_measure);
  const auto [least, greatest] = std::minmax(rule.best, rule.limit);
  m_least->Propose(least);
  m_greatest->Propose(greatest);
}

void QualityRangeDialog::Apply() {
  if (IsBlocked() || !CheckFields()) return;
  if (m_least->Value() >= m_greatest->Value()) return m_greatest->TellFault("IDS_WB_COLOUR_ORDER");
  m_doc.GetDisplay().Meshes().PutColouring(
      {MeshDisplay::Colouring::kByQuality, {m_measure, true, m_least->Value(), m_greatest->Value()}});
}

void QualityRangeDialog::Automatic() {
  if (IsBlocked()) return;
  m_doc.GetDisplay().Meshes().PutColouring({MeshDisplay::Colouring::kByQuality, {.measure = m_measure}});
}

}  // namespace qd::workbench

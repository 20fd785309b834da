// What searches ask of the nodes of the works tree.

#include "host/CMSGFunction.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/find/IRow.h"

namespace qd {

void CQDTreeListCtrl::SetRowFields(const IRowFields* fields) {
  m_rowFields = fields;
  ResetWords();
}

/// What follows the language on show: the words of queries, and what screen readers say of the current set.
void CQDTreeListCtrl::ResetWords() {
  SetBoldMeaning(CMSGFunction::GetValue("IDS_QD_WRT_CURRENT_SET"));
  GetFinder().SetWords(std::make_unique<QueryWords>(&CMSGFunction::GetValue, m_rowFields));
}

std::uint32_t CQDTreeListCtrl::KindsOf(HTREEITEM row) const {
  const CQDTreeItem* node = MadeNodeOf(row);
  return node != nullptr ? node->GetRowKinds() : 0;
}

std::optional<double> CQDTreeListCtrl::NumberOf(HTREEITEM row, std::size_t field) const {
  const CQDTreeItem* node = MadeNodeOf(row);
  double value = 0;
  if (node == nullptr || m_rowFields == nullptr || m_rowFields->GetNumber(*node, field, value) == 0) return {};
  return value;
}

void CQDTreeListCtrl::AppendTextsOf(HTREEITEM row, std::size_t field, TArray<CString>& texts) const {
  const CQDTreeItem* node = MadeNodeOf(row);
  if (node == nullptr) return;
  if (field == kMaterialField) return node->AppendMaterials(texts);
  if (field != kSetField) {
    if (m_rowFields != nullptr) static_cast<void>(m_rowFields->GetTexts(*node, field, texts));
    return;
  }
  node->AppendSets(texts);
  for (const CQDTreeItem* above = node->GetParent(); above != nullptr; above = above->GetParent()) {
    if ((above->GetRowKinds() & (kRowSet | kRowMesh)) != 0) texts.push_back(above->GetTitle());
  }
}

}  // namespace qd

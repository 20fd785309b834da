#include "qd_wrt/treelist/RowAnswers.h"

#include "qd_wrt/treelist/RowRecord.h"

namespace qd {

namespace {

constexpr int kKeyColumn = 1;

/// A row as queries see it.
class RowOfTree : public IRow {
 public:
  RowOfTree(const RowSources& sources, HTREEITEM row)
      : m_sources(sources), m_row(row), m_record(sources.records->LookAt(row, m_spare)) {}

  std::wstring_view Title() const override {
    return m_record != nullptr ? m_record->View(0) : std::wstring_view();
  }
  std::string_view Key() const override { return m_sources.keys->Key(m_sources.rows->Number(m_row)); }
  std::optional<std::uint64_t> Id() const override {
    if (m_record == nullptr || m_record->View(kKeyColumn).empty()) return std::nullopt;
    return m_record->GetItemKey();
  }
  std::optional<COLORREF> Colour() const override {
    if (m_record == nullptr || !m_record->HasColor()) return std::nullopt;
    return m_record->GetColor();
  }
  std::optional<bool> IsShown() const override {
    const bool isLater = m_record == &m_spare.record;
    const unsigned image =
        isLater ? static_cast<unsigned>(m_spare.box) : m_sources.rows->State(m_row, kRowStateImage) >> 12U;
    if (image == 0) return std::nullopt;
    return image == kCheckedImage;
  }
  bool IsSelected() const override {
    return m_sources.selected != nullptr && m_sources.selected->Has(m_sources.rows->Number(m_row));
  }
  std::uint32_t Kinds() const override { return m_sources.facts != nullptr ? m_sources.facts->KindsOf(m_row) : 0; }
  std::optional<double> Number(std::size_t field) const override {
    return m_sources.facts != nullptr ? m_sources.facts->NumberOf(m_row, field) : std::nullopt;
  }
  void AppendTexts(std::size_t field, TArray<CString>& texts) const override {
    if (m_sources.facts != nullptr) m_sources.facts->AppendTextsOf(m_row, field, texts);
  }

 private:
  const RowSources& m_sources;
  HTREEITEM m_row;
  LaterRow m_spare;
  const CTLItem* m_record;
};

}  // namespace

bool RowAnswers::Matches(HTREEITEM row) {
  const std::uint64_t inside = m_query.AsksForAncestors() ? InsideOf(m_sources.rows->Parent(row)) : 0;
  return m_matcher.Matches(RowOfTree(m_sources, row), inside);
}

/// Which conditions on ancestors hold below a row: what itself and all above it fulfil.
std::uint64_t RowAnswers::InsideOf(HTREEITEM row) {
  const RowTree& rows = *m_sources.rows;
  if (m_remembers && m_inside.size() < rows.NumberLimit()) m_inside.resize(rows.NumberLimit());
  m_path.clear();
  std::uint64_t inside = 0;
  for (; row; row = rows.Parent(row)) {
    if (const std::uint32_t number = rows.Number(row); m_remembers && m_known.Has(number)) {
      inside = m_inside[number];
      break;
    }
    m_path.push_back(row);
  }
  for (auto at = m_path.rbegin(); at != m_path.rend(); ++at) {
    const std::uint32_t number = rows.Number(*at);
    const RowOfTree above(m_sources, *at);
    inside |= m_matcher.InsideOf(above.Key(), above.Title());
    if (!m_remembers) continue;
    m_inside[number] = inside;
    m_known.Set(number, true);
  }
  return inside;
}

}  // namespace qd

#include "workbench/session/DocumentPage.h"

#include <algorithm>

#include "host/Act.h"
#include "host/CMSGFunction.h"
#include "workbench/text/Shown.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

CString Text(std::string_view key) {
  return CMSGFunction::GetValue(key);
}

}  // namespace

std::map<std::string, std::size_t> CountKeywords(std::string_view deck) {
  std::map<std::string, std::size_t> counts;
  while (!deck.empty()) {
    const std::size_t end = std::min(deck.find('\n'), deck.size());
    std::string_view line = deck.substr(0, end);
    deck.remove_prefix(std::min(end + 1, deck.size()));
    if (!line.starts_with('*') || line.starts_with("**")) continue;
    line = line.substr(0, line.find(','));
    line = line.substr(0, line.find_last_not_of(" \t\r") + 1);
    std::string keyword(line);
    for (char& letter : keyword) {
      if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    }
    ++counts[keyword];
  }
  return counts;
}

DocumentPage::DocumentPage(WorkDocument& doc) : IPropertySet(&doc, 0, 0), m_document(doc) {
  ShowApplyBtn(0);
}

std::unique_ptr<DocumentPage> DocumentPage::For(WorkDocument& doc) {
  if (doc.GetDatabase().GetDeckPool().Count() == 0) return nullptr;
  return std::unique_ptr<DocumentPage>(new DocumentPage(doc));  // the constructor is private
}

void DocumentPage::ShowProperty() {
  RemoveAllProperties();
  const DeckPool& decks = m_document.GetDatabase().GetDeckPool();
  for (const iterator itr : decks.GetItrList()) {
    const tagTDeck& deck = *decks.GetAtNU(itr);
    const auto counts = CountKeywords(deck.text != nullptr ? *deck.text : std::string());
    std::size_t cards = 0;
    for (const auto& [keyword, count] : counts) cards += count;
    CBCGPProp* title = AddTitle(nullptr, deck.name);
    AddGeneralPropertyWithOption(title, Text("IDS_WB_DECK_KEPT"), {Text("IDS_QD_WRT_YES"), Text("IDS_QD_WRT_NO")},
                                 0, Text("IDS_WB_DECK_KEPT_TIP"), itr, 0);
    AddText(title, Text("IDS_WB_DECK_CARDS"), std::to_wstring(cards), 0, true, Text("IDS_WB_DECK_CARDS_TIP"));
    CBCGPProp* list = AddTitle(title, Text("IDS_WB_DECK_KEYWORDS"));
    // Files of others may hold any number of words that are none.
    constexpr std::size_t kMostKinds = 200;
    constexpr std::size_t kMostLetters = 60;
    std::size_t kinds = 0;
    for (const auto& [keyword, count] : counts) {
      if (++kinds > kMostKinds) break;
      AddText(list, FromUtf8(ShownText(keyword, kMostLetters)), std::to_wstring(count), 0, true);
    }
    if (counts.size() > kMostKinds) {
      AddText(list, L"…", std::to_wstring(counts.size() - kMostKinds), 0, true);
    }
  }
  AdjustLayout();
}

void DocumentPage::OnPropertyChanged(CBCGPProp* row, std::uint64_t data) {
  if (row->value != Text("IDS_QD_WRT_NO")) return;
  Database& database = m_document.GetDatabase();
  RunAct(&database, "IDS_WB_TRANS_REMOVE_DECK", [&] { return database.GetDeckPool().TR_Del({data}); });
}

}  // namespace qd::workbench

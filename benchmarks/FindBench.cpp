// Searching the titles of a million rows, beside a plain loop over the same texts.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

#include "benchmarks/Proof.h"
#include "host/CMSGFunction.h"
#include "qd_wrt/find/SearchKeys.h"

namespace qd {
namespace {

/// Titles as models have them; every one in a thousand is a "Flange", one of ten of these a "Flange M8".
CString TitleOf(std::size_t row) {
  static const std::vector<CString> names{L"Bolt M8", L"Bracket left", L"Part", L"Housing cover", L"Shaft"};
  if (row % 1000 == 7) return (row % 10'000 == 7 ? L"Flange M8 " : L"Flange ") + std::to_wstring(row);
  return names[row % names.size()] + L" " + std::to_wstring(row);
}

struct Titles {
  std::vector<CString> texts;
  SearchKeys keys;
};
const Titles& AllTitles() {
  static const Titles titles = [] {
    Titles made;
    const auto count = static_cast<std::size_t>(bench::RowsOf(1'000'000));
    made.keys.Reserve(count, count * 20);
    for (std::size_t row = 0; row < count; ++row) {
      made.texts.push_back(TitleOf(row));
      made.keys.Set(static_cast<std::uint32_t>(row), made.texts.back());
    }
    return made;
  }();
  return titles;
}

/// A row of which only the title is known.
class TitleRow final : public IRow {
 public:
  TitleRow(const Titles& titles, std::uint32_t row) : m_titles(&titles), m_row(row) {}
  std::wstring_view Title() const override { return m_titles->texts[m_row]; }
  std::string_view Key() const override { return m_titles->keys.Key(m_row); }
  std::optional<std::uint64_t> Id() const override { return m_row; }
  std::optional<COLORREF> Colour() const override { return m_row * 2'654'435'761U & 0xFFFFFFU; }
  std::optional<bool> IsShown() const override { return m_row % 2 == 0; }
  bool IsSelected() const override { return false; }
  std::uint32_t Kinds() const override { return kRowPart; }
  std::optional<double> Number(std::size_t) const override { return std::nullopt; }
  void AppendTexts(std::size_t, TArray<CString>&) const override {}

 private:
  const Titles* m_titles;
  std::uint32_t m_row;
};

std::size_t CountOf(const wchar_t* text) {
  const Titles& titles = AllTitles();
  static const QueryWords words(CMSGFunction::GetValue);
  QueryFault fault;
  const std::optional<Query> query = Query::Parse(text, words, fault);
  if (!query) return SIZE_MAX;
  std::vector<std::uint32_t> rows;
  std::size_t count = 0;
  Search search(titles.keys, *query);
  Matcher matcher(*query);
  for (bool goesOn = true; goesOn;) {
    rows.clear();
    goesOn = search.Next(std::size_t{1} << 20U, rows);
    if (query->IsNeedlesOnly()) {
      count += rows.size();
      continue;
    }
    for (const std::uint32_t row : rows) count += matcher.Matches(TitleRow(titles, row)) ? 1 : 0;
  }
  return count;
}

template <typename Holds>
std::size_t CountIf(const Holds& holds) {
  const auto& texts = AllTitles().texts;
  std::size_t count = 0;
  for (std::size_t row = 0; row < texts.size(); ++row) count += holds(texts[row], row) ? 1 : 0;
  return count;
}

void Time(benchmark::State& state, const wchar_t* text, std::size_t expected) {
  AllTitles();
  std::size_t count = 0;
  for (auto _ : state) count = CountOf(text);
  bench::Prove(state, count == expected && expected > 0, "other rows were found");
}

bool Has(const CString& title, const wchar_t* part) {
  return title.find(part) != CString::npos;
}

void BM_FindWord(benchmark::State& state) {
  Time(state, L"flange", CountIf([](const CString& title, std::size_t) { return Has(title, L"Flange"); }));
}
/// A letter that every fifth row begins with.
void BM_FindLetter(benchmark::State& state) {
  Time(state, L"p", CountIf([](const CString& title, std::size_t) { return Has(title, L"P"); }));
}
void BM_FindTwoWords(benchmark::State& state) {
  Time(state, L"m8 flange", CountIf([](const CString& title, std::size_t) { return Has(title, L"Flange M8"); }));
}
void BM_FindNot(benchmark::State& state) {
  Time(state, L"-bolt -part",
       CountIf([](const CString& title, std::size_t) { return !Has(title, L"Bolt") && !Has(title, L"Part"); }));
}
void BM_FindSigns(benchmark::State& state) {
  Time(state, L"fl*m?", CountIf([](const CString& title, std::size_t) { return Has(title, L"Flange M8"); }));
}
void BM_FindExpression(benchmark::State& state) {
  Time(state, L"/fl.*m[0-9]/",
       CountIf([](const CString& title, std::size_t) { return Has(title, L"Flange M8"); }));
}
void BM_FindIdsAndBox(benchmark::State& state) {
  Time(state, L"id:100-5000 shown:",
       CountIf([](const CString&, std::size_t row) { return row >= 100 && row <= 5000 && row % 2 == 0; }));
}
/// As many colours as rows: no answer can be remembered from one to the next.
void BM_FindColour(benchmark::State& state) {
  AllTitles();
  std::size_t red = 0;
  std::size_t other = 0;
  for (auto _ : state) {
    red = CountOf(L"colour:red");
    other = CountOf(L"-colour:red");
  }
  bench::Prove(state, red > 0 && other > red && red + other == AllTitles().texts.size(),
               "rows are in both or in none");
}
/// Folding all titles, as when a search begins.
void BM_FoldTitles(benchmark::State& state) {
  const Titles& titles = AllTitles();
  std::size_t bytes = 0;
  bool right = true;
  for (auto _ : state) {
    SearchKeys keys;
    keys.Reserve(titles.texts.size(), titles.texts.size() * 20);
    for (std::size_t row = 0; row < titles.texts.size(); ++row)
      keys.Set(static_cast<std::uint32_t>(row), titles.texts[row]);
    bytes = keys.Bytes();
    right = right && keys.Count() == titles.texts.size() && keys.Key(7) == "flange m8 7";
  }
  state.SetLabel(std::to_string(bytes / titles.texts.size()) + " bytes a row");
  bench::Prove(state, right, "a key is missing");
}
/// The limit: one loop over plain texts of bytes.
void BM_PlainLoop(benchmark::State& state) {
  std::vector<std::string> texts;
  for (const CString& title : AllTitles().texts) texts.emplace_back(title.begin(), title.end());
  std::size_t count = 0;
  for (auto _ : state) {
    count = 0;
    for (const std::string& text : texts) count += text.find("Flange") != std::string::npos ? 1 : 0;
    benchmark::DoNotOptimize(count);
  }
  bench::Prove(state, count == texts.size() / 1000, "other rows were found");
}

BENCHMARK(BM_FindWord)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindLetter)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindTwoWords)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindNot)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindSigns)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindExpression)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindIdsAndBox)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindColour)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FoldTitles)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlainLoop)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qd

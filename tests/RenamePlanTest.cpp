// What becomes of many names by a rule: conflicts, and the order in which names are given.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "qd_wrt/core/RenamePlan.h"

namespace qd::test {
namespace {

constexpr NameScope kParts{1, false};
constexpr NameScope kSets{2, true};

/// Rows among others of their scope, which are called as `others` says.
RenamePlan PlanOf(std::vector<RenamePlan::Row> rows, std::set<CString> others = {}) {
  for (const RenamePlan::Row& row : rows) others.insert(row.name);
  const auto read = [rows](std::size_t row) { return rows[row]; };
  return {rows.size(), read, [others](std::size_t, const CString& name) { return others.contains(name); }};
}

/// The verdicts as letters, in the order in which Verdict lists them.
std::string Judged(RenamePlan& plan, const NamingRule& rule) {
  QueryFault fault;
  EXPECT_TRUE(plan.SetRule(rule, fault)) << fault.key;
  while (!plan.Check([] { return true; })) {
  }
  std::string verdicts;
  std::size_t refused = 0;
  for (std::size_t row = 0; row < plan.RowCount(); ++row) {
    verdicts += "-rsbtd"[static_cast<std::size_t>(plan.VerdictOf(row))];
    refused += RenamePlan::IsRefused(plan.VerdictOf(row)) ? 1 : 0;
  }
  EXPECT_EQ(plan.RefusedCount(), refused);
  EXPECT_EQ(plan.RenamedCount(), plan.RowCount() - refused - std::count(verdicts.begin(), verdicts.end(), '-'));
  return verdicts;
}

TEST(RenamePlan, MarksWhatCannotBeGiven) {
  const std::vector<RenamePlan::Row> names{
      {L"a", 1, kSets}, {L"b", 2, kSets}, {L"aa", 3, kSets}, {L"a", 4, kParts}, {L"aa", 5, kParts}};
  const struct {
    NamingRule rule;
    const char* judged;
  } cases[] = {
      {{}, "-----"},
      {{.pattern = L"x{n}"}, "rrrrr"},
      {{.pattern = L"x"}, "dddss"},
      {{.pattern = L"\x3000"}, "bbbbb"},
      {{.sought = L"a"}, "b-bbb"},
      {{.sought = L"aa", .replacement = L"a"}, "--d-s"},  // the one that keeps its name is not to blame
      {{.sought = L"/a+/", .replacement = L"b"}, "d-dss"},
      {{.sought = L"/^a$/", .replacement = L"other"}, "t--r-"},
      {{.pattern = L"{name}a"}, "rrrrr"},  // into a name that is given up
  };
  for (const auto& [rule, judged] : cases) {
    RenamePlan plan = PlanOf(names, {L"other"});
    EXPECT_EQ(Judged(plan, rule), judged) << std::string(rule.pattern.begin(), rule.pattern.end());
    EXPECT_EQ(Judged(plan, {}), "-----") << "and back";
  }
  RenamePlan plan = PlanOf(names);
  Judged(plan, {.pattern = L"{name}", .sought = L"/^b/"});
  EXPECT_EQ(plan.RefusedFirst(2), (std::vector<std::size_t>{1, 0}));
  EXPECT_EQ(plan.RefusedFirst(9), (std::vector<std::size_t>{1, 0, 2, 3, 4}));
}

TEST(RenamePlan, ShowsNamesAsTheyWouldBeStoredBeforeItIsChecked) {
  RenamePlan plan = PlanOf({{CString(L"a\0b", 3), 1, kSets}, {std::wstring(62, L'c'), 2, kSets}});
  QueryFault fault;
  ASSERT_TRUE(plan.SetRule({.pattern = L"{name}\x00E9\x0301"}, fault));
  EXPECT_EQ(plan.NewNameOf(0), L"a");
  EXPECT_EQ(plan.NewNameOf(1), std::wstring(62, L'c')) << "between two characters";
  EXPECT_FALSE(plan.SetRule({.pattern = L"{no}"}, fault));
  EXPECT_EQ(plan.NewNameOf(0), L"a") << "the former rule stays";
}

TEST(RenamePlan, GivesEachNameWhenNobodyHasItAnyMore) {
  std::mt19937 random(6);
  for (int round = 0; round < 300; ++round) {
    // Rows pass their names round, in chains and circles of any length.
    const std::size_t count = 1 + random() % 9;
    std::vector<RenamePlan::Row> rows;
    for (std::size_t i = 0; i < count; ++i) rows.push_back({std::to_wstring(i), static_cast<int>(i), kSets});
    std::shuffle(rows.begin(), rows.end(), random);
    const std::size_t shift = random() % 3;
    RenamePlan plan = PlanOf(rows, {L"~1"});
    ASSERT_EQ(Judged(plan, {.pattern = L"{n}", .first = std::to_wstring(shift)}).find_first_of("bdt"),
              std::string::npos);
    std::multiset<CString> stored{L"~1"};
    for (const RenamePlan::Row& row : rows) stored.insert(row.name);
    std::vector<CString> names;
    names.reserve(rows.size());
    for (const RenamePlan::Row& row : rows) names.push_back(row.name);
    while (!plan.Order([] { return true; })) {
    }
    for (const RenamePlan::Step& step : plan.Steps()) {
      const std::size_t row = step.row;
      const CString name = plan.NameIn(step);
      ASSERT_FALSE(stored.contains(name));
      stored.extract(names[row]);
      stored.insert(names[row] = name);
    }
    for (std::size_t i = 0; i < count; ++i) ASSERT_EQ(names[i], std::to_wstring(i + shift));
  }
}

}  // namespace
}  // namespace qd::test

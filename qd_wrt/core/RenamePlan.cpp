#include "qd_wrt/core/RenamePlan.h"

#include <algorithm>
#include <numeric>

#include "host/Types.h"
#include "platform/text/Characters.h"

namespace qd {

namespace {

constexpr std::size_t kRowsBetweenLooks = 64;

CString PassingName(std::size_t number) {
  return L"~" + std::to_wstring(number);
}

NameMaker MakerOfNothing() {
  QueryFault fault;
  return *NameMaker::Make({}, fault);
}

}  // namespace

RenamePlan::RenamePlan(std::size_t count, Read read, IsTaken isTaken)
    : m_count(count),
      m_read(std::move(read)),
      m_isTaken(std::move(isTaken)),
      m_maker(MakerOfNothing()),
      m_before(count),
      m_behind(count),
      m_verdicts(count, Verdict::Renamed) {
  m_rows.reserve(count);
}

bool RenamePlan::SetRule(const NamingRule& rule, QueryFault& fault) {
  std::optional<NameMaker> maker = NameMaker::Make(rule, fault);
  if (!maker) return false;
  m_maker = *std::move(maker);
  m_next = 0;
  m_counts = {};
  std::fill(m_verdicts.begin(), m_verdicts.end(), Verdict::Renamed);
  m_behind.Clear();
  m_steps.clear();
  m_marks.clear();
  m_chain.clear();
  m_at = kNone;
  m_first = m_passing = 0;
  return true;
}

bool RenamePlan::Check(const IsEnough& isEnough) {
  for (std::size_t looked = 1; !IsChecked(); ++looked) {
    m_rows.size() < m_count ? ReadNext() : Look(m_next++);
    if (looked % kRowsBetweenLooks == 0 && isEnough()) break;
  }
  return IsChecked();
}

void RenamePlan::ReadNext() {
  const std::size_t row = m_rows.size();
  const Row read = m_read(row);
  m_rows.push_back({m_names.Keep(read.name), read.name.size(), read.id, read.scope});
  m_before.FindOrAdd(NameTable::HashOf(read.scope.number, read.name), row, [&](std::size_t other) {
    return m_rows[other].scope.number == read.scope.number && m_rows[other].Name() == read.name;
  });
}

CString RenamePlan::NameOf(std::size_t row) const {
  return row < m_rows.size() ? CString(m_rows[row].Name()) : m_read(row).name;
}

CString RenamePlan::NewNameOf(std::size_t row) {
  if (row < m_rows.size()) return Made(m_rows[row].Name(), m_rows[row].id, row);
  const Row read = m_read(row);
  return Made(read.name, read.id, row);
}

CString RenamePlan::Made(std::wstring_view name, std::int64_t id, std::size_t row) {
  const CString made = m_maker.NewName(name, id, row);
  return CutName(made.substr(0, made.find(L'\0')));
}

/// The row that has a name now, the first of several; kNone for none.
std::size_t RenamePlan::Holding(const NameScope& scope, std::wstring_view name) const {
  return m_before.Find(NameTable::HashOf(scope.number, name), [&](std::size_t row) {
    return m_rows[row].scope.number == scope.number && m_rows[row].Name() == name;
  });
}

void RenamePlan::Judge(std::size_t row, Verdict verdict) {
  --m_counts[static_cast<std::size_t>(m_verdicts[row])];
  m_verdicts[row] = verdict;
  ++m_counts[static_cast<std::size_t>(verdict)];
}

void RenamePlan::Look(std::size_t row) {
  const Known& of = m_rows[row];
  const CString name = NewNameOf(row);
  ++m_counts[static_cast<std::size_t>(m_verdicts[row])];
  if (name == of.Name()) {
    Judge(row, Verdict::Unchanged);
  } else if (IsBlank(name)) {
    return Judge(row, Verdict::Blank);
  } else if (of.scope.isUnique && Holding(of.scope, name) == kNone && m_isTaken(row, name)) {
    Judge(row, Verdict::Taken);
  }
  const std::size_t other =
      m_behind.FindOrAdd(NameTable::HashOf(of.scope.number, name), row, [&](std::size_t before) {
        return m_rows[before].scope.number == of.scope.number && NewNameOf(before) == name;
      });
  if (other == kNone) return;
  for (const std::size_t both : {row, other}) {
    if (m_verdicts[both] == Verdict::Renamed) Judge(both, of.scope.isUnique ? Verdict::Twice : Verdict::Shared);
  }
}

std::size_t RenamePlan::RefusedCount() const {
  const auto first = m_counts.begin() + static_cast<std::ptrdiff_t>(Verdict::Blank);
  return std::accumulate(first, m_counts.end(), std::size_t{0});
}

std::size_t RenamePlan::RenamedCount() const {
  return m_counts[static_cast<std::size_t>(Verdict::Renamed)] +
         m_counts[static_cast<std::size_t>(Verdict::Shared)];
}

std::vector<std::size_t> RenamePlan::RefusedFirst(std::size_t most) const {
  most = std::min(most, m_rows.size());
  std::vector<std::size_t> rows;
  for (const bool refused : {true, false}) {
    for (std::size_t row = 0; row < m_rows.size() && rows.size() < most; ++row) {
      if (IsRefused(m_verdicts[row]) == refused) rows.push_back(row);
    }
  }
  return rows;
}

// ---- the order in which names are given -----------------------------------------------------------------

/// The other row that has now what this one is to be called, and gives it up; kNone for none.
std::size_t RenamePlan::HolderOf(std::size_t row) {
  if (!m_rows[row].scope.isUnique) return kNone;
  const std::size_t holder = Holding(m_rows[row].scope, NewNameOf(row));
  return holder != row ? holder : kNone;
}

/// The number of a name that nothing has, or is to get.
std::size_t RenamePlan::NextPassing(std::size_t row) {
  const NameScope& scope = m_rows[row].scope;
  while (true) {
    const CString name = PassingName(++m_passing);
    const auto isNew = [&](std::size_t other) {
      return m_rows[other].scope.number == scope.number && NewNameOf(other) == name;
    };
    const bool isFree = Holding(scope, name) == kNone &&
                        m_behind.Find(NameTable::HashOf(scope.number, name), isNew) == kNone &&
                        !m_isTaken(row, name);
    if (isFree) return m_passing;
  }
}

CString RenamePlan::NameIn(const Step& step) {
  return step.passing != 0 ? PassingName(step.passing) : NewNameOf(step.row);
}

bool RenamePlan::Order(const IsEnough& isEnough) {
  m_marks.resize(m_count, Mark::Waits);
  for (std::size_t looked = 1; !IsOrdered(); ++looked) {
    OrderOn();
    if (looked % kRowsBetweenLooks == 0 && isEnough()) break;
  }
  return IsOrdered();
}

/// One row goes into the chain, or out of it.
void RenamePlan::OrderOn() {
  if (m_at == kNone && m_chain.empty()) {
    m_at = m_first++;
  } else if (m_at == kNone) {
    m_steps.push_back({m_chain.back()});
    m_marks[m_chain.back()] = Mark::Done;
    m_chain.pop_back();
  } else if (m_verdicts[m_at] == Verdict::Unchanged || m_marks[m_at] == Mark::Done) {
    m_at = kNone;
  } else if (m_marks[m_at] == Mark::InChain) {
    m_steps.push_back({m_at, NextPassing(m_at)});
    m_at = kNone;
  } else {
    m_marks[m_at] = Mark::InChain;
    m_chain.push_back(m_at);
    m_at = HolderOf(m_at);
  }
}

}  // namespace qd

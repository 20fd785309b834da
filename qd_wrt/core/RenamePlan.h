#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "platform/Export.h"
#include "platform/Types.h"
#include "qd_wrt/core/NameScope.h"
#include "qd_wrt/core/NameTable.h"
#include "qd_wrt/find/NewNames.h"

namespace qd {

/// What becomes of the names of many rows by a rule, and which of the new names cannot be given. A million rows
/// are read, looked at and put in order in slices; a name that is asked for is made at once. Nothing is renamed
/// here.
class QD_EXPORT RenamePlan {
 public:
  /// What the plan has to know of a row.
  struct Row {
    CString name;         ///< its name now
    std::int64_t id = 0;  ///< for `{id}` in the rule
    NameScope scope{};    ///< among what the name must be another one
  };
  /// What is known of a new name.
  enum class Verdict : std::uint8_t {
    Unchanged,  ///< the rule leaves the name as it is
    Renamed,
    Shared,  ///< gets a name that another of the rows gets too, which may be
    // What is refused:
    Blank,
    Taken,  ///< what is not among the rows has the name
    Twice   ///< another of the rows gets the name, or keeps it
  };
  /// One name that is given.
  struct Step {
    std::size_t row = 0;      ///< its place, from 0
    std::size_t passing = 0;  ///< number of a name for the meantime; 0 for the new name
  };
  using Read = std::function<Row(std::size_t row)>;  ///< reads a row by its place
  /// Whether anything has a name in the scope of a row.
  using IsTaken = std::function<bool(std::size_t row, const CString& name)>;
  /// Asked now and then: whether this slice has taken long enough.
  using IsEnough = std::function<bool()>;

  /// Rows are read once, when they are looked at first, and before that when they are shown.
  RenamePlan(std::size_t count, Read read, IsTaken isTaken);

  /// Begins anew with a rule; false for one that cannot be followed, and the former one stays.
  bool SetRule(const NamingRule& rule, QueryFault& fault);
  /// Looks at further rows until all are looked at or it is enough. Returns IsChecked().
  bool Check(const IsEnough& isEnough);
  bool IsChecked() const { return m_next == m_count; }  ///< whether all rows are looked at
  std::size_t CheckedCount() const { return m_next; }   ///< how many are

  std::size_t RowCount() const { return m_count; }  ///< how many there are
  CString NameOf(std::size_t row) const;            ///< the name that it has
  /// As it would be stored.
  CString NewNameOf(std::size_t row);
  /// What is known so far; Renamed for a row that was not looked at.
  Verdict VerdictOf(std::size_t row) const { return m_verdicts[row]; }
  /// Whether the name cannot be given.
  static bool IsRefused(Verdict verdict) { return verdict >= Verdict::Blank; }
  /// Of those that were looked at.
  std::size_t RefusedCount() const;
  std::size_t RenamedCount() const;  ///< of those that were looked at, how many get another name
  /// Up to `most` rows, those that are refused before the others.
  std::vector<std::size_t> RefusedFirst(std::size_t most) const;

  /// Puts the names in an order in which none is given while another row still has it; where rows pass their names
  /// round, one of them gets a name for the meantime before. For a plan that is checked and refuses nothing; goes
  /// on until it is enough. Returns IsOrdered().
  bool Order(const IsEnough& isEnough);
  /// Whether Order has come to its end.
  bool IsOrdered() const { return m_first == m_count && m_at == kNone && m_chain.empty(); }
  const std::vector<Step>& Steps() const { return m_steps; }  ///< in the order in which they are to be taken
  CString NameIn(const Step& step);                           ///< the name that a step gives

 private:
  static constexpr std::size_t kNone = SIZE_MAX;
  enum class Mark : std::uint8_t { Waits, InChain, Done };
  struct Known {
    const wchar_t* name = nullptr;
    std::size_t length = 0;
    std::int64_t id = 0;
    NameScope scope{};
    std::wstring_view Name() const { return {name, length}; }
  };

  void ReadNext();
  void Look(std::size_t row);
  void Judge(std::size_t row, Verdict verdict);
  void OrderOn();
  CString Made(std::wstring_view name, std::int64_t id, std::size_t row);
  std::size_t Holding(const NameScope& scope, std::wstring_view name) const;
  std::size_t HolderOf(std::size_t row);
  std::size_t NextPassing(std::size_t row);

  std::size_t m_count;
  Read m_read;
  IsTaken m_isTaken;
  NameMaker m_maker;
  std::vector<Known> m_rows;     // those that were read
  NameStore m_names;             // what they are called
  NameTable m_before, m_behind;  // rows by their names, and by their new ones
  std::size_t m_next = 0;        // the first row that was not looked at
  std::vector<Verdict> m_verdicts;
  std::array<std::size_t, 6> m_counts{};  // by verdict, of those that were looked at

  std::vector<Step> m_steps;
  std::vector<Mark> m_marks;
  std::vector<std::size_t> m_chain;  // from a row to the one that has its name, and on
  std::size_t m_at = kNone;          // what is to go into the chain next
  std::size_t m_first = 0;           // where the next chain begins
  std::size_t m_passing = 0;
};

}  // namespace qd

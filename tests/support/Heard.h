#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/Model.h"

/// What a host is to hear of an act, written down as the recording host writes it. Lines that depend on how the
/// host stands begin with the condition.
namespace qd::test::heard {

/// How the host stands while an act is tried.
enum class Standing { Plain, PostMode, Selecting, NoView };
inline constexpr Standing kStandings[] = {Standing::Plain, Standing::PostMode, Standing::Selecting,
                                          Standing::NoView};

inline const std::string kRedraw = "view.Redraw(0)\n";
/// The selection of the rows goes, and with it the document's, unless a command collects one.
inline const std::string kReset = "unless selecting: doc.ClearSelectBuffer(1)\n";
inline const std::string kRefresh = kReset + kRedraw;
inline const std::string kSections = "sections.UpdateClipSlice(view)\nsections.UpdateClipVect(view)\n";
inline const std::string kModelInfo = "doc.SetModelInfoChangedFlag(1)\n";

inline std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

inline std::string Call(const std::string& name, std::initializer_list<std::string> arguments) {
  std::string list;
  for (const std::string& argument : arguments) list.append(list.empty() ? "" : ", ").append(argument);
  return name + "(" + list + ")\n";
}

/// Calls that come while the host handles another one.
inline std::string Inside(const std::string& calls) {
  std::string text;
  for (const std::string& line : LinesOf(calls)) text.append("  ").append(line).append("\n");
  return text;
}
inline std::string Page(const std::string& first = "none") {
  return "pages.SetPropertySet(" + first + ")\npages.Refresh\n";
}
/// Something that the host announces, after which the property window shows `page`.
inline std::string Announced(const std::string& call, const std::string& page = "none") {
  return call + "\n" + Inside(Page(page));
}
inline std::string Transaction(const std::string& title, const std::string& writes,
                               const std::string& page = "none", int redraw = 1) {
  return "session.Begin(IDS_QD_TRANS_" + title + ")\n" + writes +
         Announced("session.Commit(" + std::to_string(redraw) + ")", page);
}
/// A change of visibility that "previous" takes back as a whole.
inline std::string Change(const std::string& calls) {
  return "parts.BeginShowHide\n" + calls + "parts.EndShowHide\n";
}

/// What is heard of it all as the host stands.
inline std::string As(Standing standing, const std::string& text) {
  const std::pair<std::string, bool> conditions[] = {{"unless selecting: ", standing != Standing::Selecting},
                                                     {"in post mode: ", standing == Standing::PostMode},
                                                     {"outside of post mode: ", standing != Standing::PostMode}};
  std::string heard;
  for (std::string line : LinesOf(text)) {
    bool applies = true;
    for (const auto& [condition, holds] : conditions) {
      if (line.find(condition) == std::string::npos) continue;
      line.erase(line.find(condition), condition.size());
      applies = holds;
    }
    for (const char* toView : {"view.", "post.", "sections."}) {
      if (standing == Standing::NoView && line.starts_with(toView)) applies = false;
    }
    if (applies) heard.append(line).append("\n");
  }
  return heard;
}

inline void Stand(RecordingDocument& doc, Standing standing) {
  doc.SetPostMode(standing == Standing::PostMode);
  doc.SetSelecting(standing == Standing::Selecting);
  doc.SetViewOpen(standing != Standing::NoView);
}

inline bool IsWrite(const std::string& call) {
  if (call == "gsets.PutCurrentSet" || call == "session.Rollback") return false;
  if (call == "doc.RunCommand" || call == "doc.DeleteData") return true;
  const char* kWriters[] = {"session.", "geoms.", "msets.", "mginfos.", "gsets.", "cords.", "appdb."};
  return std::any_of(std::begin(kWriters), std::end(kWriters),
                     [&call](const char* writer) { return call.starts_with(writer); });
}

/// An act on a world of rows and records, and what the host is to hear of it.
template <typename World>
struct HeardAct {
  std::string name;
  CString selected;  ///< titles of rows, divided by "|"
  std::function<void(World&)> act;
  std::string heard;
  int variant = 0;  ///< of the world, as it knows them
};

/// What a user does, as acts are written down.
template <typename World>
struct Doing {
  using Act = std::function<void(World&)>;
  static Act Run(unsigned command) {
    return [=](World& world) { world.Command(command); };
  }
  static Act Click(const CString& title) {
    return [=](World& world) { world.Click(title); };
  }
  static Act Box(const CString& title) {
    return [=](World& world) { world.ClickCheck(title); };
  }
  static Act Rename(const CString& title, const CString& text) {
    return [=](World& world) { world.Rename(title, text); };
  }
  /// After another renaming, of which nothing counts.
  static Act RenameAfter(const CString& title, const CString& text, const CString& next, const CString& nextText) {
    return [=](World& world) {
      world.Rename(title, text);
      world.Heard();
      world.Rename(next, nextText);
    };
  }
  static Act Drop(const std::vector<CString>& titles, const CString& target) {
    return [=](World& world) { world.Drag(titles, target); };
  }
};

/// Runs an act in new worlds, each time with the next of its writes refused by the host: what was heard so far
/// stays, the transaction is rolled back, and what follows a write that was done does not come.
template <typename World>
void ExpectRefusals(const HeardAct<World>& act) {
  std::map<std::string, int> seen;
  std::string before;
  bool open = false;
  for (const std::string& line : LinesOf(As(Standing::Plain, act.heard))) {
    const std::string call = line.substr(0, line.find('('));
    if (IsWrite(call)) {
      World world;
      world.m_checked = false;
      world.Make(act.variant);
      world.SelectRows(act.selected);
      world.Heard();
      const auto data = world.Data().Snapshot();
      world.m_doc.Log().Refuse(call, seen[call]++);
      act.act(world);
      const std::string heard = world.Heard();
      const std::string rolledBack = open && call != "session.Commit" ? "session.Rollback\n" : "";
      EXPECT_EQ(heard, before + "refused: " + line + "\n" + rolledBack);
      EXPECT_EQ(world.Data().Snapshot(), data) << line;
    }
    if (call == "session.Begin" || call == "session.Commit") open = call == "session.Begin";
    before.append(line).append("\n");
  }
}

/// Runs an act that writes in new worlds, each time with the next write to the database refused: as long as one
/// is, the records and the rows stay as they are.
template <typename World>
void ExpectAllOrNothing(const HeardAct<World>& act) {
  const std::vector<std::string> lines = LinesOf(As(Standing::Plain, act.heard));
  if (std::none_of(lines.begin(), lines.end(), [](const auto& line) { return IsWrite(line); })) return;
  for (int failing = 0, writes = 1; writes > failing; ++failing) {
    World world;
    world.m_checked = false;
    world.Make(act.variant);
    world.SelectRows(act.selected);
    world.m_toolkit.Pump();  // boxes of meshes follow later
    const auto data = world.Data().Snapshot();
    const std::string rows = world.Print();
    writes = 0;
    world.Data().SetWriteGuard([&](iterator) { return writes++ != failing; });
    act.act(world);
    world.m_toolkit.Pump();
    world.Data().SetWriteGuard(nullptr);
    EXPECT_FALSE(world.Data().IsInTransaction());
    if (writes <= failing) continue;
    EXPECT_EQ(world.Data().Snapshot(), data) << "write " << failing;
    EXPECT_EQ(world.Print(), rows) << "write " << failing;
  }
}

/// Tries an act in a new world for each way in which the host may stand, with acts after it that do the same after
/// any other one, and then with every write of it refused, by the host and by the database.
template <typename World>
void ExpectHeard(const HeardAct<World>& act) {
  for (const Standing standing : kStandings) {
    SCOPED_TRACE("standing " + std::to_string(static_cast<int>(standing)));
    World world;
    world.m_checked = standing == Standing::Plain;
    world.Make(act.variant);
    Stand(world.m_doc, standing);
    world.SelectRows(act.selected);
    world.Heard();
    const auto before = world.Data().Snapshot();
    act.act(world);
    EXPECT_EQ(world.Heard(), As(standing, act.heard));
    EXPECT_EQ(world.m_toolkit.TakeMessages(), std::vector<CString>()) << "boxes that nobody looked at";
    world.ExpectOthersAsEver(standing, world.Data().Snapshot() != before);
  }
  ExpectRefusals(act);
  ExpectAllOrNothing(act);
}

/// A test that stands in another one instead of being run itself.
template <typename Fixture>
class Standalone : public Fixture {
 public:
  using Fixture::Click;
  using Fixture::ClickCheck;
  using Fixture::Command;
  using Fixture::Data;
  using Fixture::Drag;
  using Fixture::Key;
  using Fixture::m_bar;
  using Fixture::m_checked;
  using Fixture::m_doc;
  using Fixture::m_toolkit;
  using Fixture::Menu;
  using Fixture::Node;
  using Fixture::Print;
  using Fixture::Row;
  using Fixture::Select;
  using Fixture::SelectRows;
  using Fixture::Tree;

  /// The user types a new title into a row, where it lets him.
  void Rename(const CString& title, const CString& text) {
    Select({title});
    Key(kKeyF2);
    CWnd* box = m_toolkit.FindChild(Tree(), 1);
    if (box == nullptr) return;
    m_toolkit.Key(*box, kKeyDelete);  // all of it is marked
    m_toolkit.Type(*box, text);
    m_toolkit.Key(*box, kKeyEnter);
    Fixture::Settle();
  }
  /// Each of the trees without a selection clears the property window by itself, which counts once.
  std::string Heard() {
    std::vector<std::string> lines;
    for (std::string& line : LinesOf(Fixture::Heard())) {
      lines.push_back(std::move(line));
      const std::size_t n = lines.size();
      const bool again = n >= 4 && lines[n - 1] == lines[n - 3] && lines[n - 2] == lines[n - 4] &&
                         lines[n - 1].ends_with("pages.Refresh");
      if (again) lines.resize(n - 2);
    }
    std::string text;
    for (const std::string& line : lines) text.append(line).append("\n");
    return text;
  }

 private:
  void TestBody() override {}
};

}  // namespace qd::test::heard

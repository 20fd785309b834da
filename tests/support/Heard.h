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
  std::vector<CString> selected;
  std::function<void(World&)> act;
  std::string heard;
  int variant = 0;  ///< of the world, as it knows them
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
      world.Select(act.selected);
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

/// Tries an act in a new world for each way in which the host may stand, with acts after it that do the same after
/// any other one, and then with every write of it refused.
template <typename World>
void ExpectHeard(const HeardAct<World>& act) {
  for (const Standing standing : kStandings) {
    SCOPED_TRACE("standing " + std::to_string(static_cast<int>(standing)));
    World world;
    world.m_checked = standing == Standing::Plain;
    world.Make(act.variant);
    Stand(world.m_doc, standing);
    world.Select(act.selected);
    world.Heard();
    const auto before = world.Data().Snapshot();
    act.act(world);
    EXPECT_EQ(world.Heard(), As(standing, act.heard));
    EXPECT_EQ(world.m_toolkit.TakeMessages(), std::vector<CString>()) << "boxes that nobody looked at";
    world.ExpectOthersAsEver(standing, world.Data().Snapshot() != before);
  }
  ExpectRefusals(act);
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
  using Fixture::Row;
  using Fixture::Select;
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

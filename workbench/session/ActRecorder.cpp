#include "workbench/session/ActRecorder.h"

#include <algorithm>
#include <set>
#include <utility>

#include "host/CMSGFunction.h"
#include "workbench/session/PythonText.h"
#include "workbench/session/ScriptSettings.h"
#include "workbench/session/ScriptWords.h"

namespace qd::workbench {

namespace {

using Lines = std::vector<std::string>;

std::string OrNone(iterator itr) {
  return itr != 0 ? ScriptRecord(itr) : "None";
}

}  // namespace

/// An act that waits for what may still belong to it.
struct ActRecorder::Pending {
  CString title;
  Lines lines;
  bool whole = true;     // the lines do all of it
  bool isAlone = false;  // they cannot stand in an act
};

/// What became of the records of an act.
struct ActRecorder::Changes {
  struct Change {
    iterator itr;
    Kept before;  // null for a new one
    Kept after;   // null for one that is gone
  };
  std::vector<Change> all;
  std::set<iterator> gone;
  bool others = false;  // records that scripts do not know
};

ActRecorder::ActRecorder(WorkDocument& doc, Write write)
    : m_doc(doc), m_write(std::move(write)), m_shown(doc), m_acts(doc.GetDatabase().ActNumber()) {
  Keep();
  m_onRecords = m_doc.OnRecords([this](const CQDUpdateRecord& record) { Follow(record); });
  m_onDisplay = m_doc.GetDisplay().Subscribe([this](const DisplayNotice& notice) { Follow(notice); });
  m_onSetting = m_doc.OnSetting([this](const WorkDocument&) {
    const iterator current = m_doc.GetDatabase().GetGsetPool().GetCurrentSet();
    if (current == 0 || (m_isSilent && m_isSilent())) return;
    Say("doc.current_group = " + ScriptRecord(current));
  });
}

ActRecorder::~ActRecorder() = default;

void ActRecorder::Keep() {
  Database& data = m_doc.GetDatabase();
  const auto keep = [this](const auto& pool) {
    for (const iterator itr : pool.GetItrList()) m_kept[itr] = pool.Get(itr);
  };
  keep(std::as_const(data).GetGeomPool());
  keep(std::as_const(data).GetMsetPool());
  keep(std::as_const(data).GetGsetPool());
  keep(std::as_const(data).GetMaterialPool());
  keep(std::as_const(data).GetCordPool());
}

void ActRecorder::Say(const std::string& line) {
  Flush();
  m_write(line + "\n");
}

void ActRecorder::Flush() {
  const std::unique_ptr<Pending> act = std::move(m_pending);
  if (act == nullptr) return;
  const std::string title = PythonText(act->title);
  std::string text;
  const bool isBlock = !act->isAlone && (act->lines.size() > 1 ||
                                         (act->lines.size() == 1 && act->lines.front().starts_with("for ")));
  if (isBlock) text = "with doc.act(" + title + "):\n";
  for (std::string line : act->lines) {
    if (isBlock) {
      for (std::size_t at = line.find('\n'); at != std::string::npos; at = line.find('\n', at + 1))
        line.insert(at + 1, "    ");
      text += "    ";
    }
    text += line + "\n";
  }
  if (act->lines.empty()) {
    text += (act->whole ? "# nothing differs after: " : "# no line for: ") + title + "\n";
  } else if (!act->whole) {
    text += "# no line for the rest of: " + title + "\n";
  }
  m_write(text);
}

// ---- records --------------------------------------------------------------------------------------------

void ActRecorder::Follow(const CQDUpdateRecord& record) {
  const Database& data = m_doc.GetDatabase();
  Changes changes;
  for (const tagTRNotify& note : record.changes) {
    if (ScriptKindOf(note.dataType) == nullptr) {
      changes.others = true;
      continue;
    }
    Changes::Change change{note.itr, m_kept[note.itr], nullptr};
    if (note.kind != kChangeDeleted) {
      switch (note.dataType) {
        case kDataGeom:
          change.after = data.GetGeomPool().Get(note.itr);
          break;
        case kDataMset:
          change.after = data.GetMsetPool().Get(note.itr);
          break;
        case kDataGset:
          change.after = data.GetGsetPool().Get(note.itr);
          break;
        case kDataMaterial:
          change.after = data.GetMaterialPool().Get(note.itr);
          break;
        default:
          change.after = data.GetCordPool().Get(note.itr);
      }
    }
    if (change.after != nullptr) {
      m_kept[note.itr] = change.after;
    } else {
      m_kept.erase(note.itr);
      changes.gone.insert(note.itr);
    }
    changes.all.push_back(std::move(change));
  }
  // Undo and redo are no acts.
  const bool isAct = std::exchange(m_acts, data.ActNumber()) != data.ActNumber();
  if (!isAct) return;
  Flush();
  if (m_isSilent && m_isSilent()) return m_expected.clear();
  auto act = std::make_unique<Pending>();
  act->title = data.UndoTitle();
  if (!m_expected.empty()) {
    act->lines = {std::exchange(m_expected, {})};
    act->isAlone = true;
  } else if (std::string meant = MeantLine::Take(m_doc); !meant.empty()) {
    act->lines = {std::move(meant)};
    // Which colour is the next one follows from all that was made before.
    ScriptSettings settings;
    for (const Changes::Change& change : changes.all) {
      if (change.before != nullptr || change.after == nullptr || TypeOf(change.itr) != kDataMset) continue;
      settings.Add(change.itr, "colour", PythonColour(static_cast<const tagTMset&>(*change.after).colour));
    }
    for (std::string& line : settings.Take()) act->lines.push_back(std::move(line));
  } else {
    act->lines = LinesOf(changes, act->whole);
  }
  m_pending = std::move(act);
}

namespace {

/// What of one record changed, as lines. False when something did that scripts cannot do.
bool AddPart(const tagTGeom& before, const tagTGeom& after, iterator itr, ScriptSettings& settings) {
  if (before.name != after.name) settings.Add(itr, "name", PythonText(after.name));
  if (before.colour != after.colour) settings.Add(itr, "colour", PythonColour(after.colour));
  if (before.material != after.material) settings.Add(itr, "material", OrNone(after.material));
  if (before.gset != after.gset) settings.Add(itr, "group", ScriptRecord(after.gset));
  if (before.flexible != after.flexible) settings.Add(itr, "flexible", after.flexible ? "True" : "False");
  return before.kind == after.kind && before.shape == after.shape && before.origin == after.origin;
}

/// A mesh set that an act has made without elements.
bool AddNewSet(const tagTMset& made, iterator itr, Lines& lines, ScriptSettings& settings) {
  if (made.mesh != nullptr || made.geom != 0 || made.property != 0 || made.parent != 0) return false;
  lines.push_back("doc.mesh_set(" + PythonText(made.name) + ")");
  settings.Add(itr, "colour", PythonColour(made.colour));
  return true;
}

/// A coordinate system that was made or placed; empty for one that was only renamed.
std::string LineOfSystem(const tagTCord* before, const tagTCord& now, iterator itr, ScriptSettings& settings) {
  const tagTCord was = before != nullptr ? *before : tagTCord();
  std::string arguments;
  const auto add = [&](const char* name, bool differs, const std::string& value) {
    if (differs) arguments += (arguments.empty() ? "" : ", ") + std::string(name) + "=" + value;
  };
  add("kind", was.kind != now.kind, "\"" + std::string(kCordKindNames[static_cast<std::size_t>(now.kind)]) + "\"");
  add("origin", was.origin != now.origin, ScriptPoint(now.origin));
  add("x_axis", was.xAxis != now.xAxis, ScriptPoint(now.xAxis));
  add("xy_plane", was.xyPlane != now.xyPlane, ScriptPoint(now.xyPlane));
  if (now.parent != 0) add("parent", was.parent != now.parent, ScriptRecord(now.parent));
  if (before == nullptr) {
    return "doc.coordinate_system(" + PythonText(now.GetName()) + (arguments.empty() ? "" : ", ") + arguments +
           ")";
  }
  if (was.GetName() != now.GetName()) settings.Add(itr, "name", PythonText(now.GetName()));
  return arguments.empty() ? std::string() : ScriptRecord(itr) + ".place(" + arguments + ")";
}

void AddMaterial(const tagTMaterial& before, const tagTMaterial& after, iterator itr, ScriptSettings& settings) {
  if (before.name != after.name) settings.Add(itr, "name", PythonText(after.name));
  if (before.colour != after.colour) settings.Add(itr, "colour", PythonColour(after.colour));
  const auto number = [&](const char* member, double was, double is) {
    if (was != is) settings.Add(itr, member, PythonNumber(is));
  };
  number("youngs_modulus", before.youngsModulus, after.youngsModulus);
  number("poissons_ratio", before.poissonsRatio, after.poissonsRatio);
  number("density", before.density, after.density);
}

}  // namespace

std::vector<std::string> ActRecorder::LinesOf(const Changes& changes, bool& all) const {
  const MsetPool& sets = m_doc.GetDatabase().GetMsetPool();
  Lines lines;
  ScriptSettings settings;
  std::map<iterator, std::vector<iterator>> made;  // new groups and what is put into them
  std::vector<iterator> merged;                    // sets whose meshes changed
  for (const auto& change : changes.all) {
    if (change.before == nullptr && change.after != nullptr && TypeOf(change.itr) == kDataGset) made[change.itr];
  }
  for (const Changes::Change& change : changes.all) {
    const iterator itr = change.itr;
    const Kept& before = change.before;
    const Kept& after = change.after;
    if (after == nullptr) continue;
    const auto put = [&]<typename Record>(const Record& is, auto&& add) {
      return before != nullptr && add(static_cast<const Record&>(*before), is);
    };
    switch (TypeOf(itr)) {
      case kDataGeom: {
        tagTGeom is = static_cast<const tagTGeom&>(*after);
        const auto group = made.find(is.gset);
        if (group != made.end() && before != nullptr) {
          group->second.push_back(itr);
          is.gset = static_cast<const tagTGeom&>(*before).gset;
        }
        all =
            put(is, [&](const tagTGeom& was, const tagTGeom& now) { return AddPart(was, now, itr, settings); }) &&
            all;
        break;
      }
      case kDataMset:
        if (before == nullptr) {
          all = AddNewSet(static_cast<const tagTMset&>(*after), itr, lines, settings) && all;
          break;
        }
        all = put(static_cast<const tagTMset&>(*after),
                  [&](const tagTMset& was, const tagTMset& now) {
                    if (was.name != now.name) settings.Add(itr, "name", PythonText(now.name));
                    if (was.colour != now.colour) settings.Add(itr, "colour", PythonColour(now.colour));
                    if (was.mesh != now.mesh) merged.push_back(itr);
                    if (was.parent != now.parent)
                      settings.Add(itr, "parent", OrNone(sets.GetItrByKey(now.parent & kMsetKeyMask)));
                    const bool keepsPart = was.geom == now.geom || changes.gone.contains(was.geom);
                    return keepsPart && (was.property == now.property || changes.others);
                  }) &&
              all;
        break;
      case kDataGset:
        if (before == nullptr) break;
        settings.Add(itr, "name", PythonText(static_cast<const tagTGset&>(*after).name));
        break;
      case kDataMaterial: {
        const auto& now = static_cast<const tagTMaterial&>(*after);
        if (before == nullptr) {
          lines.push_back("doc.material(" + PythonText(now.name) + ", " + PythonNumber(now.youngsModulus) + ", " +
                          PythonNumber(now.poissonsRatio) + ", " + PythonNumber(now.density) + ")");
          tagTMaterial was = now;
          was.colour = tagTMaterial().colour;
          AddMaterial(was, now, itr, settings);
        } else {
          AddMaterial(static_cast<const tagTMaterial&>(*before), now, itr, settings);
        }
        break;
      }
      default:
        lines.push_back(LineOfSystem(static_cast<const tagTCord*>(before.get()),
                                     static_cast<const tagTCord&>(*after), itr, settings));
        if (lines.back().empty()) lines.pop_back();
    }
  }
  for (const auto& [group, parts] : made) {
    const auto& record = *m_doc.GetDatabase().GetGsetPool().GetAtNU(group);
    lines.push_back("doc.group(" + PythonText(record.name) + ", " + SortedRecords(parts) + ")");
  }
  for (std::string& line : settings.Take()) lines.push_back(std::move(line));
  std::vector<iterator> gone(changes.gone.begin(), changes.gone.end());
  const bool onlySets =
      std::all_of(gone.begin(), gone.end(), [](iterator itr) { return TypeOf(itr) == kDataMset; });
  if (merged.size() == 1 && !gone.empty() && onlySets &&
      m_doc.GetDatabase().UndoTitle() == CMSGFunction::GetValue("IDS_QD_TRANS_Merge_Mesh_Set")) {
    lines.push_back(ScriptRecord(merged.front()) + ".merge(" + SortedRecords(gone) + ")");
  } else {
    if (!merged.empty()) all = false;
    if (!gone.empty()) lines.push_back("doc.delete(" + SortedRecords(gone) + ")");
  }
  if (lines.empty() && changes.others) all = false;
  return lines;
}

// ---- what is shown --------------------------------------------------------------------------------------

void ActRecorder::Follow(const DisplayNotice& notice) {
  const Database& data = m_doc.GetDatabase();
  bool all = true;
  const Lines lines = m_shown.Take(notice, all);
  const bool isOwn = std::exchange(m_acts, data.ActNumber()) != data.ActNumber();
  if (!notice.acted) return;
  if (isOwn || m_pending == nullptr) {
    Flush();
    if (m_isSilent && m_isSilent()) return;
    m_pending = std::make_unique<Pending>();
    m_pending->title = data.UndoTitle();
  }
  m_pending->lines.insert(m_pending->lines.end(), lines.begin(), lines.end());
  m_pending->whole = m_pending->whole && all;
}

}  // namespace qd::workbench

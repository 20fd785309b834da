#include "workbench/session/ActRecorder.h"

#include <algorithm>
#include <set>
#include <utility>

#include "host/CMSGFunction.h"
#include "workbench/session/PythonText.h"

namespace qd::workbench {

namespace {

using Lines = std::vector<std::string>;

/// What scripts call the records that they know; null for others.
const char* KindOf(std::uint16_t type) {
  switch (type) {
    case kDataGeom:
      return "part";
    case kDataMset:
      return "mesh_set";
    case kDataGset:
      return "group";
    case kDataMaterial:
      return "material";
    case kDataCord:
      return "coordinate_system";
    default:
      return nullptr;
  }
}

std::string At(iterator itr) {
  return std::string("doc.at(\"") + KindOf(TypeOf(itr)) + "\", " + std::to_string(NumberOf(itr)) + ")";
}

/// Records as a list, kind by kind.
std::string ListOf(const std::vector<iterator>& records) {
  std::map<std::uint16_t, std::vector<int>> byType;
  for (const iterator itr : records) byType[TypeOf(itr)].push_back(static_cast<int>(NumberOf(itr)));
  std::string text;
  for (auto& [type, numbers] : byType) {
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    text += text.empty() ? "[" : " + [";
    if (numbers.size() == 1) {
      text += "doc.at(\"" + std::string(KindOf(type)) + "\", " + std::to_string(numbers.front()) + ")]";
    } else {
      text += "doc.at(\"" + std::string(KindOf(type)) + "\", n) for n in " + PythonNumbers(numbers) + "]";
    }
  }
  return text.empty() ? "[]" : text;
}

/// What records become, by what is put into them: many that get the same are one line, or two.
class Settings {
 public:
  void Add(iterator itr, const char* member, std::string value) {
    const auto key = std::make_tuple(TypeOf(itr), std::string(member), std::move(value));
    const auto [place, isNew] = m_numbers.try_emplace(key);
    if (isNew) m_order.push_back(key);
    place->second.push_back(static_cast<int>(NumberOf(itr)));
  }
  Lines Take() {
    Lines lines;
    for (const Key& key : m_order) {
      std::vector<int>& numbers = m_numbers.at(key);
      std::sort(numbers.begin(), numbers.end());
      const auto& [type, member, value] = key;
      const bool one = numbers.size() == 1;
      std::string line;
      if (!one) line.append("for n in ").append(PythonNumbers(numbers)).append(":\n    ");
      line.append("doc.at(\"").append(KindOf(type)).append("\", ");
      line.append(one ? std::to_string(numbers.front()) : "n").append(").").append(member).append(" = ");
      lines.push_back(line.append(value));
    }
    return lines;
  }

 private:
  using Key = std::tuple<std::uint16_t, std::string, std::string>;
  std::map<Key, std::vector<int>> m_numbers;
  std::vector<Key> m_order;
};

std::string OrNone(iterator itr) {
  return itr != 0 ? At(itr) : "None";
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
    : m_doc(doc), m_write(std::move(write)), m_acts(doc.GetDatabase().ActNumber()) {
  Keep();
  m_onRecords = m_doc.OnRecords([this](const CQDUpdateRecord& record) { Follow(record); });
  m_onDisplay = m_doc.GetDisplay().Subscribe([this](const DisplayNotice& notice) { Follow(notice); });
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
  for (const auto& [item, look] : m_doc.GetDisplay().Parts().Looks()) m_looks[item] = look;
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
    text += "# no line for: " + title + "\n";
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
    if (KindOf(note.dataType) == nullptr) {
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
  } else {
    act->lines = LinesOf(changes, act->whole);
  }
  m_pending = std::move(act);
}

namespace {

/// What of one record changed, as lines. False when something did that scripts cannot do.
bool AddPart(const tagTGeom& before, const tagTGeom& after, iterator itr, Settings& settings) {
  if (before.name != after.name) settings.Add(itr, "name", PythonText(after.name));
  if (before.colour != after.colour) settings.Add(itr, "colour", PythonColour(after.colour));
  if (before.material != after.material) settings.Add(itr, "material", OrNone(after.material));
  if (before.gset != after.gset) settings.Add(itr, "group", At(after.gset));
  return before.kind == after.kind && before.flexible == after.flexible && before.shape == after.shape &&
         before.origin == after.origin;
}

void AddMaterial(const tagTMaterial& before, const tagTMaterial& after, iterator itr, Settings& settings) {
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
  Settings settings;
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
        all = false;
    }
  }
  for (const auto& [group, parts] : made) {
    const auto& record = *m_doc.GetDatabase().GetGsetPool().GetAtNU(group);
    lines.push_back("doc.group(" + PythonText(record.name) + ", " + ListOf(parts) + ")");
  }
  for (std::string& line : settings.Take()) lines.push_back(std::move(line));
  std::vector<iterator> gone(changes.gone.begin(), changes.gone.end());
  const bool onlySets =
      std::all_of(gone.begin(), gone.end(), [](iterator itr) { return TypeOf(itr) == kDataMset; });
  if (merged.size() == 1 && !gone.empty() && onlySets &&
      m_doc.GetDatabase().UndoTitle() == CMSGFunction::GetValue("IDS_QD_TRANS_Merge_Mesh_Set")) {
    lines.push_back(At(merged.front()) + ".merge(" + ListOf(gone) + ")");
  } else {
    if (!merged.empty()) all = false;
    if (!gone.empty()) lines.push_back("doc.delete(" + ListOf(gone) + ")");
  }
  if (lines.empty()) all = false;
  return lines;
}

// ---- what is shown --------------------------------------------------------------------------------------

void ActRecorder::Follow(const DisplayNotice& notice) {
  const Database& data = m_doc.GetDatabase();
  bool all = true;
  const Lines lines = ShownLines(notice, all);
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

std::vector<std::string> ActRecorder::ShownLines(const DisplayNotice& notice, bool& all) {
  const Database& data = m_doc.GetDatabase();
  std::vector<iterator> shown;
  std::vector<iterator> hidden;
  for (const int item : notice.parts) {
    const PartDisplay::Look now = m_doc.GetDisplay().Parts().GetLook(item);
    const PartDisplay::Look was = std::exchange(m_looks[item], now);
    const iterator part = data.GetGeomPool().ItrOfNumber(item);
    if (data.GetDataType(part) == 0) continue;
    if (was.shown != now.shown) (now.shown ? shown : hidden).push_back(part);
    if (was.mode != now.mode || was.opacity != now.opacity) all = false;
  }
  for (const iterator set : notice.msets) {
    if (data.GetDataType(set) == 0) continue;
    (m_doc.GetDisplay().Meshes().IsMsetShown(set) != 0 ? shown : hidden).push_back(set);
  }
  if (!notice.labels.empty() || !notice.boxes.empty() || notice.looks || notice.colours || notice.isolation)
    all = false;
  Lines lines;
  if (!hidden.empty()) lines.push_back("doc.hide(" + ListOf(hidden) + ")");
  if (!shown.empty()) lines.push_back("doc.show(" + ListOf(shown) + ")");
  return lines;
}

}  // namespace qd::workbench

#include "workbench/session/ShownLines.h"

#include <algorithm>
#include <utility>

#include "qd_wrt/core/CQDTreeItem.h"
#include "workbench/session/PythonText.h"
#include "workbench/session/ScriptSettings.h"
#include "workbench/session/ScriptWords.h"

namespace qd::workbench {

namespace {

std::string Quoted(const char* word) {
  return "\"" + std::string(word) + "\"";
}

/// A set of what is drawn beside elements.
std::string MarksText(std::uint32_t bits) {
  std::string text;
  for (std::size_t i = 0; i < kMarkNames.size(); ++i) {
    if ((bits >> i & 1U) != 0) text += (text.empty() ? "{" : ", ") + Quoted(kMarkNames[i]);
  }
  return text.empty() ? "set()" : text + "}";
}

MeshDisplay::Look LookIn(const MeshDisplay::LookTable& table, std::uint32_t key) {
  const auto found = table.looks.find(key);
  return found != table.looks.end() ? found->second : MeshDisplay::Look{};
}

}  // namespace

ShownLines::ShownLines(WorkDocument& doc)
    : m_doc(doc),
      m_meshes(doc.GetDisplay().Meshes().Looks()),
      m_colouring(doc.GetDisplay().Meshes().GetColouring()),
      m_partColours(doc.GetDisplay().Parts().Colours()),
      m_boxes(doc.GetDisplay().Boxes().States()),
      m_isIsolated(doc.GetDisplay().Isolation() != nullptr) {
  for (const auto& [item, look] : doc.GetDisplay().Parts().Looks()) m_parts[item] = look;
  for (const std::int32_t id : doc.GetDisplay().Labels().Hidden()) m_hiddenLabels.insert(id);
}

std::vector<std::string> ShownLines::Take(const DisplayNotice& notice, bool& all) {
  Lines lines;
  const bool isIsolated = m_doc.GetDisplay().Isolation() != nullptr;
  const bool wasIsolated = std::exchange(m_isIsolated, isIsolated);
  TakeVisibility(notice, lines);
  // Both show and hide by themselves, whatever that is.
  if (isIsolated && !wasIsolated) lines = {"doc.isolate(" + SortedRecords(Shown()) + ")"};
  TakeBoxes(notice, lines, all);
  if (wasIsolated && !isIsolated) lines = {"doc.leave_isolation()"};
  TakeLooks(notice, lines);
  if (notice.colours) TakeColours(lines, all);
  return lines;
}

std::vector<iterator> ShownLines::Shown() const {
  const Database& data = m_doc.GetDatabase();
  std::vector<iterator> shown;
  for (const iterator part : data.GetGeomPool().GetItrList()) {
    if (m_doc.GetDisplay().Parts().GetLook(data.GetGeomPool().GetAtNU(part)->cadItem).shown) shown.push_back(part);
  }
  for (const iterator set : data.GetMsetPool().GetItrList()) {
    if (m_doc.GetDisplay().Meshes().IsMsetShown(set) != 0) shown.push_back(set);
  }
  return shown;
}

void ShownLines::TakeVisibility(const DisplayNotice& notice, Lines& lines) {
  const Database& data = m_doc.GetDatabase();
  std::vector<iterator> shown;
  std::vector<iterator> hidden;
  ScriptSettings looks;
  for (const int item : notice.parts) {
    const PartDisplay::Look now = m_doc.GetDisplay().Parts().GetLook(item);
    const PartDisplay::Look was = std::exchange(m_parts[item], now);
    const iterator part = data.GetGeomPool().ItrOfNumber(item);
    if (data.GetDataType(part) == 0) continue;
    if (was.shown != now.shown) (now.shown ? shown : hidden).push_back(part);
    if (was.mode != now.mode) looks.Add(part, "mode", Quoted(kPartModeNames[now.mode % kPartModeNames.size()]));
    if (was.opacity != now.opacity) looks.Add(part, "opacity", PythonNumber(now.opacity));
  }
  for (const iterator set : notice.msets) {
    if (data.GetDataType(set) == 0) continue;
    (m_doc.GetDisplay().Meshes().IsMsetShown(set) != 0 ? shown : hidden).push_back(set);
  }
  for (const std::int32_t id : notice.labels) {
    const bool isHidden = m_doc.GetDisplay().Labels().IsShown(id) == 0;
    const bool differs = isHidden ? m_hiddenLabels.insert(id).second : m_hiddenLabels.erase(id) != 0;
    if (differs) (isHidden ? hidden : shown).push_back(data.GetCordPool().ItrOfNumber(id));
  }
  if (!hidden.empty()) lines.push_back("doc.hide(" + SortedRecords(hidden) + ")");
  if (!shown.empty()) lines.push_back("doc.show(" + SortedRecords(shown) + ")");
  for (std::string& line : looks.Take()) lines.push_back(std::move(line));
}

void ShownLines::TakeLooks(const DisplayNotice& notice, Lines& lines) {
  if (!notice.looks) return;
  const MeshDisplay::LookTable now = m_doc.GetDisplay().Meshes().Looks();
  const MeshDisplay::LookTable was = std::exchange(m_meshes, now);
  const bool all = now.addOns != was.addOns;
  if (all) lines.push_back("doc.mark_all(" + MarksText(now.addOns) + ")");
  std::set<std::uint32_t> keys;
  for (const auto* table : {&was, &now}) {
    for (const auto& [key, look] : table->looks) keys.insert(key);
  }
  ScriptSettings looks;
  for (const std::uint32_t key : keys) {
    const iterator set = m_doc.GetDatabase().GetMsetPool().GetItrByKey(key);
    if (set == 0) continue;
    const MeshDisplay::Look before = LookIn(was, key);
    const MeshDisplay::Look after = LookIn(now, key);
    if (before.mode != after.mode)
      looks.Add(set, "mode", Quoted(kMeshModeNames[after.mode % kMeshModeNames.size()]));
    if (before.opacity != after.opacity) looks.Add(set, "opacity", PythonNumber(after.opacity / 255.0));
    if (before.shrink != after.shrink) looks.Add(set, "shrunk", after.shrink ? "True" : "False");
    if ((all ? 0 : before.addOns) != after.addOns) looks.Add(set, "marks", MarksText(after.addOns ^ now.addOns));
  }
  for (std::string& line : looks.Take()) lines.push_back(std::move(line));
}

void ShownLines::TakeColours(Lines& lines, bool& all) {
  const PartDisplay& parts = m_doc.GetDisplay().Parts();
  const int wereColours = std::exchange(m_partColours, parts.Colours());
  if ((wereColours & 1) != (m_partColours & 1)) {
    lines.push_back(parts.GetColorModelType() != 0 ? "doc.colour_parts(\"material\")"
                                                   : "doc.colour_parts(\"own\")");
  }
  if ((wereColours & ~1) != (m_partColours & ~1)) {
    lines.push_back(parts.FadesMeshed() ? "doc.fades_meshed = True" : "doc.fades_meshed = False");
  }
  const MeshDisplay::Colouring now = m_doc.GetDisplay().Meshes().GetColouring();
  if (now == std::exchange(m_colouring, now)) return;
  if (now.mode < kMeshColourNames.size()) {
    lines.push_back("doc.colour_meshes(" + Quoted(kMeshColourNames[now.mode]) + ")");
  } else if (now.mode == MeshDisplay::Colouring::kByQuality) {
    std::string line = "doc.colour_meshes(" + Quoted(kQualityNames[static_cast<std::size_t>(now.quality.measure)]);
    if (now.quality.isTyped) {
      line += ", " + PythonNumber(now.quality.least) + ", " + PythonNumber(now.quality.greatest);
    }
    lines.push_back(line + ")");
  } else {
    all = false;
  }
}

void ShownLines::TakeBoxes(const DisplayNotice& notice, Lines& lines, bool& all) {
  for (const RowBox& box : std::set<RowBox>(notice.boxes.begin(), notice.boxes.end())) {
    const int state = m_doc.GetDisplay().Boxes().GetBox(box);
    int& was = m_boxes.try_emplace(box, static_cast<int>(kChecked)).first->second;
    if (std::exchange(was, state) == state) continue;
    const bool gone = box.itr != 0 && m_doc.GetDatabase().GetDataType(box.itr) == 0;
    const char* branch = ScriptKindOf(box.branch);
    const bool known = branch != nullptr && (state == kChecked || state == kUnchecked) &&
                       (box.itr == 0 || TypeOf(box.itr) == kDataGset) &&
                       box.kind < static_cast<int>(kPartKindNames.size());
    if (gone) continue;
    if (!known) {
      all = false;
      continue;
    }
    std::string line = "doc.tick(" + Quoted(branch) + (state == kChecked ? ", True" : ", False");
    if (box.itr != 0) line += ", group=" + ScriptRecord(box.itr);
    if (box.kind >= 0) line += ", kind=" + Quoted(kPartKindNames[static_cast<std::size_t>(box.kind)]);
    lines.push_back(line + ")");
  }
}

}  // namespace qd::workbench

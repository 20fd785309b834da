#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "workbench/display/DisplayBytes.h"
#include "workbench/display/WorkDocument.h"

namespace qd::test {

/// What undo and redo bring back: the records, shared with the database, and what is shown and how. The settings,
/// which no act takes back, are left out.
struct Digest {
  std::vector<std::pair<iterator, std::shared_ptr<const tagTRecord>>> records;
  std::string display;
  bool operator==(const Digest&) const = default;
};

/// How everything is shown that has a record, the boxes of rows that have none, and what an isolation remembers.
inline std::string DisplayText(workbench::WorkDocument& doc) {
  const workbench::Display& display = doc.GetDisplay();
  const auto isThere = [&doc](const RowBox& box) {
    return box.itr == 0 || doc.GetDatabase().GetDataType(box.itr) != 0;
  };
  const auto boxes = [&isThere](const std::map<RowBox, int>& states) {
    std::string text;
    for (const auto& [box, state] : states) {
      if (!isThere(box)) continue;
      text += "box " + std::to_string(box.branch) + " " + std::to_string(box.itr) + " " +
              std::to_string(box.kind) + " " + std::to_string(state) + "\n";
    }
    return text;
  };
  const workbench::Visibility* former = display.Isolation().get();
  const auto wasHidden = [](const auto& hidden, const auto& what) {
    return std::find(hidden.begin(), hidden.end(), what) != hidden.end() ? " hidden before" : "";
  };
  std::string text = "colours " + std::to_string(display.Parts().GetColorModelType()) + " " +
                     std::to_string(display.Meshes().GetMeshColorMode()) + "\n" + boxes(display.Boxes().States());
  if (const auto* quality = display.Meshes().ColouringQuality()) {
    text += "quality " + std::to_string(static_cast<int>(quality->measure)) +
            (quality->isTyped ? " typed " : " ") + std::to_string(quality->least) + " " +
            std::to_string(quality->greatest) + "\n";
  }
  if (former != nullptr) text += "isolated from\n" + boxes(former->boxes);
  for (const workbench::JournalEntry& entry : doc.GetDatabase().AllRecords()) {
    const std::uint16_t type = workbench::TypeOf(entry.itr);
    if (type == kDataGeom) {
      const int item = static_cast<const tagTGeom&>(*entry.after).cadItem;
      const auto& part = display.Parts().GetLook(item);
      text += std::string("part ") + (part.shown ? "shown " : "hidden ") + std::to_string(part.mode) + " " +
              std::to_string(part.opacity) + (former != nullptr ? wasHidden(former->hiddenParts, item) : "") +
              "\n";
    } else if (type == kDataMset) {
      const auto look = display.Meshes().GetLook(static_cast<const tagTMset&>(*entry.after).key & kMsetKeyMask);
      text += std::string("set ") + (display.Meshes().IsMsetShown(entry.itr) != 0 ? "shown " : "hidden ") +
              std::to_string(look.mode) + " " + std::to_string(look.opacity) + " " + std::to_string(look.addOns) +
              (look.shrink ? " shrunk" : "") +
              (former != nullptr ? wasHidden(former->hiddenMsets, entry.itr) : "") + "\n";
    } else if (type == kDataCord) {
      text += doc.GetDisplay().Labels().GetShowHide(kLabelCord, entry.after->id) != 0 ? "shown\n" : "hidden\n";
    }
  }
  return text;
}

/// The document's records, shown as its display's bytes have it, as after closing and opening it.
inline std::string DisplayTextOfOpened(workbench::WorkDocument& doc) {
  workbench::WorkDocument opened;
  for (const workbench::JournalEntry& entry : doc.GetDatabase().AllRecords()) {
    opened.GetDatabase().Load(entry.itr, entry.after);
  }
  const std::string bytes = workbench::BytesOfDisplay(doc.GetDisplay());
  if (!workbench::TakeUpDisplay(bytes, opened.GetDatabase(), opened.GetDisplay())) return "not taken up";
  return DisplayText(opened) + (opened.GetDatabase().CanUndo() ? "can be undone" : "");
}

inline Digest DigestOf(workbench::WorkDocument& doc) {
  Digest digest{{}, DisplayText(doc)};
  for (const workbench::JournalEntry& entry : doc.GetDatabase().AllRecords()) {
    if (workbench::TypeOf(entry.itr) != workbench::kDataSettings)
      digest.records.emplace_back(entry.itr, entry.after);
  }
  return digest;
}

}  // namespace qd::test

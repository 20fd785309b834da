#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "workbench/display/WorkDocument.h"

namespace qd::test {

/// What undo and redo bring back: the records, shared with the database, and what is shown and how. The settings,
/// which no act takes back, are left out.
struct Digest {
  std::vector<std::pair<iterator, std::shared_ptr<const tagTRecord>>> records;
  std::string display;
  bool operator==(const Digest&) const = default;
};

/// How everything is drawn that has a record, and whatever is hidden.
inline std::string DisplayText(workbench::WorkDocument& doc) {
  const workbench::Display& display = doc.GetDisplay();
  const auto hidden = [](const workbench::Visibility& visibility) {
    std::string text;
    for (const int part : visibility.hiddenParts) text += " part " + std::to_string(part);
    std::vector<iterator> sets = visibility.hiddenMsets;
    std::sort(sets.begin(), sets.end());
    for (const iterator set : sets) text += " set " + std::to_string(set);
    return text;
  };
  std::string text = "hidden" + hidden(display.HiddenNow());
  if (display.Isolation() != nullptr) text += "\nisolated from" + hidden(*display.Isolation());
  text += "\ncolours " + std::to_string(display.Parts().GetColorModelType()) + " " +
          std::to_string(display.Meshes().GetMeshColorMode()) + "\n";
  for (const workbench::JournalEntry& entry : doc.GetDatabase().AllRecords()) {
    const std::uint16_t type = workbench::TypeOf(entry.itr);
    if (type == kDataGeom) {
      const auto& part = display.Parts().GetLook(static_cast<const tagTGeom&>(*entry.after).cadItem);
      text += "part " + std::to_string(part.mode) + " " + std::to_string(part.opacity) + "\n";
    } else if (type == kDataMset) {
      const auto look = display.Meshes().GetLook(static_cast<const tagTMset&>(*entry.after).key & kMsetKeyMask);
      text += "set " + std::to_string(look.mode) + " " + std::to_string(look.opacity) + " " +
              std::to_string(look.addOns) + (look.shrink ? " shrunk" : "") + "\n";
    } else if (type == kDataCord) {
      text += doc.GetDisplay().Labels().GetShowHide(kLabelCord, entry.after->id) != 0 ? "shown\n" : "hidden\n";
    }
  }
  return text;
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

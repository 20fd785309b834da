#include "workbench/display/DisplayChange.h"

#include <algorithm>
#include <map>
#include <utility>

namespace qd::workbench {

namespace {

/// Calls in order of the steps, or from the last one back.
template <typename Step, typename Call>
void ForSteps(const std::vector<Step>& steps, bool forward, const Call& call) {
  if (forward) {
    std::for_each(steps.begin(), steps.end(), call);
  } else {
    std::for_each(steps.rbegin(), steps.rend(), call);
  }
}

/// The first and the last step of each thing, in the order of the first ones. `isChange` tells whether there is
/// anything left of it.
template <typename Step, typename Key, typename Join, typename IsChange>
void KeepFirstAndLast(std::vector<Step>& steps, const Key& key, const Join& join, const IsChange& isChange) {
  std::map<decltype(key(steps.front())), std::size_t> places;
  std::vector<Step> net;
  for (const Step& step : steps) {
    const auto [place, isFirst] = places.try_emplace(key(step), net.size());
    if (isFirst) {
      net.push_back(step);
    } else {
      join(net[place->second], step);
    }
  }
  std::erase_if(net, [&](const Step& step) { return !isChange(step); });
  steps = std::move(net);
}

}  // namespace

void DisplayChange::KeepNet() {
  const auto last = [](auto& first, const auto& later) { first.after = later.after; };
  const auto differs = [](const auto& step) { return !(step.before == step.after); };
  KeepFirstAndLast(
      parts, [](const Part& step) { return step.cadItem; }, last, differs);
  KeepFirstAndLast(
      boxes, [](const Box& step) { return step.box; }, last, differs);
  KeepFirstAndLast(
      msets, [](const Shown& step) { return step.what; }, last, differs);
  KeepFirstAndLast(
      labels, [](const Shown& step) { return step.what; }, last, differs);
  // Looks of one and of all have one order, which joining would break.
  const bool single =
      std::all_of(looks.begin(), looks.end(), [](const Look& step) { return step.all == nullptr; });
  if (single)
    KeepFirstAndLast(
        looks, [](const Look& step) { return step.key; }, last, differs);
}

bool DisplayChange::IsEmpty() const {
  return parts.empty() && msets.empty() && labels.empty() && boxes.empty() && looks.empty() &&
         partColours.empty() && meshColours.empty();
}

bool DisplayChange::IsOfVisibility() const {
  const auto otherwise = [](const Part& part) {
    return part.before.mode != part.after.mode || part.before.opacity != part.after.opacity;
  };
  return looks.empty() && partColours.empty() && meshColours.empty() &&
         std::none_of(parts.begin(), parts.end(), otherwise);
}

void DisplayChange::Restore(bool forward) {
  const auto unrecorded = m_display.StopRecording();
  PartDisplay& shownParts = m_display.Parts();
  MeshDisplay& meshes = m_display.Meshes();
  ForSteps(parts, forward,
           [&](const Part& step) { shownParts.SetLook(step.cadItem, forward ? step.after : step.before); });
  ForSteps(msets, forward, [&](const Shown& step) {
    meshes.ShowHideMset(step.what, (forward ? step.after : step.before) ? 1 : 0);
  });
  ForSteps(labels, forward, [&](const Shown& step) {
    m_display.Labels().SetShowHide((forward ? step.after : step.before) ? 1 : 0, kLabelCord,
                                   static_cast<std::int32_t>(step.what));
  });
  ForSteps(boxes, forward,
           [&](const Box& step) { m_display.Boxes().SetBox(step.box, forward ? step.after : step.before); });
  ForSteps(looks, forward, [&](const Look& step) {
    if (step.all != nullptr) {
      meshes.PutLooks(forward ? step.all->after : step.all->before);
    } else {
      meshes.PutLook(step.key, forward ? step.after : step.before);
    }
  });
  ForSteps(partColours, forward,
           [&](const auto& step) { shownParts.SetAllColorModelType(forward ? step.after : step.before); });
  ForSteps(meshColours, forward,
           [&](const auto& step) { meshes.SetMeshColorMode(forward ? step.after : step.before); });
  m_display.SetIsolation(forward ? isolationAfter : isolationBefore);
}

std::size_t DisplayChange::Bytes() const {
  std::size_t bytes = sizeof(*this) + parts.size() * sizeof(Part) + boxes.size() * sizeof(Box) +
                      (msets.size() + labels.size()) * sizeof(Shown) + looks.size() * sizeof(Look);
  constexpr std::size_t kLook = 64;
  for (const Look& step : looks) {
    if (step.all != nullptr) bytes += (step.all->before.looks.size() + step.all->after.looks.size()) * kLook;
  }
  return bytes;
}

}  // namespace qd::workbench

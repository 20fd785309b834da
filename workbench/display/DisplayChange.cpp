#include "workbench/display/DisplayChange.h"

#include <algorithm>
#include <map>
#include <utility>

#include "platform/FlatMap.h"

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
  // Steps in the order of their things, as most acts take them, are one for each.
  const auto notBehind = [&key](const Step& first, const Step& second) { return key(first) >= key(second); };
  if (std::adjacent_find(steps.begin(), steps.end(), notBehind) == steps.end()) {
    std::erase_if(steps, [&](const Step& step) { return !isChange(step); });
    return;
  }
  FlatMap places;  // keys from 1: 0 stands for none there
  std::vector<Step> net;
  net.reserve(steps.size());
  for (const Step& step : steps) {
    const std::uint64_t at = key(step) + std::uint64_t{1};
    if (const std::uint64_t* place = places.Find(at)) {
      join(net[*place], step);
    } else {
      places.Assign(at, net.size());
      net.push_back(step);
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
      parts, [](const Part& step) { return static_cast<std::uint64_t>(static_cast<std::uint32_t>(step.cadItem)); },
      last, differs);
  std::map<RowBox, std::uint64_t> numbers;  // boxes are few
  for (const Box& step : boxes) numbers.try_emplace(step.box, numbers.size());
  KeepFirstAndLast(
      boxes, [&numbers](const Box& step) { return numbers.at(step.box); }, last, differs);
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
           [&](const auto& step) { shownParts.PutColours(forward ? step.after : step.before); });
  ForSteps(meshColours, forward,
           [&](const auto& step) { meshes.PutColouring(forward ? step.after : step.before); });
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

#include "workbench/display/DisplayChange.h"

#include <algorithm>
#include <set>

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

}  // namespace

bool DisplayChange::IsEmpty() const {
  return parts.empty() && msets.empty() && labels.empty() && looks.empty() && modes.empty();
}

bool DisplayChange::IsOfVisibility() const {
  const auto otherwise = [](const Part& part) {
    return part.before.mode != part.after.mode || part.before.opacity != part.after.opacity;
  };
  return looks.empty() && modes.empty() && std::none_of(parts.begin(), parts.end(), otherwise);
}

Visibility DisplayChange::HiddenBefore() const {
  const Visibility now = m_display.HiddenNow();
  std::set<int> hiddenParts(now.hiddenParts.begin(), now.hiddenParts.end());
  std::set<iterator> hiddenMsets(now.hiddenMsets.begin(), now.hiddenMsets.end());
  ForSteps(parts, false, [&](const Part& step) {
    hiddenParts.erase(step.cadItem);
    if (!step.before.shown) hiddenParts.insert(step.cadItem);
  });
  ForSteps(msets, false, [&](const Shown& step) {
    hiddenMsets.erase(step.what);
    if (step.after) hiddenMsets.insert(step.what);
  });
  return {{hiddenParts.begin(), hiddenParts.end()}, {hiddenMsets.begin(), hiddenMsets.end()}};
}

void DisplayChange::Restore(bool forward) {
  const DisplayState::Unrecorded unrecorded(m_display);
  ForSteps(parts, forward,
           [&](const Part& step) { m_display.SetPartLook(step.cadItem, forward ? step.after : step.before); });
  ForSteps(msets, forward,
           [&](const Shown& step) { m_display.ShowHideMset(step.what, step.after == forward ? 1 : 0); });
  ForSteps(labels, forward, [&](const Shown& step) {
    m_display.SetShowHide(step.after == forward ? 1 : 0, kLabelCord, static_cast<std::int32_t>(step.what));
  });
  ForSteps(looks, forward, [&](const Look& step) {
    if (step.all != nullptr) {
      m_display.SetLooks(forward ? step.all->after : step.all->before);
    } else {
      m_display.SetLook(step.key, forward ? step.after : step.before);
    }
  });
  ForSteps(modes, forward,
           [&](const Modes& step) { m_display.SetColourModes(forward ? step.after : step.before); });
  m_display.SetIsolation(forward ? isolationAfter : isolationBefore);
}

std::size_t DisplayChange::Bytes() const {
  std::size_t bytes = sizeof(*this) + parts.size() * sizeof(Part) +
                      (msets.size() + labels.size()) * sizeof(Shown) + looks.size() * sizeof(Look);
  constexpr std::size_t kLook = 64;
  for (const Look& step : looks) {
    if (step.all != nullptr) bytes += (step.all->before.looks.size() + step.all->after.looks.size()) * kLook;
  }
  return bytes;
}

}  // namespace qd::workbench

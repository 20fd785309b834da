#include "workbench/display/Display.h"

#include <algorithm>
#include <utility>

#include "host/CMSGFunction.h"
#include "workbench/display/DisplayChange.h"

namespace qd::workbench {

Display::Display(Database& database) : m_database(database) {
  m_log.SetOnFirst([this] { DeliverLater(); });
  m_database.SetBeforeHistory([this] { Deliver(); });
}

Display::~Display() {
  m_database.SetBeforeHistory(nullptr);
}

// ---- from the act to the followers ----------------------------------------------------------------------

void Display::SetLater(std::function<void(std::function<void()>)> later) {
  m_later = std::move(later);
  if (IsWaiting()) DeliverLater();
}

void Display::DeliverLater() {
  if (!m_later) return;
  m_later([this, life = std::weak_ptr<void>(m_life)] {
    if (!life.expired()) Deliver();
  });
}

void Display::Deliver() {
  if (!m_log.IsAnythingNoted()) return;
  auto [notice, change] = m_log.Take();
  if (change != nullptr) change->KeepNet();
  // What was to be isolated stood alone already.
  if (change != nullptr && change->IsEmpty() && change->isolationBefore == nullptr) m_isolation = nullptr;
  if (change != nullptr && (!change->IsEmpty() || change->isolationBefore != m_isolation)) {
    change->isolationAfter = m_isolation;
    notice.acted = true;
    const char* title = change->IsOfVisibility() ? "IDS_WB_ACT_VISIBILITY" : "IDS_WB_ACT_DISPLAY";
    const std::uint64_t before = change->actsBefore;
    m_database.AddChange(CMSGFunction::GetValue(title), std::move(change), before);
  }
  m_notice.Tell(notice);
}

// ---- isolation ------------------------------------------------------------------------------------------

void Display::SetIsolation(std::shared_ptr<const Visibility> former) {
  if (m_isolation == former) return;
  m_isolation = std::move(former);
  m_log.Noted().isolation = true;
}

void Display::BeginIsolation() {
  if (m_isolation != nullptr) return;
  m_log.Recorded();  // it begins before
  SetIsolation(std::make_shared<const Visibility>(HiddenNow()));
}

void Display::LeaveIsolation() {
  const std::shared_ptr<const Visibility> former = m_isolation;
  if (former == nullptr) return;
  m_log.Recorded();
  m_parts.BeginShowHide();
  const Visibility now = HiddenNow();
  for (const int part : now.hiddenParts) {
    if (!std::binary_search(former->hiddenParts.begin(), former->hiddenParts.end(), part))
      m_parts.SetShowHide(part, 1);
  }
  for (const int part : former->hiddenParts) m_parts.SetShowHide(part, 0);
  FlatMap hidden;
  for (const iterator mset : former->hiddenMsets) hidden.Assign(mset, 1);
  for (const iterator mset : now.hiddenMsets) {
    if (!hidden.Contains(mset)) m_meshes.ShowHideMset(mset, 1);
  }
  m_meshes.ShowHideMset(former->hiddenMsets, 0);
  m_parts.EndShowHide();
  m_boxes.PutStates(former->boxes);
  SetIsolation(nullptr);
}

}  // namespace qd::workbench

#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "workbench/display/BoxDisplay.h"
#include "workbench/display/DisplayLog.h"
#include "workbench/display/LabelDisplay.h"
#include "workbench/display/MeshDisplay.h"
#include "workbench/display/Notice.h"
#include "workbench/display/PartDisplay.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

/// What was hidden at a time.
struct Visibility {
  std::vector<int> hiddenParts;  ///< CAD item numbers, ascending
  std::vector<iterator> hiddenMsets;
  std::map<RowBox, int> boxes;  ///< those that were not checked
};

/// What is shown and how: a model of its own beside the records. Everything is written through its parts; what one
/// act of the user has changed becomes one act that can be undone, and one notice to all who show it.
class Display final : private CQDModelRange, private CQDPostManager, private ISectionAPI {
 public:
  /// The acts go to the database's own.
  explicit Display(Database& database);
  ~Display();
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  PartDisplay& Parts() { return m_parts; }
  const PartDisplay& Parts() const { return m_parts; }
  MeshDisplay& Meshes() { return m_meshes; }
  const MeshDisplay& Meshes() const { return m_meshes; }
  LabelDisplay& Labels() { return m_labels; }
  const LabelDisplay& Labels() const { return m_labels; }
  BoxDisplay& Boxes() { return m_boxes; }
  const BoxDisplay& Boxes() const { return m_boxes; }
  // What only asks for the picture to be drawn again.
  CQDModelRange& Range() { return *this; }
  CQDPostManager& Post() { return *this; }
  ISectionAPI& Sections() { return *this; }

  /// Follows what changes. A notice comes when the user's act is over.
  [[nodiscard]] Subscription Subscribe(Notice<DisplayNotice>::Call call) {
    return m_notice.Subscribe(std::move(call));
  }
  /// How something is run when the current message is handled. Without it, Deliver has to be called.
  void SetLater(std::function<void(std::function<void()>)> later);
  /// Ends the act that is going on: it can be undone from here on, and the followers are told. Undo and redo of
  /// the database begin with it.
  void Deliver();
  /// Whether there is something to deliver.
  bool IsWaiting() const { return m_log.IsAnythingNoted(); }
  /// The picture is to be drawn again, though nothing has changed here.
  void MarkDirty() { m_log.Mark(); }

  /// Counts the acts that were committed to the database.
  std::uint64_t ActNumber() const { return m_database.ActNumber(); }

  /// What is hidden now.
  Visibility HiddenNow() const { return {m_parts.Hidden(), m_meshes.Hidden(), m_boxes.States()}; }
  /// What was hidden before the user isolated something; null when nothing is isolated.
  const std::shared_ptr<const Visibility>& Isolation() const { return m_isolation; }
  void SetIsolation(std::shared_ptr<const Visibility> former);
  /// What is hidden and shown from here on isolates something, unless something is isolated already.
  void BeginIsolation();
  /// Brings back what was hidden before the isolation. Of what came since, what is hidden is shown.
  void LeaveIsolation();

  /// While it lives nothing is recorded: a change is being taken back or done again.
  [[nodiscard]] DisplayLog::Unrecorded StopRecording() { return DisplayLog::Unrecorded(m_log); }

 private:
  void UpdateAllRange(int) override { MarkDirty(); }
  void UpdateCADRange(int) override { MarkDirty(); }
  void UpdateShowHideGeom(CQDViewBase&) override { MarkDirty(); }
  void UpdateActivity(CQDViewBase&, int) override { MarkDirty(); }
  void UpdateShowHideMSet(CQDViewBase&, int) override { MarkDirty(); }
  void UpdateClipSlice(CQDViewBase&) override { MarkDirty(); }
  void UpdateClipVect(CQDViewBase&) override { MarkDirty(); }

  void DeliverLater();

  Database& m_database;
  DisplayLog m_log{*this};
  PartDisplay m_parts{m_log};
  MeshDisplay m_meshes{m_log};
  LabelDisplay m_labels{m_log};
  BoxDisplay m_boxes{m_log};
  Notice<DisplayNotice> m_notice;
  std::function<void(std::function<void()>)> m_later;
  std::shared_ptr<const Visibility> m_isolation;
  std::shared_ptr<void> m_life = std::make_shared<char>();
};

}  // namespace qd::workbench

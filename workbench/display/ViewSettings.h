#pragma once

#include <utility>

#include "workbench/display/MouseHabits.h"
#include "workbench/display/Notice.h"

namespace qd::workbench {

/// How the ground behind a model looks. As the window means dark where windows are dark.
enum class Ground { AsWindow, Light, Dark };

/// What the user likes of views, kept from one run to the next and no part of a document.
class ViewSettings final {
 public:
  static ViewSettings& Ours();

  MouseHabits Habits() const { return m_habits; }
  void SetHabits(MouseHabits habits) { Set(m_habits, habits); }
  Ground GetGround() const { return m_ground; }
  void SetGround(Ground ground) { Set(m_ground, ground); }
  /// One colour behind the model, not a gradient.
  bool IsPlain() const { return m_plain; }
  void SetPlain(bool plain) { Set(m_plain, plain); }
  /// Edges without steps.
  bool IsSmooth() const { return m_smooth; }
  void SetSmooth(bool smooth) { Set(m_smooth, smooth); }

  /// What a click would take is shown before it.
  bool IsHovering() const { return m_hovering; }
  void SetHovering(bool hovering) { Set(m_hovering, hovering); }
  /// Regions take what is hidden, too.
  bool TakesHidden() const { return m_takesHidden; }
  void SetTakesHidden(bool takesHidden) { Set(m_takesHidden, takesHidden); }
  /// The trees scroll to what was picked in the view, and open what holds it.
  bool DoTreesFollow() const { return m_treesFollow; }
  void SetTreesFollow(bool follow) { Set(m_treesFollow, follow); }

  [[nodiscard]] Subscription Subscribe(Notice<ViewSettings>::Call call) {
    return m_notice.Subscribe(std::move(call));
  }

 private:
  ViewSettings() = default;
  template <typename Value>
  void Set(Value& kept, Value value) {
    if (std::exchange(kept, value) != value) m_notice.Tell(*this);
  }

  MouseHabits m_habits = MouseHabits::Own;
  Ground m_ground = Ground::AsWindow;
  bool m_plain = false;
  bool m_smooth = true;
  bool m_hovering = true;
  bool m_takesHidden = false;
  bool m_treesFollow = true;
  Notice<ViewSettings> m_notice;
};

}  // namespace qd::workbench

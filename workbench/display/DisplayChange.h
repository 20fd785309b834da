#pragma once

#include <unordered_map>
#include <vector>

#include "workbench/display/DisplayState.h"
#include "workbench/model/UndoableChange.h"

namespace qd::workbench {

/// What one act of the user changed of the display, step by step.
class DisplayChange final : public IUndoableChange {
 public:
  explicit DisplayChange(DisplayState& display) : m_display(display) {}

  struct Part {
    int cadItem;
    DisplayState::PartLook before;
    DisplayState::PartLook after;
  };
  struct Shown {
    std::uint64_t what;  // a mesh set, or the number of a label
    bool after;
  };
  /// The looks of all mesh sets at once.
  struct Looks {
    DisplayState::LookTable before;
    DisplayState::LookTable after;
  };
  /// The look of one mesh set, or of all: one order for both.
  struct Look {
    std::uint32_t key = 0;
    DisplayState::MeshLook before{};
    DisplayState::MeshLook after{};
    std::shared_ptr<const Looks> all{};  // null for one
  };
  struct Modes {
    DisplayState::ColourModes before;
    DisplayState::ColourModes after;
  };
  std::vector<Part> parts;
  std::vector<Shown> msets;
  std::vector<Shown> labels;
  std::vector<Look> looks;
  std::vector<Modes> modes;
  /// What is remembered of the time before an isolation, before and after this.
  std::shared_ptr<const Visibility> isolationBefore;
  std::shared_ptr<const Visibility> isolationAfter;

  bool IsEmpty() const;
  /// Whether only what is shown changed, not how.
  bool IsOfVisibility() const;
  /// What was hidden before it.
  Visibility HiddenBefore() const;
  void Restore(bool forward) override;
  std::size_t Bytes() const override;

 private:
  DisplayState& m_display;
};

}  // namespace qd::workbench

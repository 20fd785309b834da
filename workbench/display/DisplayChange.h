#pragma once

#include <memory>
#include <vector>

#include "workbench/display/Display.h"
#include "workbench/model/UndoableChange.h"

namespace qd::workbench {

/// What one act of the user changed of the display, step by step.
class DisplayChange final : public IUndoableChange {
 public:
  explicit DisplayChange(Display& display)
      : m_display(display), actsBefore(display.ActNumber()), isolationBefore(display.Isolation()) {}

  struct Part {
    int cadItem;
    PartDisplay::Look before;
    PartDisplay::Look after;
  };
  struct Shown {
    std::uint64_t what;  // a mesh set, or the number of a label
    bool before;
    bool after;
  };
  /// The looks of all mesh sets at once.
  struct Looks {
    MeshDisplay::LookTable before;
    MeshDisplay::LookTable after;
  };
  /// The look of one mesh set, or of all: one order for both.
  struct Look {
    std::uint32_t key = 0;
    MeshDisplay::Look before{};
    MeshDisplay::Look after{};
    std::shared_ptr<const Looks> all{};  // null for one
  };
  struct Box {
    RowBox box;
    int before;
    int after;
  };
  template <typename Mode>
  struct Colours {
    Mode before;
    Mode after;
  };

 private:
  Display& m_display;

 public:
  std::vector<Part> parts;
  std::vector<Shown> msets;
  std::vector<Shown> labels;
  std::vector<Box> boxes;
  std::vector<Look> looks;
  std::vector<Colours<int>> partColours;
  std::vector<Colours<MeshDisplay::Colouring>> meshColours;
  /// How many acts were committed before it began.
  std::uint64_t actsBefore;
  /// What is remembered of the time before an isolation, before and after this.
  std::shared_ptr<const Visibility> isolationBefore;
  std::shared_ptr<const Visibility> isolationAfter;

  /// Keeps of each thing what it was first and what it became last; a thing that became what it was is forgotten.
  void KeepNet();
  bool IsEmpty() const;
  /// Whether only what is shown changed, not how.
  bool IsOfVisibility() const;
  void Restore(bool forward) override;
  std::size_t Bytes() const override;
};

}  // namespace qd::workbench

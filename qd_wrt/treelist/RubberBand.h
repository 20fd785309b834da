#pragma once

#include <optional>

#include "platform/CDC.h"
#include "platform/Export.h"
#include "platform/Message.h"
#include "platform/tree/TreePart.h"
#include "qd_wrt/treelist/BandSelection.h"
#include "qd_wrt/treelist/ITreeListPane.h"
#include "qd_wrt/treelist/TreeListGeometry.h"
#include "qd_wrt/treelist/TreeListSelection.h"

namespace qd {

/// The rectangle that a drag from a free place pulls over rows to select them; it scrolls on at the window's
/// edges.
class QD_EXPORT RubberBand : private TreePart {
 public:
  /// Nothing is owned.
  RubberBand(CTreeCtrl& tree, TreeListSelection& selection, const TreeColumns& columns, const PaneLink& pane)
      : TreePart(tree), m_selection(selection), m_columns(columns), m_pane(pane) {}

  /// Whether the band must touch a row's text rectangle, or may touch any part of its line. Returns the former
  /// value.
  bool SetBandingHit(bool on) { return std::exchange(m_bandingHit, on); }
  /// Follows the mouse from a press at `point` (client coordinates) to its end. Returns what ended it, with no
  /// target when the mouse was lost; nothing when the window is gone.
  std::optional<Message> DoBanding(unsigned flags, CPoint point);
  /// In client coordinates.
  void Paint(CDC& dc) const;
  /// The window goes.
  void Forget() { m_band.reset(); }

 private:
  struct Band {
    ContentPlace start;
    CPoint pressed;  // client coordinates, as is the next
    CPoint current;
    bool keeps = false;  // what is selected
    bool started = false;
    BandSelection selection;
  };

  TreeListGeometry Geometry() const { return {Tree().GetGeometry(), m_columns}; }
  CaptureVerdict Follow(const Message& message, Message& last);
  void MoveBand(CPoint to);
  void UpdateSelectionForRect();

  TreeListSelection& m_selection;
  const TreeColumns& m_columns;
  const PaneLink& m_pane;
  bool m_bandingHit = false;
  std::optional<Band> m_band;
};

}  // namespace qd

#pragma once

#include <QWidget>
#include <array>
#include <unordered_map>
#include <vector>

#include "workbench/display/WorkDocument.h"
#include "workbench/model/Placement.h"

class vtkRenderer;

namespace qd::workbench {

/// The coordinate systems that are shown, drawn over the view: arrows of one size on the screen, with the names of
/// the axes and of the system.
class CordSymbols final : public QWidget {
 public:
  CordSymbols(WorkDocument& doc, vtkRenderer& renderer, QWidget* view);
  /// Takes over what a notice says of coordinate systems.
  void Apply(const CQDUpdateRecord& record);
  /// The picture under the symbols, or what is shown, has changed.
  void Follow();
  /// Where the symbols stand now, for the picture and for who looks at it.
  struct Symbol {
    QPointF origin;
    std::array<QPointF, 3> tips;
    iterator itr;
  };
  const std::vector<Symbol>& Symbols() const { return m_symbols; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Line {
    QPointF from;
    QPointF to;
    std::size_t axis;
  };
  void Read(iterator itr);

  WorkDocument& m_doc;
  vtkRenderer& m_renderer;
  std::unordered_map<iterator, Placement> m_placements;
  std::vector<Symbol> m_symbols;
  std::vector<Line> m_lines;
};

}  // namespace qd::workbench

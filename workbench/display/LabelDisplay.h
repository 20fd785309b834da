#pragma once

#include <cstdint>
#include <vector>

#include "host/Display.h"
#include "platform/FlatMap.h"
#include "workbench/display/DisplayLog.h"

namespace qd::workbench {

/// Which labels are shown. Only coordinate systems have some: their symbols, shown until they are hidden.
class LabelDisplay final : public CQDLabelManager, private CQDLabel {
 public:
  explicit LabelDisplay(DisplayLog& log) : m_log(log) {}

  /// The numbers of the coordinate systems that are hidden, ascending.
  std::vector<std::int32_t> Hidden() const;

  CQDLabel* GetLabel(int itemType) override { return itemType == kLabelCord ? this : nullptr; }
  int GetShowHide(int kind, std::int32_t id) override;
  void SetShowHide(int show, int kind, std::int32_t id) override;
  int IsShown(std::int32_t id) const override;

 private:
  void Show(std::int32_t id) override { Put(id, true); }
  void Hide(std::int32_t id) override { Put(id, false); }
  void Put(std::int32_t id, bool show);

  DisplayLog& m_log;
  FlatMap m_hidden;
};

}  // namespace qd::workbench

#pragma once

#include <vector>

#include "host/CQDDialog.h"

namespace qd {

/// Asks what is to be done with mesh sets that were dropped onto another one. It only records the choice.
class QD_EXPORT CQDMsetOperation : public CQDDialog {
 public:
  /// What can be chosen.
  enum Operation : int { kMerge = 1, kMove = 2 };

  explicit CQDMsetOperation(CQDDocBase* doc);  ///< `doc` may be null
  /// The choice; merging, if the user made none.
  int GetOperation() const { return m_operation; }

 protected:
  void OnInitDialog() override;
  void OnCommand(int id) override;

 private:
  int m_operation = kMerge;
  std::vector<int> m_group;  // radio buttons, in the order of the choices
};

}  // namespace qd

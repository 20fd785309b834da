#pragma once

#include "platform/CEdit.h"

namespace qd {

class FindBar;

/// The field of a find bar, which hears of its keys before it takes them in.
class FindField final : public CEdit {
 public:
  explicit FindField(FindBar& bar) : m_bar(bar) {}  ///< the bar owns the field
  bool PreTranslateMessage(const Message& message) override;

 protected:
  void OnTextChanged() override;
  void OnKillFocus() override;

 private:
  FindBar& m_bar;
};

}  // namespace qd

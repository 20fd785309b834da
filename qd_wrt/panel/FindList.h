#pragma once

#include <functional>

#include "platform/CWnd.h"
#include "platform/Export.h"

namespace qd {

/// A list that hangs from the find bar's field, over what stands below it, while something can be chosen in it.
/// The field keeps the focus.
class QD_EXPORT FindList final : public CWnd {
 public:
  static constexpr int kNone = -1;  ///< no entry

  /// `take` is called with the index of an entry that is clicked.
  explicit FindList(std::function<void(int)> take) : m_take(std::move(take)) {}

  /// Shows entries below a place, in the parent's coordinates, as far as there is room; `chosen` may be kNone.
  void Open(TArray<CString> entries, int chosen, const CRect& below);
  void Close();                                       ///< takes the list away
  bool IsOpen() const { return !m_entries.empty(); }  ///< whether it is shown
  /// Follows the field.
  void Hang(const CRect& below);

  int GetChosen() const { return m_chosen; }                       ///< an index or kNone
  const TArray<CString>& GetEntries() const { return m_entries; }  ///< none while it is closed
  /// Chooses the next entry or the one before; beyond either end nothing is chosen, then the other end.
  void MoveChoice(int by);

  void OnPaint(CDC& dc) override;

 protected:
  int OnCreate() override {
    SetAccessible({Accessible::Role::Status});
    return 0;
  }
  void OnLButtonDown(unsigned flags, CPoint point) override;
  void OnMouseWheel(int lines) override;
  void OnLookChanged() override { Invalidate(); }

 private:
  static int LineHeight();
  int ShownLines() const;
  void Choose(int entry);

  std::function<void(int)> m_take;
  TArray<CString> m_entries;
  int m_chosen = kNone;
  int m_first = 0;  // on show
};

}  // namespace qd

#pragma once

#include <vector>

#include "platform/CWnd.h"

namespace qd {

/// A text of the find bar in as many lines as it was given, which screen readers know as news.
class FindLabel final : public CWnd {
 public:
  /// Shows the lines of a text; `whole` is what screen readers know.
  void SetText(const CString& whole, std::vector<CString> lines);
  void SetText(const CString& text) { SetText(text, {text}); }  ///< a text that is shown as it is
  const CString& GetText() const { return m_whole; }            ///< the whole one
  /// Lets screen readers say the text.
  void Announce();
  /// Whether it stands on the colour of what is selected, which stands out from anything beside it.
  void SetOnHighlight(bool isOnHighlight);

  void OnPaint(CDC& dc) override;

 protected:
  int OnCreate() override {
    SetAccessible({Accessible::Role::Status});
    return 0;
  }
  void OnLButtonUp(unsigned flags, CPoint point) override;
  void OnLookChanged() override { Invalidate(); }

 private:
  CString m_whole;
  std::vector<CString> m_lines;
  bool m_isOnHighlight = false;
};

/// The lines that a text takes when each may be so wide: broken at blanks, and where there are none between
/// characters.
std::vector<CString> WrapText(const CString& text, int width);

}  // namespace qd

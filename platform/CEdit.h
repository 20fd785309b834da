#pragma once

#include <optional>

#include "platform/CWnd.h"
#include "platform/Export.h"

namespace qd {

/// An edit box of one line.
class QD_EXPORT CEdit : public CWnd {
 public:
  /// See CWnd::Create.
  int Create(CWnd* parent, int id, const CRect& area) { return CWnd::Create(parent, id, area, PeerKind::Edit); }
  void SetText(const CString& text);  ///< OnTextChanged is not called
  /// Empty without a window.
  CString GetText() const;
  void SelectAll();  ///< selects all text
  /// Places are counted in elements of the text.
  std::size_t GetCaret() const;
  /// Selects from one place to another, where the caret goes then.
  void Select(std::size_t from, std::size_t to);
  /// Puts a text where the selection is, and the caret behind it; OnTextChanged is not called.
  void ReplaceSelection(const CString& text);
  /// What the box shows in place of a text that is empty.
  void SetHint(const CString& text);
  /// None: the system's.
  void SetColours(const std::optional<ITextBox::Colours>& colours);

 protected:
  /// Lets the box handle the key that PreTranslateMessage is being asked about.
  void HandleKey();
};

/// A drop-down list.
class QD_EXPORT CComboBox : public CWnd {
 public:
  /// See CWnd::Create.
  int Create(CWnd* parent, int id, const CRect& area) {
    return CWnd::Create(parent, id, area, PeerKind::DropDownList);
  }
  void AddString(const CString& text);  ///< adds an entry behind the last one
  /// Chooses the first entry that equals `text`.
  void SelectString(const CString& text);
  /// The chosen entry; empty without a window.
  CString GetText() const;

 protected:
  void HandleKey();  ///< see CEdit::HandleKey
};

}  // namespace qd

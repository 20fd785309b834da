#pragma once

#include "platform/CWnd.h"
#include "platform/Export.h"

namespace qd {

/// An edit box of one line.
class QD_EXPORT CEdit : public CWnd {
 public:
  int Create(CWnd* parent, int id, const CRect& area) { return CWnd::Create(parent, id, area, PeerKind::Edit); }
  void SetText(const CString& text);
  /// Empty without a window.
  CString GetText() const;
  void SelectAll();

 protected:
  /// Lets the box handle the key that PreTranslateMessage is being asked about.
  void HandleKey();
};

/// A drop-down list.
class QD_EXPORT CComboBox : public CWnd {
 public:
  int Create(CWnd* parent, int id, const CRect& area) {
    return CWnd::Create(parent, id, area, PeerKind::DropDownList);
  }
  void AddString(const CString& text);
  /// Chooses the first entry that equals `text`.
  void SelectString(const CString& text);
  /// The chosen entry; empty without a window.
  CString GetText() const;

 protected:
  void HandleKey();
};

}  // namespace qd

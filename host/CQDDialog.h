#pragma once

#include <vector>

#include "host/CQDDocBase.h"
#include "platform/CDialog.h"
#include "platform/Export.h"

namespace qd {

/// A modal dialog of a document.
class QD_EXPORT CQDDialog : public CDialog {
 public:
  /// `layout` is not copied; `doc` may be null. Neither is owned.
  CQDDialog(const DialogTemplate& layout, CQDDocBase* doc) : CDialog(layout), m_doc(doc) {}
  CQDDocBase* GetDocument() const { return m_doc; }  ///< what the dialog works on, may be null

 private:
  CQDDocBase* m_doc;
};

/// Helpers for dialogs.
class QD_EXPORT CDlgUtil {
 public:
  /// Checks one radio button of a group, by its place there, and clears the others.
  static void CtrlRadioSetCheck(CDialog& dialog, const std::vector<int>& group, int index);
};

}  // namespace qd

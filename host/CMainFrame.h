#pragma once

#include <memory>

#include "host/CQDDocBase.h"
#include "host/IPropertySet.h"
#include "platform/Export.h"

namespace qd {

class IWorksTreeManager;

/// The property window of a document.
class CPropertiesWnd {
 public:
  /// Shows a page, made by its ShowProperty, or nothing for null. The window owns the page until the next one.
  virtual void SetPropertySet(std::unique_ptr<IPropertySet> page) = 0;
  virtual void Refresh() = 0;  ///< shows the page as it is now
  /// The page on show, null for none.
  virtual IPropertySet* GetPropertySet() const = 0;

 protected:
  ~CPropertiesWnd() = default;
};

/// The host's main window. The object registers itself as the one of the process.
class QD_EXPORT CMainFrame {
 public:
  CMainFrame();
  virtual ~CMainFrame();
  CMainFrame(const CMainFrame&) = delete;
  CMainFrame& operator=(const CMainFrame&) = delete;

  /// Null while the host has none.
  static CMainFrame* Get();

  /// Null when the document shows no property window.
  virtual CPropertiesWnd* GetPropertiesWnd(CQDDocBase* doc) = 0;
  virtual IWorksTreeManager* GetWorksTreeManager() = 0;  ///< null before the trees are made
};

}  // namespace qd

#pragma once

#include <QDockWidget>
#include <QLabel>
#include <memory>

#include "host/CMainFrame.h"

namespace qd::workbench {

/// The property window.
class PropertyPane final : public QDockWidget, public CPropertiesWnd {
 public:
  explicit PropertyPane(QWidget* parent);

  void SetPropertySet(std::unique_ptr<IPropertySet> page) override { m_page = std::move(page); }
  void Refresh() override;
  IPropertySet* GetPropertySet() const override { return m_page.get(); }

 private:
  std::unique_ptr<IPropertySet> m_page;
  QLabel* m_empty;  // owned by this widget
};

}  // namespace qd::workbench

#pragma once

#include <QDockWidget>
#include <QTreeWidget>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "host/CMainFrame.h"

class QPushButton;
class QStackedWidget;
class QLabel;

namespace qd::workbench {

/// The property window: shows the rows of the current page as a grid. Pages change often while the model changes,
/// so a page is made and shown once per turn of the event loop.
class PropertyPane final : public QDockWidget, public CPropertiesWnd {
 public:
  explicit PropertyPane(QWidget* parent);
  ~PropertyPane() override;

  void SetPropertySet(std::unique_ptr<IPropertySet> page) override;
  void Refresh() override;
  /// Makes the page that is shown while nothing is selected, null for none; asked each time.
  void SetDocumentPage(std::function<std::unique_ptr<IPropertySet>()> make) {
    m_makeDocumentPage = std::move(make);
  }
  /// Finds out what stands in place of a page where there is none: the key of a message.
  void SetEmptyKey(std::function<const char*()> key) { m_emptyKey = std::move(key); }
  /// Shows the page in the language of now, with what was entered and not stored yet.
  void ChangeLanguage();
  IPropertySet* GetPropertySet() const override { return m_page.get(); }
  /// Makes and shows a page that waits, at once.
  void ShowNow();
  /// The rows as "name: value" lines.
  QStringList Lines() const;

 private:
  void Schedule();
  void ShowRows();
  QWidget* EditorFor(CBCGPProp& row);
  void Tell(CBCGPProp& row);
  void Calculate(QTreeWidgetItem* item);
  void KeepEntries();
  static QString PathOf(const QTreeWidgetItem* item);
  void RestoreEntries();

  IPropertySet* Page() const { return m_page != nullptr ? m_page.get() : m_documentPage.get(); }
  void Watch(IPropertySet& page) {
    page.SetOnLayout([this] { ShowRows(); });
  }

  std::unique_ptr<IPropertySet> m_page;
  std::unique_ptr<IPropertySet> m_documentPage;  // on show while there is no other
  std::function<std::unique_ptr<IPropertySet>()> m_makeDocumentPage;
  std::function<const char*()> m_emptyKey;
  std::map<QString, bool> m_folds;                       // what somebody has opened or closed, by its titles
  std::vector<std::unique_ptr<IPropertySet>> m_retired;  // rows of theirs may still be on show
  QStackedWidget* m_stack;                               // these are owned by this widget
  QLabel* m_empty;
  QTreeWidget* m_grid;
  QPushButton* m_apply;
  std::map<QTreeWidgetItem*, CBCGPProp*> m_rowOf;
  /// What a row held before it was made anew.
  struct Entry {
    CString value;
    COLORREF colour;
    QString typed;  // what stands in the editor
  };
  std::vector<Entry> m_entries;  // by row
  bool m_waiting = false;
};

}  // namespace qd::workbench

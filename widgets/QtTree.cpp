// Trees of programs in C in widgets of Qt.

#include <QApplication>
#include <QPointer>
#include <QThread>

#include "platform/qt/QtToolkit.h"
#include "qd_wrt/c/Tree.h"
#include "widgets/WorksTreePanel.h"

namespace qd::c {

namespace {

/// A panel that says when Qt takes it, which it does with its parent.
class Panel final : public WorksTreePanel {
 public:
  using WorksTreePanel::WorksTreePanel;
  ~Panel() override {
    if (onGoing) onGoing();
  }
  std::function<void()> onGoing;
};

class QtPane final : public IPane {
 public:
  explicit QtPane(QWidget* parent) : m_panel(new Panel(parent)) {}  // its parent's, if it has one
  ~QtPane() override {
    if (m_panel == nullptr) return;
    m_panel->onGoing = nullptr;
    delete m_panel;
  }
  CWorksTreeBar* Bar() override {
    return m_panel != nullptr && m_panel->Bar().IsCreated() ? &m_panel->Bar() : nullptr;
  }
  void SetOnGoing(std::function<void()> call) override { m_panel->onGoing = std::move(call); }
  QWidget* Widget() const { return m_panel; }

 private:
  QPointer<Panel> m_panel;
};

}  // namespace

}  // namespace qd::c

using namespace qd::c;

qd_status qd_tree_create_in_qwidget(const qd_tree_options* options, void* parent, qd_tree** tree) {
  return Guarded([=] {
    return MakeTree(options, tree, [=](const qd::CRect& area, std::unique_ptr<IPane>& pane) {
      if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
        return Fail(QD_ERROR_TOOLKIT, "There is no QApplication.");
      }
      if (QThread::currentThread() != qApp->thread()) return Fail(QD_ERROR_THREAD);
      if (qd::IToolkit::Exists() && dynamic_cast<qd::QtToolkit*>(&qd::IToolkit::Instance()) == nullptr) {
        return Fail(QD_ERROR_TOOLKIT);
      }
      auto* above = static_cast<QWidget*>(parent);
      if (above != nullptr && !QApplication::allWidgets().contains(above)) return Fail(QD_ERROR_WINDOW);
      auto made = std::make_unique<QtPane>(above);
      if (options->width != 0 || options->height != 0) made->Widget()->resize(area.right, area.bottom);
      pane = std::move(made);
      return QD_OK;
    });
  });
}

qd_status qd_tree_qwidget(qd_tree* handle, void** widget) {
  if (widget != nullptr) *widget = nullptr;
  return WithTree(handle, [=](Tree& tree) {
    if (widget == nullptr) return Fail(QD_ERROR_NULL, "There is nowhere to put the widget.");
    const auto* pane = dynamic_cast<const QtPane*>(&tree.Pane());
    if (pane == nullptr) return Fail(QD_ERROR_TOOLKIT);
    *widget = pane->Widget();
    return QD_OK;
  });
}

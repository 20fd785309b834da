#include "platform/qt/QtAccessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>
#include <map>

#include "platform/AccessibleRows.h"
#include "platform/qt/QtConvert.h"
#include "platform/qt/QtSurface.h"

namespace qd {

namespace {

class TreeForReaders;

const QString kExpandAction = QStringLiteral("Expand");

/// One row. Made when somebody asks for it; valid as long as the row stands.
class RowForReaders final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  RowForReaders(TreeForReaders& tree, HTREEITEM row) : m_tree(tree), m_row(row) {}

  bool isValid() const override;
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override;
  QAccessibleInterface* child(int index) const override;
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  QString text(QAccessible::Text kind) const override;
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override;
  QAccessible::Role role() const override { return QAccessible::TreeItem; }
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }

  QStringList actionNames() const override;
  void doAction(const QString& name) override;
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

  HTREEITEM Row() const { return m_row; }

 private:
  TreeForReaders& m_tree;
  HTREEITEM m_row;
};

/// The tree itself.
class TreeForReaders final : public QAccessibleWidget {
 public:
  explicit TreeForReaders(SurfaceWidget* surface)
      : QAccessibleWidget(surface, QAccessible::Tree), m_surface(surface) {}
  ~TreeForReaders() override {
    for (const auto& [row, id] : m_ids) QAccessible::deleteAccessibleInterface(id);
  }
  TreeForReaders(const TreeForReaders&) = delete;
  TreeForReaders& operator=(const TreeForReaders&) = delete;

  const IAccessibleRows* Rows() const { return m_surface != nullptr ? m_surface->AccessibleRows() : nullptr; }

  /// The object of a row; null for none.
  QAccessibleInterface* ObjectOf(HTREEITEM row) {
    if (Rows() == nullptr || !Rows()->IsLive(row)) return nullptr;
    const auto known = m_ids.find(row.value);
    if (known != m_ids.end()) return QAccessible::accessibleInterface(known->second);
    ForgetDeadRows();
    auto* made = new RowForReaders(*this, row);  // owned by the registry until its id is deleted
    m_ids.emplace(row.value, QAccessible::registerAccessibleInterface(made));
    return made;
  }

  int childCount() const override { return Rows() != nullptr ? Rows()->ChildCount({}) : 0; }
  QAccessibleInterface* child(int index) const override {
    return Rows() != nullptr ? const_cast<TreeForReaders*>(this)->ObjectOf(Rows()->Child({}, index)) : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const auto* row = dynamic_cast<const RowForReaders*>(child);
    return row != nullptr && row->isValid() ? Rows()->IndexInParent(row->Row()) : -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    return Rows() != nullptr ? const_cast<TreeForReaders*>(this)->ObjectOf(Rows()->RowAtScreen({x, y})) : nullptr;
  }

 private:
  void ForgetDeadRows() {
    constexpr std::size_t kWorthIt = 4096;
    if (m_ids.size() < m_swept + kWorthIt) return;
    std::erase_if(m_ids, [this](const auto& entry) {
      if (Rows()->IsLive(HTREEITEM{entry.first})) return false;
      QAccessible::deleteAccessibleInterface(entry.second);
      return true;
    });
    m_swept = m_ids.size();
  }

  QPointer<SurfaceWidget> m_surface;
  std::map<std::uint64_t, QAccessible::Id> m_ids;  // by row
  std::size_t m_swept = 0;
};

bool RowForReaders::isValid() const {
  return m_tree.Rows() != nullptr && m_tree.Rows()->IsLive(m_row);
}

QAccessibleInterface* RowForReaders::parent() const {
  if (!isValid()) return nullptr;
  const HTREEITEM above = m_tree.Rows()->Parent(m_row);
  return above ? m_tree.ObjectOf(above) : &m_tree;
}

QAccessibleInterface* RowForReaders::child(int index) const {
  return isValid() ? m_tree.ObjectOf(m_tree.Rows()->Child(m_row, index)) : nullptr;
}

int RowForReaders::childCount() const {
  return isValid() ? m_tree.Rows()->ChildCount(m_row) : 0;
}

int RowForReaders::indexOfChild(const QAccessibleInterface* child) const {
  return m_tree.indexOfChild(child);
}

QString RowForReaders::text(QAccessible::Text kind) const {
  return isValid() && kind == QAccessible::Name ? ToQt(m_tree.Rows()->Name(m_row)) : QString();
}

QRect RowForReaders::rect() const {
  return isValid() ? ToQt(m_tree.Rows()->ScreenPlace(m_row)) : QRect();
}

QAccessible::State RowForReaders::state() const {
  QAccessible::State state;
  if (!isValid()) {
    state.invalid = true;
    return state;
  }
  const IAccessibleRows& rows = *m_tree.Rows();
  state.selectable = true;
  state.multiSelectable = true;
  state.focusable = true;
  state.selected = rows.IsSelected(m_row);
  state.focused = rows.IsFocused(m_row);
  state.expandable = rows.IsExpandable(m_row);
  state.expanded = state.expandable && rows.IsExpanded(m_row);
  state.collapsed = state.expandable && !rows.IsExpanded(m_row);
  state.checkable = rows.IsCheckable(m_row);
  state.checked = rows.IsChecked(m_row);
  state.invisible = !rows.IsShown(m_row);
  state.offscreen = rows.ScreenPlace(m_row).IsEmpty();
  return state;
}

QStringList RowForReaders::actionNames() const {
  QStringList names{setFocusAction()};
  if (!isValid()) return names;
  if (m_tree.Rows()->IsExpandable(m_row)) names << kExpandAction;
  if (m_tree.Rows()->IsCheckable(m_row)) names << toggleAction();
  return names;
}

void RowForReaders::doAction(const QString& name) {
  if (!isValid()) return;
  if (name == setFocusAction()) m_tree.Rows()->Select(m_row);
  if (name == toggleAction()) m_tree.Rows()->PressCheck(m_row);
  if (name == kExpandAction) m_tree.Rows()->Toggle(m_row);
}

/// A surface that is a button, a choice or a line of news.
class ControlForReaders final : public QAccessibleWidget {
 public:
  explicit ControlForReaders(SurfaceWidget* surface) : QAccessibleWidget(surface), m_surface(surface) {}

  QAccessible::Role role() const override {
    switch (What().role) {
      case Accessible::Role::Button:
        return QAccessible::Button;
      case Accessible::Role::Choice:
        return QAccessible::RadioButton;
      case Accessible::Role::Status:
        return QAccessible::StatusBar;
      case Accessible::Role::Plain:
        break;
    }
    return QAccessibleWidget::role();
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = What().role == Accessible::Role::Choice;
    state.checked = state.checkable && What().chosen;
    return state;
  }
  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (IsPressed()) names.prepend(pressAction());
    return names;
  }
  void doAction(const QString& name) override {
    if (name != pressAction()) return QAccessibleWidget::doAction(name);
    if (m_surface != nullptr && IsPressed()) m_surface->PressByReader();
  }

 private:
  Accessible What() const { return m_surface != nullptr ? m_surface->GetAccessible() : Accessible{}; }
  bool IsPressed() const {
    return What().role == Accessible::Role::Button || What().role == Accessible::Role::Choice;
  }
  QPointer<SurfaceWidget> m_surface;
};

QAccessibleInterface* MakeInterface(const QString&, QObject* object) {
  auto* surface = dynamic_cast<SurfaceWidget*>(object);
  if (surface == nullptr) return nullptr;
  if (surface->AccessibleRows() != nullptr) return new TreeForReaders(surface);
  return new ControlForReaders(surface);
}

}  // namespace

void InstallAccessibility() {
  QAccessible::installFactory(MakeInterface);
}

void AnnounceFocusedRow(SurfaceWidget& surface, HTREEITEM row) {
  if (!QAccessible::isActive()) return;
  auto* tree = dynamic_cast<TreeForReaders*>(QAccessible::queryAccessibleInterface(&surface));
  QAccessibleInterface* object = tree != nullptr ? tree->ObjectOf(row) : nullptr;
  if (object == nullptr) return;
  QAccessibleEvent event(object, QAccessible::Focus);
  QAccessible::updateAccessibility(&event);
}

void AnnounceName(QWidget& widget) {
  if (!QAccessible::isActive()) return;
  for (const QAccessible::Event kind : {QAccessible::NameChanged, QAccessible::Alert}) {
    QAccessibleEvent event(&widget, kind);
    QAccessible::updateAccessibility(&event);
  }
}

}  // namespace qd

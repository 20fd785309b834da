#include "platform/qt/QtDialog.h"

#include <QAbstractListModel>
#include <QApplication>
#include <QDialog>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <algorithm>
#include <map>

#include "platform/qt/QtConvert.h"

namespace qd {

namespace {

/// Dialog units in pixels. Controls of this style need more height than the units give, so heights follow the
/// tallest control and widths grow with the texts.
struct Units {
  double x;
  double y;
};

Units UnitsOf(const QFont& font) {
  constexpr int kRowUnits = 10;  // of a radio button
  const QFontMetrics metrics(font);
  const QRadioButton sample(QStringLiteral("X"));
  const double x = std::max(metrics.averageCharWidth(), 1) / 4.0;
  return {x, std::max(metrics.height() / 8.0, sample.sizeHint().height() / double(kRowUnits))};
}

/// Asks the dialog for the lines of a list.
class Lines final : public QAbstractListModel {
 public:
  Lines(CDialog& owner, int id) : m_owner(owner), m_id(id) {}
  int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : m_count; }
  QVariant data(const QModelIndex& index, int role) const override {
    if (role != Qt::DisplayRole) return {};
    return ToQt(m_owner.LineOf(m_id, static_cast<std::size_t>(index.row())));
  }
  void Show(std::size_t count) {
    const int wanted = static_cast<int>(count);
    if (wanted != m_count) {
      beginResetModel();
      m_count = wanted;
      endResetModel();
    } else if (wanted != 0) {
      emit dataChanged(index(0), index(wanted - 1));
    }
  }

 private:
  CDialog& m_owner;
  int m_id;
  int m_count = 0;
};

class QtDialog final : public IDialogPeer {
 public:
  QtDialog(CDialog& owner, const DialogTemplate& layout)
      : m_owner(owner), m_dialog(QApplication::activeWindow()), m_layout(layout) {
    m_dialog.setObjectName(QStringLiteral("dialog%1").arg(layout.id));
    SetCaption(CString(layout.caption));
    for (const DialogControl& control : layout.controls) {
      QWidget* widget = Make(control);
      widget->setObjectName(QString::number(control.id));
      m_controls[control.id] = widget;
      if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        button->setText(ToQt(control.text));
        QObject::connect(button, &QAbstractButton::clicked, &m_dialog,
                         [&owner, id = control.id] { owner.Press(id); });
      }
    }
  }

  void SetCaption(const CString& text) override { m_dialog.setWindowTitle(ToQt(text)); }
  void SetText(int id, const CString& text) override {
    QString shown = ToQt(text);
    shown.replace('&', "&&");
    if (auto* button = Find<QAbstractButton>(id)) button->setText(shown);
    if (auto* group = Find<QGroupBox>(id)) group->setTitle(shown);
    if (auto* label = Find<QLabel>(id)) label->setText(ToQt(text));
    if (auto* field = Find<QLineEdit>(id)) field->setText(ToQt(text));
  }
  CString GetText(int id) const override {
    const auto* field = Find<QLineEdit>(id);
    return field != nullptr ? FromQt(field->text()) : CString();
  }
  void Enable(int id, bool enable) override {
    if (auto* widget = Find<QWidget>(id)) widget->setEnabled(enable);
  }
  void ShowLines(int id, std::size_t count) override {
    if (auto* list = Find<QListView>(id)) static_cast<Lines*>(list->model())->Show(count);
  }
  void SetChecked(int id, bool checked) override {
    if (auto* button = Find<QAbstractButton>(id)) button->setChecked(checked);
  }
  bool IsChecked(int id) const override {
    const auto* button = Find<QAbstractButton>(id);
    return button != nullptr && button->isChecked();
  }
  void End(int result) override { m_dialog.done(result); }
  int Run() override {
    Arrange();
    const int result = m_dialog.exec();
    return result != 0 ? result : kDialogCancel;
  }

 private:
  template <typename Widget>
  Widget* Find(int id) const {
    const auto found = m_controls.find(id);
    return found != m_controls.end() ? qobject_cast<Widget*>(found->second) : nullptr;
  }

  QWidget* Make(const DialogControl& control) {
    switch (control.kind) {
      case DialogControl::Kind::GroupBox:
        return new QGroupBox(&m_dialog);
      case DialogControl::Kind::RadioButton:
        return new QRadioButton(&m_dialog);
      case DialogControl::Kind::PushButton: {
        auto* button = new QPushButton(&m_dialog);
        button->setDefault(control.id == kDialogOk);
        return button;
      }
      case DialogControl::Kind::Label: {
        auto* label = new QLabel(ToQt(control.text), &m_dialog);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        return label;
      }
      case DialogControl::Kind::TextField: {
        auto* field = new QLineEdit(&m_dialog);
        QObject::connect(field, &QLineEdit::textEdited, &m_dialog, [this, id = control.id] { m_owner.Press(id); });
        return field;
      }
      case DialogControl::Kind::Lines: {
        auto* list = new QListView(&m_dialog);
        auto* lines = new Lines(m_owner, control.id);
        lines->setParent(list);
        list->setModel(lines);
        list->setUniformItemSizes(true);
        list->setEditTriggers(QAbstractItemView::NoEditTriggers);
        return list;
      }
    }
    return nullptr;
  }

  static bool GrowsWithText(const DialogControl& control) {
    return control.kind == DialogControl::Kind::RadioButton || control.kind == DialogControl::Kind::PushButton;
  }

  /// Texts of other languages are wider than the template was laid out for: everything grows alike.
  void Arrange() {
    Units units = UnitsOf(m_dialog.font());
    for (const DialogControl& control : m_layout.controls) {
      if (!GrowsWithText(control)) continue;
      const QSize wanted = m_controls[control.id]->sizeHint();
      units.x = std::max(units.x, wanted.width() / double(control.width));
      units.y = std::max(units.y, wanted.height() / double(control.height));
    }
    // The frame of a group takes its title out of the space of its contents.
    int below = 0;
    for (const DialogControl& control : m_layout.controls) {
      QRect area(int(control.x * units.x), int(control.y * units.y), int(control.width * units.x),
                 int(control.height * units.y));
      if (control.kind == DialogControl::Kind::GroupBox) {
        below = m_dialog.style()->pixelMetric(QStyle::PM_DefaultFrameWidth) + 4;
        area.setHeight(area.height() + below);
      } else {
        area.translate(0, below);
      }
      m_controls[control.id]->setGeometry(area);
    }
    m_dialog.setFixedSize(int(m_layout.width * units.x), int(m_layout.height * units.y) + below);
  }

  CDialog& m_owner;
  QDialog m_dialog;
  const DialogTemplate& m_layout;
  std::map<int, QWidget*> m_controls;  // owned by the dialog
};

}  // namespace

std::unique_ptr<IDialogPeer> MakeQtDialog(CDialog& owner, const DialogTemplate& layout) {
  return std::make_unique<QtDialog>(owner, layout);
}

namespace {

/// The window that a question is about: the one the user works in, or else any.
QWidget* AskingWindow() {
  if (QWidget* active = QApplication::activeWindow()) return active;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && !window->windowTitle().isEmpty()) return window;
  }
  return nullptr;
}

}  // namespace

/// As on every system, the box bears the title of the window that asks.
MessageAnswer ShowQtMessage(const CString& text, MessageButtons buttons) {
  QWidget* above = AskingWindow();
  QMessageBox box(buttons == MessageButtons::Ok ? QMessageBox::Warning : QMessageBox::Question,
                  above != nullptr ? above->windowTitle() : QString(), ToQt(text), QMessageBox::NoButton, above);
  box.setTextFormat(Qt::PlainText);
  switch (buttons) {
    case MessageButtons::Ok:
      box.setStandardButtons(QMessageBox::Ok);
      break;
    case MessageButtons::YesNo:
      box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
      break;
    case MessageButtons::YesNoCancel:
      box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
      break;
  }
  switch (box.exec()) {
    case QMessageBox::Yes:
      return MessageAnswer::Yes;
    case QMessageBox::No:
      return MessageAnswer::No;
    case QMessageBox::Cancel:
      return MessageAnswer::Cancel;
    default:
      return MessageAnswer::Ok;
  }
}

}  // namespace qd

#include "workbench/app/DocumentQuestions.h"

#include <QDateTime>
#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "workbench/app/FileName.h"
#include "workbench/app/MessageTables.h"
#include "workbench/text/Shown.h"

namespace qd::workbench {

QString TextOf(const DocumentError& error) {
  return Text(error.key, {NameFromBytes(error.detail)});
}

DocumentQuestions::Recovery DocumentQuestions::AskRecovery(const RecoverableDocument& document) const {
  const QDateTime when = QFileInfo(NameFromBytes(document.path)).lastModified();
  const QString title = QFileInfo(QString::fromStdString(document.title)).fileName();
  const QString text = Text("IDS_WB_ASK_RECOVER", {title.isEmpty() ? Text("IDS_WB_UNTITLED") : title,
                                                   QLocale().toString(when, QLocale::ShortFormat),
                                                   QLocale().toString(static_cast<qlonglong>(document.parts)),
                                                   QLocale().toString(static_cast<qlonglong>(document.meshSets))});
  QMessageBox box(QMessageBox::Question, Text("IDS_WB_APP"), text, QMessageBox::NoButton, m_window);
  box.setObjectName("recovery");
  box.setTextFormat(Qt::PlainText);
  const QPushButton* recover = box.addButton(Text("IDS_WB_RECOVER"), QMessageBox::AcceptRole);
  QPushButton* discard = box.addButton(Text("IDS_WB_DISCARD"), QMessageBox::DestructiveRole);
  // One question follows the other at the same place: a second click on the former one must not throw away a
  // document that nobody has read of.
  constexpr int kMoment = 700;  // milliseconds
  discard->setEnabled(false);
  QTimer::singleShot(kMoment, discard, [discard] { discard->setEnabled(true); });
  box.setEscapeButton(box.addButton(Text("IDS_WB_LATER"), QMessageBox::RejectRole));
  box.exec();
  if (box.clickedButton() == recover) return Recovery::Recover;
  return box.clickedButton() == discard ? Recovery::Discard : Recovery::Later;
}

DocumentQuestions::Closing DocumentQuestions::AskUnsaved() const {
  return AskClosing(Text("IDS_WB_ASK_SAVE"));
}

DocumentQuestions::Closing DocumentQuestions::AskLost(const QString& path) const {
  return AskClosing(Text("IDS_WB_ASK_LOST", {path}));
}

DocumentQuestions::Closing DocumentQuestions::AskRecording() const {
  return AskClosing(Text("IDS_WB_ASK_RECORDING"));
}

DocumentQuestions::Closing DocumentQuestions::AskClosing(const QString& text) const {
  QMessageBox box(QMessageBox::Question, Text("IDS_WB_APP"), text,
                  QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, m_window);
  box.setObjectName("closing");
  box.setTextFormat(Qt::PlainText);
  const int answer = box.exec();
  if (answer == QMessageBox::Save) return Closing::Save;
  return answer == QMessageBox::Discard ? Closing::Discard : Closing::Stay;
}

void DocumentQuestions::AskInclude(const QString& deck, const QString& folder, const QString& file,
                                   const std::function<void(bool)>& answer) {
  constexpr std::size_t kShown = 1000;  // all of what is decided on, but for what steers a text
  const auto shown = [](const QString& name) {
    return QString::fromStdString(ShownText(NameToBytes(name), kShown));
  };
  m_include = new QMessageBox(QMessageBox::Warning, Text("IDS_WB_APP"),
                              Text("IDS_WB_ASK_INCLUDE", {shown(deck), shown(file), shown(folder)}),
                              QMessageBox::NoButton, m_window);
  m_include->setObjectName("include");
  m_include->setTextFormat(Qt::PlainText);
  m_include->setAttribute(Qt::WA_DeleteOnClose);
  const QPushButton* allow = m_include->addButton(Text("IDS_WB_ALLOW"), QMessageBox::AcceptRole);
  QPushButton* refuse = m_include->addButton(Text("IDS_WB_REFUSE"), QMessageBox::RejectRole);
  m_include->setDefaultButton(refuse);
  m_include->setEscapeButton(refuse);
  QMessageBox* box = m_include;
  QObject::connect(box, &QDialog::finished, m_window,
                   [box, allow, answer] { answer(box->clickedButton() == allow); });
  box->open();
}

void DocumentQuestions::ForgetInclude() {
  delete m_include;
}

void DocumentQuestions::Warn(const QString& text, const std::function<void()>& saveAs) {
  if (m_warning != nullptr) return m_warning->setText(text);
  m_warning = new QMessageBox(QMessageBox::Warning, Text("IDS_WB_APP"), text, QMessageBox::Close, m_window);
  m_warning->setObjectName("unkept");
  m_warning->setTextFormat(Qt::PlainText);
  m_warning->setAttribute(Qt::WA_DeleteOnClose);
  const QPushButton* save = m_warning->addButton(Text("IDS_WB_SAVE_AS"), QMessageBox::AcceptRole);
  QObject::connect(save, &QPushButton::clicked, m_window, saveAs, Qt::QueuedConnection);
  m_warning->open();
}

}  // namespace qd::workbench

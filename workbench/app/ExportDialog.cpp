#include "workbench/app/ExportDialog.h"

#include <QButtonGroup>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>

#include "workbench/app/FileName.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"
#include "workbench/exchange/formats/Format.h"

namespace qd::workbench {

ExportDialog::ExportDialog(WorkDocument& doc, const QString& path, QWidget* parent)
    : DialogFrame("IDS_WB_EXPORT_TITLE", "export", parent),
      m_doc(doc),
      m_scopes(new QButtonGroup(this)),
      m_path(new QLineEdit(path)) {
  AddWide(NewFieldLabel("IDS_WB_EXPORT_SCOPE"));
  AddScope(ExportScope::All, "IDS_WB_EXPORT_ALL");
  AddScope(ExportScope::Shown, "IDS_WB_EXPORT_SHOWN");
  AddScope(ExportScope::Selected, "IDS_WB_EXPORT_SELECTED");
  m_scopes->button(static_cast<int>(ExportScope::All))->setChecked(true);
  AddWide(NewLabel("IDS_WB_EXPORT_FILE", {QString::fromStdString(WritePatterns(", "))}));
  auto* line = new QWidget;
  auto* row = new QHBoxLayout(line);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(m_path);
  auto* browse = new QPushButton;
  SetText(*browse, "IDS_WB_BROWSE");
  browse->setAutoDefault(false);
  row->addWidget(browse);
  AddWide(line);
  AddAct("IDS_WB_EXPORT_WRITE", "write", [this] { accept(); });
  Finish("IDS_WB_CANCEL");
  m_path->setObjectName("path");
  constexpr int kWidth = 420;
  m_path->setMinimumWidth(kWidth);
  m_path->selectAll();
  m_path->setFocus();
  connect(browse, &QPushButton::clicked, this, [this] { Browse(); });
  connect(m_path, &QLineEdit::textChanged, this, [this] { Check(); });
  Check();
}

void ExportDialog::AddScope(ExportScope scope, const char* key) {
  const ExportCounts counts = CountScope(m_doc, scope);
  const auto number = [](std::uint64_t count) { return QLocale().toString(static_cast<qulonglong>(count)); };
  auto* button = new QRadioButton;
  SetText(*button, key, {number(counts.parts), number(counts.sets), number(counts.elements)});
  button->setEnabled(counts.parts + counts.sets > 0 || scope == ExportScope::All);
  m_scopes->addButton(button, static_cast<int>(scope));
  AddWide(button);
}

ExportScope ExportDialog::Scope() const {
  return static_cast<ExportScope>(m_scopes->checkedId());
}

QString ExportDialog::Path() const {
  return m_path->text();
}

void ExportDialog::Browse() {
  QString filters = Text("IDS_WB_EXPORT_FILTER") + " (" + QString::fromStdString(WritePatterns(" ")) + ")";
  for (const Format* format : Formats()) {
    if (!format->CanWrite()) continue;
    QString patterns;
    for (const std::string_view ending : format->Endings())
      patterns += " *" + QString::fromStdString(std::string(ending));
    filters += ";;" + QString::fromStdString(std::string(format->Name())) + " (" + patterns.trimmed() + ")";
  }
  const QString path = QFileDialog::getSaveFileName(this, Text("IDS_WB_EXPORT_TITLE"), m_path->text(), filters);
  if (path.isEmpty()) return;
  m_agreed = path;
  m_path->setText(path);
}

void ExportDialog::accept() {
  std::error_code ignored;
  const bool replaces = Path() != m_agreed && std::filesystem::exists(NameToBytes(Path()), ignored);
  if (replaces && QMessageBox::question(this, Text("IDS_WB_EXPORT_TITLE"),
                                        Text("IDS_WB_EXPORT_REPLACE", {Path()})) != QMessageBox::Yes) {
    return;
  }
  QDialog::accept();
}

void ExportDialog::Check() {
  const std::filesystem::path path(NameToBytes(m_path->text()));
  const Format* format = FormatOfPath(path);
  const bool good = format != nullptr && format->CanWrite();
  if (good) {
    TellNothing();
    return Block(nullptr);
  }
  Block("IDS_WB_EXPORT_NO_FORMAT");
  if (m_path->text().isEmpty() || path.extension().empty()) return;
  Tell("IDS_WB_EXPORT_FORMAT", {QString::fromStdString(path.extension().string())});
}

}  // namespace qd::workbench

#include "workbench/app/Headless.h"

#include <QEventLoop>
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <iostream>

#include "host/MessageOutput.h"
#include "platform/qt/QtConvert.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "workbench/app/ExchangeJob.h"
#include "workbench/app/ExportScope.h"
#include "workbench/app/FileName.h"
#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/store/StoreImport.h"
#include "workbench/exchange/watch/ExportFile.h"
#include "workbench/session/Session.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/store/DocumentFile.h"
#include "workbench/store/DocumentMark.h"
#include "workbench/tree/DocumentNode.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::workbench {

// ---- the session ----------------------------------------------------------------------------------------

namespace {

constexpr int kFailed = 1;
constexpr int kUsageError = 2;

int Complain(const QString& text) {
  std::cerr << text.toStdString() << std::endl;
  return kFailed;
}

volatile std::sig_atomic_t g_interrupted = 0;

/// While it lives, an interrupt from the keyboard ends long work in good order, and a second one the program.
class UntilInterrupted {
 public:
  UntilInterrupted() {
    m_before = std::signal(SIGINT, [](int) {
      g_interrupted = 1;
      std::signal(SIGINT, SIG_DFL);
    });
  }
  ~UntilInterrupted() { std::signal(SIGINT, m_before); }
  UntilInterrupted(const UntilInterrupted&) = delete;
  UntilInterrupted& operator=(const UntilInterrupted&) = delete;
  ProgressCall Progress() const {
    return [](double) { return g_interrupted == 0; };
  }

 private:
  void (*m_before)(int) = nullptr;
};

/// What the module and the model warn of.
class Warnings final : public IMessageOutput {
  void Warn(const CString& text) override { Complain(ToQt(text)); }
};

QString TextOf(const DocumentError& error) {
  return Text(error.key, {QString::fromStdString(error.detail)});
}

/// What lies beside a document that is only read stays there.
void TellForeignLog(const std::string& document) {
  if (CheckLogs(document) != LogKind::Foreign) return;
  Complain(TextOf({"IDS_WB_DOC_LOG_LEFT", document}));
}

}  // namespace

bool HeadlessSession::Open(const std::vector<std::string>& files) {
  m_doc.SetPathName(FromQt(files.empty() ? Text("IDS_WB_UNTITLED") : NameFromBytes(files.front())));
  const auto document =
      std::find_if(files.begin(), files.end(), [](const auto& file) { return IsDocumentName(file); });
  if (document == files.end()) return true;
  DocumentError error;
  const UntilInterrupted until;
  TellForeignLog(*document);
  if (const auto file = DocumentFile::View(*document, m_doc.GetDatabase(), error, until.Progress())) {
    // Mended in memory; the file stays as it is.
    for (const std::string& line : file->Mended()) Complain(NameFromBytes(*document) + ": " + line.c_str());
    return true;
  }
  Complain(NameFromBytes(*document) + ": " + TextOf(error));
  return false;
}

bool HeadlessSession::Import(const std::vector<std::string>& files) {
  bool good = true;
  for (const std::string& file : files) {
    if (!IsDocumentName(file)) good = ImportOne(file) && good;
  }
  return good;
}

bool HeadlessSession::ImportOne(const std::string& file) {
  const QString path = NameFromBytes(file);
  QEventLoop loop;
  ExchangeJob job(path);
  QString fault;
  bool good = false;
  QObject::connect(&job, &ExchangeJob::Finished, &loop, [&](ImportedModel& model) {
    for (const ImportNote& note : model.notes) {
      Complain(path + ": " + Text(note.key.c_str(), {QString::fromStdString(note.detail)}));
    }
    std::vector<ImportNote> notes;
    good = StoreImport(m_doc.GetDatabase(), std::move(model), FromQt(path), &notes) != 0;
    for (const ImportNote& note : notes) {
      Complain(path + ": " + Text(note.key.c_str(), {QString::fromStdString(note.detail)}));
    }
    if (!good) fault = Text("IDS_WB_IMPORT_REFUSED");
    loop.quit();
  });
  QObject::connect(&job, &ExchangeJob::Failed, &loop, [&](const QString& reason) {
    fault = reason;
    loop.quit();
  });
  QMetaObject::invokeMethod(
      &job, [&job] { job.Start(); }, Qt::QueuedConnection);
  loop.exec();
  if (!good) Complain(Text("IDS_WB_IMPORT_FAILED", {path, fault}));
  return good;
}

// ---- what is done with it -------------------------------------------------------------------------------

namespace {

int PrintTreeOf(const std::vector<std::string>& files) {
  HeadlessSession session;
  const bool opened = session.Open(files);
  CWorksTreeBar bar;
  Session::MakeBar(bar, session.Document());
  const WorksTrees trees(session.Document(), {{kModelTree, &bar}}, {});
  const bool imported = session.Import(files);
  if (!opened || !imported) return 1;
  std::cout << PrintTree(bar.GetTreeCtrl()) << std::flush;
  return 0;
}

int Verify(const std::string& document) {
  const UntilInterrupted until;
  TellForeignLog(document);
  const std::vector<DocumentError> faults = VerifyDocument(document, until.Progress());
  for (const DocumentError& fault : faults) std::cout << TextOf(fault).toStdString() << std::endl;
  if (!faults.empty()) return 1;
  std::cout << Text("IDS_WB_DOC_SOUND", {NameFromBytes(document)}).toStdString() << std::endl;
  return 0;
}

int Repair(const CommandLine& line) {
  const std::string& repaired = line.files.front();
  const UntilInterrupted until;
  TellForeignLog(line.document);
  std::vector<DocumentError> notes;
  DocumentError error;
  const bool done = MayRepairInto(line.document, repaired, line.force, error) &&
                    RepairDocument(line.document, repaired, notes, error, until.Progress());
  for (const DocumentError& note : notes) std::cout << TextOf(note).toStdString() << std::endl;
  if (!done) return Complain(TextOf(error));
  const QString changes = QString::number(notes.size());
  std::cout << Text("IDS_WB_REPAIRED", {NameFromBytes(repaired), changes}).toStdString() << std::endl;
  return 0;
}

int WrongUse(const QString& text) {
  Complain(text);
  return kUsageError;
}

/// Whether two names lead to one file.
bool IsSame(const std::string& one, const std::string& other) {
  std::error_code failed;
  return std::filesystem::equivalent(one, other, failed) && !failed;
}

int Export(const std::string& target, const std::vector<std::string>& files) {
  const QString path = NameFromBytes(target);
  const Format* format = FormatOfPath(target);
  if (format == nullptr || !format->CanWrite()) {
    const auto ending = QString::fromStdString(std::filesystem::path(target).extension().string());
    return WrongUse(path + ": " + Text("IDS_WB_EXPORT_FORMAT", {ending}));
  }
  const auto same =
      std::find_if(files.begin(), files.end(), [&target](const auto& file) { return IsSame(file, target); });
  if (same != files.end()) return WrongUse(path + ": " + Text("IDS_WB_EXPORT_ITSELF"));
  HeadlessSession session;
  if (!session.Open(files) || !session.Import(files)) return kFailed;
  ExportReport report;
  const ExportModel model = CollectScope(session.Document(), ExportScope::All);
  const UntilInterrupted until;
  const auto error = WriteExport(target, model, ExchangeProgram(), {until.Progress()}, report);
  if (error) return Complain(TextOf(path, *error));
  for (const QString& line : TextOf(path, report)) Complain(line);
  return 0;
}

int RunMode(const CommandLine& line) {
  switch (line.mode) {
    case CommandLine::Mode::Verify:
      return Verify(line.document);
    case CommandLine::Mode::Repair:
      return Repair(line);
    case CommandLine::Mode::Export:
      return Export(line.exported, line.files);
    default:
      return PrintTreeOf(line.files);
  }
}

}  // namespace

int RunWithoutWindow(const CommandLine& line) {
  const Warnings warnings;
  const int status = RunMode(line);
  if (std::cout.flush()) return status;
  std::cerr << "standard output cannot be written" << std::endl;
  return 1;
}

}  // namespace qd::workbench

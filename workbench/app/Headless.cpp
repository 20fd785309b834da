#include "workbench/app/Headless.h"

#include <QEventLoop>
#include <algorithm>
#include <iostream>

#include "platform/qt/QtConvert.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "workbench/app/ExchangeJob.h"
#include "workbench/app/FileName.h"
#include "workbench/exchange/StoreImport.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/store/DocumentFile.h"
#include "workbench/tree/DocumentNode.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::workbench {

// ---- the session ----------------------------------------------------------------------------------------

namespace {

int Complain(const QString& text) {
  std::cerr << text.toStdString() << std::endl;
  return 1;
}

QString TextOf(const DocumentError& error) {
  return Text(error.key, {QString::fromStdString(error.detail)});
}

}  // namespace

bool HeadlessSession::Open(const std::vector<std::string>& files) {
  m_doc.SetPathName(FromQt(files.empty() ? Text("IDS_WB_UNTITLED") : NameFromBytes(files.front())));
  const auto document =
      std::find_if(files.begin(), files.end(), [](const auto& file) { return IsDocumentName(file); });
  if (document == files.end()) return true;
  DocumentError error;
  if (DocumentFile::Open(*document, m_doc.GetDatabase(), error) != nullptr) return true;
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
    good = StoreImport(m_doc.GetDatabase(), std::move(model), FromQt(path)) != 0;
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

/// The works tree of a document, followed without a screen.
class Follower final : private IDatabaseListener {
 public:
  explicit Follower(WorkDocument& doc) : m_doc(doc) {
    m_bar.SetDocument(&doc);
    m_bar.Create(nullptr, 0, {0, 0, 400, 600});
    m_bar.CreateTreeItems(kModelTree, &m_factory, 1);
    doc.GetDatabase().SetListener(this);
  }
  ~Follower() { m_doc.GetDatabase().SetListener(nullptr); }
  Follower(const Follower&) = delete;
  Follower& operator=(const Follower&) = delete;
  CWorksTreeBar& Bar() { return m_bar; }

 private:
  void OnDatabaseChanged(const CQDUpdateRecord& record) override { m_bar.UpdateDB(&m_doc, HintOf(record)); }

  WorkDocument& m_doc;
  TreeFactory m_factory;
  CWorksTreeBar m_bar;
};

int PrintTreeOf(const std::vector<std::string>& files) {
  HeadlessSession session;
  const bool opened = session.Open(files);
  Follower follower(session.Document());
  const bool imported = session.Import(files);
  if (!opened || !imported) return 1;
  std::cout << PrintTree(follower.Bar().GetTreeCtrl()) << std::flush;
  return 0;
}

int Verify(const std::string& document) {
  const std::vector<std::string> faults = VerifyDocument(document);
  for (const std::string& fault : faults) std::cout << fault << std::endl;
  return faults.empty() ? 0 : 1;
}

int Repair(const std::string& document, const std::string& repaired) {
  std::vector<std::string> notes;
  DocumentError error;
  const bool done = RepairDocument(document, repaired, notes, error);
  for (const std::string& note : notes) std::cout << note << std::endl;
  return done ? 0 : Complain(TextOf(error));
}

int RunMode(const CommandLine& line) {
  switch (line.mode) {
    case CommandLine::Mode::Verify:
      return Verify(line.document);
    case CommandLine::Mode::Repair:
      return Repair(line.document, line.files.front());
    default:
      return PrintTreeOf(line.files);
  }
}

}  // namespace

int RunWithoutWindow(const CommandLine& line) {
  const int status = RunMode(line);
  if (std::cout.flush()) return status;
  std::cerr << "standard output cannot be written" << std::endl;
  return 1;
}

}  // namespace qd::workbench

#include "workbench/app/PrintTree.h"

#include <QEventLoop>
#include <iostream>

#include "platform/headless/HeadlessToolkit.h"
#include "platform/qt/QtConvert.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "workbench/app/ExchangeJob.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/exchange/StoreImport.h"
#include "workbench/store/DocumentFile.h"
#include "workbench/tree/DocumentNode.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::workbench {

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

bool OpenInto(WorkDocument& doc, const QString& path) {
  DocumentError error;
  if (DocumentFile::Open(path.toStdString(), doc.GetDatabase(), error) != nullptr) return true;
  std::cerr << path.toStdString() << ": " << Text(error.key, {QString::fromStdString(error.detail)}).toStdString()
            << std::endl;
  return false;
}

bool ImportInto(WorkDocument& doc, const QString& path) {
  QEventLoop loop;
  ExchangeJob job(path);
  bool good = false;
  QObject::connect(&job, &ExchangeJob::Finished, &loop, [&](ImportedModel& model) {
    good = StoreImport(doc.GetDatabase(), std::move(model), FromQt(path)) != 0;
    loop.quit();
  });
  QObject::connect(&job, &ExchangeJob::Failed, &loop, [&](const QString& reason) {
    std::cerr << Text("IDS_WB_IMPORT_FAILED", {path, reason}).toStdString() << std::endl;
    loop.quit();
  });
  QMetaObject::invokeMethod(
      &job, [&job] { job.Start(); }, Qt::QueuedConnection);
  loop.exec();
  return good;
}

}  // namespace

int PrintTreeOf(const QStringList& paths) {
  HeadlessToolkit toolkit;
  WorkDocument doc;
  doc.SetPathName(FromQt(paths.isEmpty() ? Text("IDS_WB_UNTITLED") : paths.first()));
  bool good = true;
  const auto isDocument = [](const QString& path) { return path.endsWith(".qdw"); };
  for (const QString& path : paths) {
    if (isDocument(path)) good = OpenInto(doc, path) && good;
  }
  Follower follower(doc);
  for (const QString& path : paths) {
    if (!isDocument(path)) good = ImportInto(doc, path) && good;
  }
  if (good) std::cout << PrintTree(follower.Bar().GetTreeCtrl()) << std::flush;
  return good ? 0 : 1;
}

}  // namespace qd::workbench

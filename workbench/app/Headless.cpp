#include "workbench/app/Headless.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <optional>

#include "platform/qt/QtConvert.h"
#include "workbench/app/ExchangeJob.h"
#include "workbench/app/ExportScope.h"
#include "workbench/app/FileName.h"
#include "workbench/app/InfoText.h"
#include "workbench/app/MessageTables.h"
#include "workbench/batch/BatchDocument.h"
#include "workbench/batch/ModelInfo.h"
#include "workbench/exchange/formats/Format.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/store/DocumentMark.h"
#include "workbench/text/Utf8.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::workbench {

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
  static bool GoesOn() { return g_interrupted == 0; }
  static ProgressCall Progress() {
    return [](double) { return g_interrupted == 0; };
  }

 private:
  void (*m_before)(int) = nullptr;
};

QString TextOf(const DocumentError& error) {
  return Text(error.key, {QString::fromStdString(error.detail)});
}

/// What lies beside a document that is only read stays there.
void TellForeignLog(const std::string& document) {
  if (CheckLogs(document) != LogKind::Foreign) return;
  Complain(TextOf({"IDS_WB_DOC_LOG_LEFT", document}));
}

/// Says what is to be known of how something ended, and whether it ended well.
bool Tell(BatchDocument& doc, const Outcome& outcome) {
  for (const CString& note : outcome.notes) Complain(ToQt(note));
  for (const CString& warning : doc.TakeWarnings()) Complain(ToQt(warning));
  if (!outcome.IsGood()) Complain(ToQt(outcome.fault));
  return outcome.IsGood();
}

/// Opens the document among some files and imports the others, also behind one that cannot be read. How many came
/// in is counted.
bool Read(BatchDocument& doc, const std::vector<std::string>& files, std::size_t& came) {
  const UntilInterrupted until;
  if (!files.empty()) doc.Document().SetPathName(FromQt(NameFromBytes(files.front())));
  bool good = true;
  for (const bool documents : {true, false}) {
    for (const std::string& file : files) {
      if (IsDocumentName(file) != documents) continue;
      const bool read =
          Tell(doc, documents ? doc.Open(file, until.Progress()) : doc.Import(file, until.Progress()));
      came += read ? 1 : 0;
      good = read && good;
      if (!until.GoesOn()) return false;
    }
  }
  return good;
}

// ---- what is done with it -------------------------------------------------------------------------------

int PrintTrees(Windowless& surroundings, const std::vector<std::string>& files) {
  BatchDocument doc(surroundings);
  std::size_t came = 0;
  const bool good = Read(doc, files, came);
  if (came == 0 && !files.empty()) return kFailed;
  for (const TreeType tree : {kModelTree, kGeometrySetTree}) {
    std::cout << PrintTree(doc.Tree(tree).GetTreeCtrl());
  }
  return good ? 0 : kFailed;
}

/// Finds and meshes what the line says. `chosen` gets the records, unless all are meant; false on failure.
bool Choose(BatchDocument& doc, const CommandLine& line, std::optional<std::vector<iterator>>& chosen) {
  const UntilInterrupted until;
  if (!line.select.empty()) {
    chosen.emplace();
    if (!Tell(doc, doc.Find(FromQt(QString::fromStdString(line.select)), *chosen))) return false;
    if (chosen->empty()) {
      Complain(Text("IDS_WB_BATCH_NO_MATCH", {QString::fromStdString(line.select)}));
      return false;
    }
  }
  if (line.mesh.empty()) return true;
  MeshWish wish;
  wish.size = ReadQuantity(line.mesh, '.', Quantity::Length, doc.Units()).value;
  const std::vector<iterator> parts =
      chosen ? PartsAmong(doc.Data(), *chosen) : doc.Data().GetGeomPool().GetItrList();
  return Tell(doc, doc.Mesh(parts, wish, until.Progress()));
}

const UnitSystem& UnitsFor(const BatchDocument& doc, const CommandLine& line) {
  return line.units.empty() ? doc.Units() : FindUnitSystem(FromUtf8(line.units));
}

/// Each file by itself: one that cannot be read keeps none of the others from being looked at.
int TellInfo(Windowless& surroundings, const CommandLine& line) {
  QJsonArray all;
  int status = 0;
  for (const std::string& file : line.files) {
    const UntilInterrupted until;
    BatchDocument doc(surroundings, BatchDocument::Shapes::Drawn);
    const QString path = NameFromBytes(file);
    std::size_t came = 0;
    std::optional<std::vector<iterator>> chosen;
    ModelInfo info;
    if (!Read(doc, {file}, came) || !Choose(doc, line, chosen) ||
        !LookAt(doc, chosen ? &*chosen : nullptr, UnitsFor(doc, line), until.Progress(), info)) {
      status = kFailed;
      if (!until.GoesOn()) break;
      all.append(QJsonObject{{"file", path}, {"failed", true}});
      continue;
    }
    all.append(InfoJson(path, info));
    if (!line.json) std::cout << InfoText(path, info).toStdString() << std::flush;
  }
  if (line.json) std::cout << QJsonDocument(all).toJson().toStdString();
  return status;
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
  TellForeignLog(line.target);
  std::vector<DocumentError> notes;
  DocumentError error;
  const bool done = MayRepairInto(line.target, repaired, line.force, error) &&
                    RepairDocument(line.target, repaired, notes, error, until.Progress());
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

int Export(Windowless& surroundings, const CommandLine& line) {
  const std::string& target = line.target;
  const QString path = NameFromBytes(target);
  const bool isDocument = IsDocumentName(target);
  const Format* format = FormatOfPath(target);
  if (!isDocument && (format == nullptr || !format->CanWrite())) {
    const auto ending = QString::fromStdString(std::filesystem::path(target).extension().string());
    return WrongUse(path + ": " + Text("IDS_WB_EXPORT_FORMAT", {ending}));
  }
  if (isDocument && !line.select.empty()) return WrongUse(path + ": " + Text("IDS_WB_BATCH_WHOLE_DOCUMENT"));
  // Files of shapes say their units by themselves, and the numbers of a document stay as they are.
  if (!line.units.empty() && (isDocument || format->Carry().shapes)) {
    return WrongUse(path + ": " + Text("IDS_WB_BATCH_UNITS_OF_MESHES"));
  }
  const auto same = std::find_if(line.files.begin(), line.files.end(),
                                 [&target](const auto& file) { return IsSame(file, target); });
  if (same != line.files.end()) return WrongUse(path + ": " + Text("IDS_WB_EXPORT_ITSELF"));
  BatchDocument doc(surroundings, isDocument ? BatchDocument::Shapes::Drawn : BatchDocument::Shapes::Bare);
  std::size_t came = 0;
  std::optional<std::vector<iterator>> chosen;
  if (!Read(doc, line.files, came) || !Choose(doc, line, chosen)) return kFailed;
  if (isDocument) return Tell(doc, doc.Save(target)) ? 0 : kFailed;
  ExportReport report;
  ExportModel model = doc.Collect(chosen ? &*chosen : nullptr);
  ConvertUnits(model, doc.Units(), UnitsFor(doc, line));
  const UntilInterrupted until;
  if (const auto error = doc.Export(target, model, until.Progress(), report))
    return Complain(TextOf(path, *error));
  for (const QString& text : TextOf(path, report)) Complain(text);
  return 0;
}

int RunMode(Windowless& surroundings, const CommandLine& line) {
  switch (line.mode) {
    case CommandLine::Mode::Verify:
      return Verify(line.target);
    case CommandLine::Mode::Repair:
      return Repair(line);
    case CommandLine::Mode::Export:
      return Export(surroundings, line);
    case CommandLine::Mode::Info:
      return TellInfo(surroundings, line);
    default:
      return PrintTrees(surroundings, line.files);
  }
}

}  // namespace

int RunWithoutWindow(const CommandLine& line) {
  Windowless surroundings(ExchangeProgram());
  const int status = RunMode(surroundings, line);
  if (std::cout.flush()) return status;
  std::cerr << "standard output cannot be written" << std::endl;
  return 1;
}

}  // namespace qd::workbench

// The workbench. Usage: workbench [FILE...] [--print-tree] [--verify DOCUMENT] [--repair DOCUMENT]
// [--screenshot PNG] [--language L] [--variant V]
// [--messages FOLDER]

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>
#include <algorithm>
#include <iostream>

#include "platform/qt/QtToolkit.h"
#include "workbench/app/MainWindow.h"
#include "workbench/app/PrintTree.h"
#include "workbench/session/VariantNames.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/view/ModelView.h"

namespace {

using namespace qd;
using namespace qd::workbench;

constexpr int kUsageError = 2;

struct Options {
  QStringList files;
  QString screenshot;
  QString language = "en";
  QString messages;
  ProductVariant variant = ProductVariant::Standard;
  QString verify;
  QString repair;
  bool printTree = false;
};

/// Shows how the program is called and ends it when the command line is wrong.
Options ReadOptions(const QCoreApplication& app) {
  QCommandLineParser parser;
  parser.setApplicationDescription("Shows CAD and mesh files with their works tree.");
  parser.addHelpOption();
  parser.addPositionalArgument("FILE", "documents (.qdw) to open, other files to import", "[FILE...]");
  parser.addOption({"print-tree", "print the model tree and end"});
  parser.addOption({"screenshot", "write a picture of the window and end", "PNG"});
  parser.addOption({"verify", "check a document, say what is wrong with it and end", "DOCUMENT"});
  parser.addOption({"repair", "write what is sound of a document into a new one, the FILE, and end", "DOCUMENT"});
  parser.addOption({"language", "language of the texts: " + MessageTables().Languages().join(", "), "L", "en"});
  parser.addOption({"messages", "folder with message tables to use in place of the program's own", "FOLDER"});
  parser.addOption({"variant", "product variant: standard, ksl, rvt, zdh", "V", "standard"});
  parser.process(app);
  Options options;
  options.files = parser.positionalArguments();
  options.screenshot = parser.value("screenshot");
  options.language = parser.value("language");
  options.printTree = parser.isSet("print-tree");
  options.verify = parser.value("verify");
  options.repair = parser.value("repair");
  options.messages = parser.value("messages");
  const QStringList languages = MessageTables(options.messages).Languages() << "en" << MessageTables::kPseudo;
  const auto* variant = std::find_if(kVariants.begin(), kVariants.end(), [&parser](const VariantName& known) {
    return parser.value("variant") == known.name;
  });
  if (!languages.contains(options.language) || variant == kVariants.end()) {
    std::cerr << parser.helpText().toStdString();
    std::exit(kUsageError);
  }
  options.variant = variant->variant;
  return options;
}

/// Waits until everything is on screen, writes the picture and ends.
void TakeScreenshotWhenDone(MainWindow& window, const QString& path) {
  auto* timer = new QTimer(&window);  // owned by the window
  QObject::connect(timer, &QTimer::timeout, &window, [&window, timer, path] {
    if (!window.IsUpToDate()) return;
    timer->stop();
    const bool saved = window.grab().save(path);
    if (!saved) std::cerr << path.toStdString() << ": cannot be written" << std::endl;
    QCoreApplication::exit(!saved || window.FailedImports() + window.FailedDocuments() > 0 ? 1 : 0);
  });
  constexpr int kSettle = 300;  // milliseconds for the last frames
  timer->start(kSettle);
}

int RunWindow(QApplication& app, const Options& options, MessageTables& messages) {
  QtToolkit toolkit;
  MainWindow window(messages);
  const bool forPicture = !options.screenshot.isEmpty();
  if (!forPicture) window.RestoreLayout();
  window.show();
  QStringList documents;
  QStringList others;
  for (const QString& file : options.files) (file.endsWith(".qdw") ? documents : others) << file;
  for (const QString& document : documents) window.OpenDocument(document);
  window.Import(others);
  if (!forPicture) window.OfferRecovery();
  if (forPicture) TakeScreenshotWhenDone(window, options.screenshot);
  const int result = app.exec();
  if (!forPicture) window.SaveLayout();
  return result;
}

bool WantsNoWindow(int argc, char** argv) {
  return std::any_of(argv, argv + argc, [](const char* argument) {
    const std::string_view text = argument;
    return text == "--print-tree" || text.starts_with("--verify") || text.starts_with("--repair");
  });
}

int Verify(const QString& path) {
  const std::vector<std::string> faults = VerifyDocument(path.toStdString());
  for (const std::string& fault : faults) std::cout << fault << std::endl;
  return faults.empty() ? 0 : 1;
}

int Repair(const Options& options) {
  if (options.files.size() != 1) {
    std::cerr << "--repair DOCUMENT needs the name of the new document" << std::endl;
    return kUsageError;
  }
  std::vector<std::string> notes;
  DocumentError error;
  const bool done =
      RepairDocument(options.repair.toStdString(), options.files.first().toStdString(), notes, error);
  for (const std::string& note : notes) std::cout << note << std::endl;
  if (!done) std::cerr << Text(error.key, {QString::fromStdString(error.detail)}).toStdString() << std::endl;
  return done ? 0 : 1;
}

int RunWithoutWindow(const Options& options, MessageTables& messages) {
  messages.SetLanguage(options.language);
  for (const QString& fault : messages.TakeFaults()) std::cerr << fault.toStdString() << std::endl;
  SetProductVariant(options.variant);
  if (!options.verify.isEmpty()) return Verify(options.verify);
  return options.repair.isEmpty() ? PrintTreeOf(options.files) : Repair(options);
}

}  // namespace

int main(int argc, char** argv) {
  if (WantsNoWindow(argc, argv)) {
    const QCoreApplication app(argc, argv);
    const Options options = ReadOptions(app);
    MessageTables messages(options.messages);
    return RunWithoutWindow(options, messages);
  }
  ModelView::SetDefaultFormat();
  QApplication app(argc, argv);
  QApplication::setOrganizationName("QD_wrt");
  QApplication::setApplicationName("workbench");
  const Options options = ReadOptions(app);
  MessageTables messages(options.messages);
  messages.SetLanguage(options.language);
  SetProductVariant(options.variant);
  return RunWindow(app, options, messages);
}

// The workbench. Usage: workbench [FILE...] [--print-tree] [--screenshot PNG] [--language L] [--variant V]
// [--messages FOLDER]

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>
#include <algorithm>
#include <iostream>

#include "platform/qt/QtToolkit.h"
#include "workbench/app/MainWindow.h"
#include "workbench/app/PrintTree.h"
#include "workbench/app/VariantNames.h"
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
  bool printTree = false;
};

/// Shows how the program is called and ends it when the command line is wrong.
Options ReadOptions(const QCoreApplication& app) {
  QCommandLineParser parser;
  parser.setApplicationDescription("Shows CAD and mesh files with their works tree.");
  parser.addHelpOption();
  parser.addPositionalArgument("FILE", "files to import", "[FILE...]");
  parser.addOption({"print-tree", "print the model tree and end"});
  parser.addOption({"screenshot", "write a picture of the window and end", "PNG"});
  parser.addOption({"language", "language of the texts: " + MessageTables().Languages().join(", "), "L", "en"});
  parser.addOption({"messages", "folder with message tables to use in place of the program's own", "FOLDER"});
  parser.addOption({"variant", "product variant: standard, ksl, rvt, zdh", "V", "standard"});
  parser.process(app);
  Options options;
  options.files = parser.positionalArguments();
  options.screenshot = parser.value("screenshot");
  options.language = parser.value("language");
  options.printTree = parser.isSet("print-tree");
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
    QCoreApplication::exit(!saved || window.FailedImports() > 0 ? 1 : 0);
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
  window.Import(options.files);
  if (forPicture) TakeScreenshotWhenDone(window, options.screenshot);
  const int result = app.exec();
  if (!forPicture) window.SaveLayout();
  return result;
}

bool WantsNoWindow(int argc, char** argv) {
  return std::any_of(argv, argv + argc,
                     [](const char* argument) { return std::string(argument) == "--print-tree"; });
}

}  // namespace

int main(int argc, char** argv) {
  if (WantsNoWindow(argc, argv)) {
    const QCoreApplication app(argc, argv);
    const Options options = ReadOptions(app);
    MessageTables messages(options.messages);
    messages.SetLanguage(options.language);
    for (const QString& fault : messages.TakeFaults()) std::cerr << fault.toStdString() << std::endl;
    SetProductVariant(options.variant);
    return PrintTreeOf(options.files);
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

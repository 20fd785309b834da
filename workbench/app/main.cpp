// The workbench. CommandLine.cpp says how it is called.

#include <QApplication>
#include <QIcon>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <clocale>
#include <cstdlib>
#include <iostream>
#include <utility>

#include "platform/Version.h"
#include "platform/qt/QtToolkit.h"
#include "workbench/app/CommandLine.h"
#include "workbench/app/FileName.h"
#include "workbench/app/Headless.h"
#include "workbench/app/MainWindow.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/PictureFile.h"
#include "workbench/app/ScriptRun.h"
#include "workbench/app/VirtualDisplay.h"
#include "workbench/exchange/watch/ExchangeLimits.h"
#include "workbench/session/RecordQuery.h"
#include "workbench/session/VariantNames.h"
#include "workbench/text/Utf8.h"
#include "workbench/view/ModelView.h"

namespace {

using namespace qd;
using namespace qd::workbench;

constexpr int kFailed = 1;
constexpr int kUsageError = 2;

int SayWrongUse(const std::string& fault) {
  std::cerr << "workbench: " << fault << "\nworkbench --help says how the program is called." << std::endl;
  return kUsageError;
}

/// Shows the model as the picture wants it. False, with a message, when its query is wrong.
bool Arrange(MainWindow& window, const CommandLine& line, const PictureWishes& wishes) {
  if (!line.wishes.hide.empty() && !window.HideMatches(QString::fromStdString(line.wishes.hide))) return false;
  Looking& looking = window.Document().GetLooking();
  if (wishes.view) looking.LookFrom(*wishes.view);
  const ViewBox shown = looking.Shown().value_or(ViewBox{});
  for (const PictureWishes::Cut& cut : wishes.cuts) {
    Vector3 through = (shown.least + shown.greatest) * 0.5;
    if (cut.at) through.at(cut.axis) = *cut.at;
    if (!window.Document().GetSections().HasAxis(cut.axis)) {
      window.Document().GetSections().ToggleAxis(cut.axis, through);
    }
  }
  return true;
}

/// Waits until everything is on screen, arranges it, waits for that too, writes the picture and ends.
void TakeScreenshotWhenDone(MainWindow& window, const CommandLine& line) {
  PictureWishes wishes;
  ReadPictureWishes(line.wishes, wishes);  // which was tried when the line was read
  auto* timer = new QTimer(&window);       // owned by the window
  QObject::connect(timer, &QTimer::timeout, &window, [&window, timer, &line, wishes, arranged = false]() mutable {
    if (!window.IsUpToDate()) return;
    if (!std::exchange(arranged, true)) {
      if (Arrange(window, line, wishes)) return;
      timer->stop();
      return QCoreApplication::exit(kFailed);
    }
    timer->stop();
    const QString path = NameFromBytes(line.target);
    const QImage picture =
        wishes.size ? window.View().Render({wishes.size->width, wishes.size->height}) : window.grab().toImage();
    const bool saved = WritePicture(picture, path);
    if (!saved) std::cerr << path.toStdString() << ": cannot be written" << std::endl;
    QCoreApplication::exit(!saved || window.FailedImports() + window.FailedDocuments() > 0 ? kFailed : 0);
  });
  constexpr int kSettle = 300;  // milliseconds for the last frames
  timer->start(kSettle);
}

int RunWindow(QApplication& app, const CommandLine& line, MessageTables& messages) {
  QGuiApplication::setDesktopFileName("org.qdwrt.workbench");
  QApplication::setWindowIcon(QIcon(":/org.qdwrt.workbench.svg"));
  QtToolkit toolkit;
  MainWindow window(messages);
  const bool forPicture = line.mode == CommandLine::Mode::Screenshot;
  if (forPicture) window.AskNothing();
  if (!forPicture) window.RestoreLayout();
  window.show();
  // Asked before anything is opened or imported: what is recovered comes into a window of its own.
  const bool recovers = std::any_of(line.files.begin(), line.files.end(), [](const std::string& file) {
    return MainWindow::IsRecoveryFile(NameFromBytes(file));
  });
  if (!forPicture && !recovers) window.OfferRecovery(!line.files.empty());
  QStringList files;
  for (const std::string& file : line.files) files << NameFromBytes(file);
  window.OpenFiles(files);
  if (forPicture) TakeScreenshotWhenDone(window, line);
  if (!forPicture) window.RunOwnScripts();
  if (!line.script.empty()) {
    QStringList arguments;
    for (const std::string& argument : line.arguments) arguments << NameFromBytes(argument);
    window.RunScript(NameFromBytes(line.script), arguments);
  }
  const int result = app.exec();
  if (!forPicture) window.SaveLayout();
  return result;
}

/// Makes the texts and the variant that were asked for; a sentence when there is no such language, or a query
/// cannot be understood.
std::optional<std::string> Prepare(const CommandLine& line, MessageTables& messages) {
  const QStringList languages = messages.Languages() << "en" << MessageTables::kPseudo;
  if (!languages.contains(QString::fromStdString(line.language))) {
    return "there is no language " + line.language + ", only " + messages.Languages().join(", ").toStdString();
  }
  messages.SetLanguage(QString::fromStdString(line.language));
  const auto* variant = std::find_if(kVariants.begin(), kVariants.end(),
                                     [&line](const VariantName& known) { return line.variant == known.name; });
  SetProductVariant(variant->variant);
  // Which words a query may have depends on the language.
  for (const auto& [option, query] :
       {std::pair{"--hide", &line.wishes.hide}, std::pair{"--select", &line.select}}) {
    const QueryFault fault = FaultOfQuery(FromUtf8(*query));
    if (!query->empty() && fault.key != nullptr) {
      return std::string(option) + " " + *query + ": " + Text(fault.key).toStdString();
    }
  }
  return std::nullopt;
}

/// Without a display the window's toolkit would end the program with a crash.
bool HasDisplay() {
  const auto isSet = [](const char* name) { return !qEnvironmentVariableIsEmpty(name); };
#ifdef Q_OS_UNIX
  return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
#else
  return true;
#endif
}

void SetLimits(const CommandLine& line) {
  constexpr unsigned kMiB = 20;
  ExchangeSettings& settings = SettingsOfExchange();
  settings.memory = std::strtoull(line.readerMemory.c_str(), nullptr, 10) << kMiB;
  settings.work = std::chrono::seconds(std::strtoll(line.readerSeconds.c_str(), nullptr, 10));
}

template <typename Application>
int RunProgram(int argc, char** argv, const CommandLine& line) {
  // The toolkit would take options of its own out of the arguments; ours are read already.
  int count = std::min(argc, 1);
  Application app(count, argv);
  // The toolkit takes the user's language for the C library too; numbers keep their point everywhere.
  std::setlocale(LC_NUMERIC, "C");
  QCoreApplication::setOrganizationName("QD_wrt");
  QCoreApplication::setApplicationName("workbench");
  SetLimits(line);
  MessageTables messages(NameFromBytes(line.messages));
  if (const auto fault = Prepare(line, messages)) return SayWrongUse(*fault);
  if constexpr (std::is_same_v<Application, QApplication>) {
    return RunWindow(app, line, messages);
  } else {
    for (const QString& fault : messages.TakeFaults()) std::cerr << fault.toStdString() << std::endl;
    return RunWithoutWindow(line);
  }
}

}  // namespace

int main(int argc, char** argv) {
  CommandLine line;
  if (const auto fault = ReadCommandLine({argv + std::min(argc, 1), argv + argc}, line))
    return SayWrongUse(*fault);
  if (!line.includes.empty()) SettingsOfExchange().includes.push_back(line.includes);
  switch (line.mode) {
    case CommandLine::Mode::Help:
      std::cout << CommandLineHelp() << std::flush;
      return std::cout ? 0 : kFailed;
    case CommandLine::Mode::Version:
      std::cout << "workbench " QD_WRT_VERSION << std::endl;
      return std::cout ? 0 : kFailed;
    case CommandLine::Mode::Script: {
      const std::string fault = RunScript(line.target, line.arguments);  // which comes back with a fault only
      std::cerr << "workbench: " << fault << std::endl;
      return kFailed;
    }
    case CommandLine::Mode::Completion:
      std::cout << ShellCompletion() << std::flush;
      return std::cout ? 0 : kFailed;
    case CommandLine::Mode::Window:
      if (!HasDisplay()) {
        std::cerr << "workbench: there is no display to show a window on" << std::endl;
        return kFailed;
      }
      ModelView::SetDefaultFormat();
      return RunProgram<QApplication>(argc, argv, line);
    case CommandLine::Mode::Screenshot: {
      VirtualDisplay display;
      std::string fault;
      if (!HasDisplay() && !display.Start(fault)) {
        std::cerr << "workbench: " << fault << std::endl;
        return kFailed;
      }
      ModelView::SetDefaultFormat();
      return RunProgram<QApplication>(argc, argv, line);
    }
    default:
      return RunProgram<QCoreApplication>(argc, argv, line);
  }
}

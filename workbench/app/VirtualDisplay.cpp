#include "workbench/app/VirtualDisplay.h"

#include <poll.h>
#include <unistd.h>

#include <QStandardPaths>
#include <chrono>

#include "workbench/app/FileName.h"
#include "workbench/exchange/watch/ChildProcess.h"
#include "workbench/exchange/watch/PrivateFolder.h"

namespace qd::workbench {

namespace {

/// What the server says, up to the end of its first line; empty when it says nothing in time.
std::string FirstLine(int output) {
  constexpr std::chrono::seconds kPatience{20};
  const auto end = std::chrono::steady_clock::now() + kPatience;
  std::string line;
  while (std::chrono::steady_clock::now() < end) {
    constexpr int kLook = 100;  // milliseconds
    pollfd wait{output, POLLIN, 0};
    if (poll(&wait, 1, kLook) <= 0) continue;
    char letter = 0;
    const ssize_t count = read(output, &letter, 1);
    if (count == 0) return {};  // it has ended
    if (count < 0) continue;
    if (letter == '\n') return line;
    line += letter;
  }
  return {};
}

}  // namespace

struct VirtualDisplay::Server {
  PrivateFolder folder;
  ChildProcess process;
};

VirtualDisplay::VirtualDisplay() = default;
VirtualDisplay::~VirtualDisplay() = default;

bool VirtualDisplay::Start(std::string& fault) {
  const QString program = QStandardPaths::findExecutable("Xvfb");
  if (program.isEmpty()) {
    fault = "there is no display to draw on, and Xvfb, which makes one, is not installed";
    return false;
  }
  m_server = std::make_unique<Server>();
  // It ends with its last window too, should this program be killed.
  const bool started = m_server->process.Start(
      NameToBytes(program), {"-displayfd", "1", "-screen", "0", "1600x1000x24", "-nolisten", "tcp", "-terminate"},
      m_server->folder.Path(), {});
  const std::string number = started ? FirstLine(m_server->process.Output()) : std::string();
  if (number.empty()) {
    fault = "there is no display to draw on, and Xvfb does not start";
    return false;
  }
  qputenv("DISPLAY", QByteArray::fromStdString(":" + number));
  qputenv("QT_QPA_PLATFORM", "xcb");
  return true;
}

}  // namespace qd::workbench

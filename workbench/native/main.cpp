// The workbench in native windows. Usage: native_workbench [FILE.inp] [--example] [--screenshot BMP] [--language
// L]
// [--variant V]

#include <windows.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "host/CMSGFunction.h"
#include "workbench/native/MainFrame.h"
#include "workbench/native/Screenshot.h"
#include "workbench/session/VariantNames.h"
#include "workbench/text/Utf8.h"

namespace {

using namespace qd;
using namespace qd::workbench;

struct Options {
  std::vector<std::wstring> files;
  std::string language = "en";
  std::string variant = "standard";
  std::wstring screenshot;
  bool example = false;
};

/// Nothing when the command line is wrong.
std::optional<Options> ReadOptions(int count, wchar_t** arguments) {
  Options options;
  for (int i = 1; i < count; ++i) {
    const std::wstring argument = arguments[i];
    const bool value = argument == L"--language" || argument == L"--variant" || argument == L"--screenshot";
    if (value && i + 1 == count) return std::nullopt;
    if (argument == L"--screenshot") {
      options.screenshot = arguments[++i];
    } else if (value) {
      (argument == L"--language" ? options.language : options.variant) = ToUtf8(arguments[++i]);
    } else if (argument == L"--example") {
      options.example = true;
    } else if (argument.starts_with(L"--")) {
      return std::nullopt;
    } else {
      options.files.push_back(argument);
    }
  }
  return options;
}

/// Waits until everything is on screen, writes the picture and ends.
int TakeScreenshot(MainFrame& frame, const std::wstring& path) {
  constexpr DWORD kSettle = 500;  // milliseconds for the last messages
  ShowWindow(frame.Handle(), SW_SHOW);
  SetForegroundWindow(frame.Handle());
  ULONGLONG quietSince = GetTickCount64();
  while (GetTickCount64() - quietSince < kSettle) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) frame.Handle(message);
    frame.Idle();
    if (frame.IsImporting()) quietSince = GetTickCount64();
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
  }
  RECT area{};
  GetWindowRect(frame.Handle(), &area);
  return SaveScreenshot(area, path) ? 0 : 1;
}

/// Says what is wrong where the program was started: in a terminal, or else in a box.
int Fail(const wchar_t* text) {
  constexpr int kUsageError = 2;
  const HANDLE terminal = GetStdHandle(STD_ERROR_HANDLE);
  if (terminal != nullptr && GetFileType(terminal) != FILE_TYPE_UNKNOWN) {
    const std::string line = ToUtf8(text) + "\n";
    DWORD written = 0;
    WriteFile(terminal, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
  } else {
    MessageBoxW(nullptr, text, L"Workbench", MB_OK | MB_ICONERROR);
  }
  return kUsageError;
}

}  // namespace

int main() {
  int count = 0;
  wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  const std::optional<Options> options = ReadOptions(count, arguments);
  LocalFree(static_cast<HLOCAL>(arguments));
  if (!options.has_value()) {
    return Fail(L"Usage: native_workbench [FILE.inp] [--example] [--screenshot BMP] [--language L] [--variant V]");
  }
  const auto toolkit = NativeToolkit::Make();
  if (toolkit == nullptr) return Fail(L"QD_wrt.dll has another version than this program was built for.");
  NativeMessages messages;
  const auto* variant = std::find_if(kVariants.begin(), kVariants.end(), [&options](const VariantName& known) {
    return options->variant == known.name;
  });
  if (variant == kVariants.end() || !messages.SetLanguage(options->language)) {
    return Fail(L"There is no such language or variant.");
  }
  SetProductVariant(variant->variant);
  MainFrame frame(*toolkit, messages);
  if (options->example && options->files.empty()) frame.OpenExample();
  for (const std::wstring& file : options->files) frame.Import(file);
  return options->screenshot.empty() ? frame.Run() : TakeScreenshot(frame, options->screenshot);
}

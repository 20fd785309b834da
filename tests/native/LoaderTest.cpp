// The module as the system's loader meets it: this program does not link it.

#include <gtest/gtest.h>
#include <windows.h>
// After what it builds on.
#include <tlhelp32.h>

#include <filesystem>
#include <string>

#include "platform/Version.h"
#include "support/ScratchFolder.h"

namespace qd::test {
namespace {

namespace fs = std::filesystem;

fs::path Here() {
  wchar_t path[4096];
  GetModuleFileNameW(nullptr, path, 4096);
  return fs::path(path).parent_path();
}

template <typename Function>
Function Find(HMODULE module, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

int Threads() {
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry{};
  entry.dwSize = sizeof(entry);
  int count = 0;
  for (BOOL more = Thread32First(snapshot, &entry); more != 0; more = Thread32Next(snapshot, &entry)) {
    if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++count;
  }
  CloseHandle(snapshot);
  return count;
}

bool IsLoaded() {
  return GetModuleHandleW(L"QD_wrt.dll") != nullptr;
}

void Pump() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

class Loader : public ::testing::Test {
 protected:
  Loader() {
    WNDCLASSW description{};
    description.lpfnWndProc = DefWindowProcW;
    description.lpszClassName = L"Program";
    RegisterClassW(&description);
    m_frame = CreateWindowW(L"Program", L"Program", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 400, 400, nullptr,
                            nullptr, nullptr, nullptr);
    Pump();
  }
  ~Loader() override {
    DestroyWindow(m_frame);
    Pump();
    EXPECT_FALSE(IsLoaded());
  }

  struct Plugin {
    HMODULE module = LoadLibraryW((Here() / "pane_plugin.dll").c_str());
    HWND (*open)(HWND, const char*) = Find<HWND (*)(HWND, const char*)>(module, "OpenPane");
    void (*edit)() = Find<void (*)()>(module, "EditTitle");
    void (*close)() = Find<void (*)()>(module, "ClosePane");
  };

  HWND m_frame;
};

TEST_F(Loader, LoadsCreatesTearsDownAndUnloadsTwice) {
  for (int time = 0; time < 2; ++time) {
    const Plugin plugin;
    ASSERT_NE(plugin.module, nullptr) << GetLastError();
    EXPECT_TRUE(IsLoaded());
    const HWND tree = plugin.open(m_frame, QD_WRT_VERSION);
    ASSERT_NE(tree, nullptr);
    Pump();
    SendMessageW(tree, WM_MOUSEMOVE, 0, MAKELPARAM(60, 8));
    SendMessageW(tree, WM_KEYDOWN, VK_DOWN, 0);
    Pump();
    plugin.close();
    EXPECT_FALSE(IsWindow(tree));
    EXPECT_EQ(GetWindow(m_frame, GW_CHILD), nullptr);
    FreeLibrary(plugin.module);
    EXPECT_FALSE(IsLoaded());
  }
}

TEST_F(Loader, NothingRunsBeforeTheProgramAsks) {
  const int threads = Threads();
  const HMODULE module = LoadLibraryW((Here() / "QD_wrt.dll").c_str());
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(Threads(), threads);
  WNDCLASSEXW description{};
  description.cbSize = sizeof(description);
  EXPECT_EQ(GetClassInfoExW(module, L"QD_wrt.Surface", &description), 0)
      << "no window class before a toolkit is made";
  const auto version = Find<const char* (*)()>(module, "QD_wrt_GetVersion");
  ASSERT_NE(version, nullptr);
  EXPECT_STREQ(version(), QD_WRT_VERSION);
  FreeLibrary(module);
}

TEST_F(Loader, TheResourceSaysTheSameVersion) {
  const std::wstring path = Here() / "QD_wrt.dll";
  std::string bytes(GetFileVersionInfoSizeW(path.c_str(), nullptr), '\0');
  ASSERT_FALSE(bytes.empty());
  GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(bytes.size()), bytes.data());
  void* value = nullptr;
  UINT size = 0;
  ASSERT_NE(VerQueryValueW(bytes.data(), L"\\StringFileInfo\\040904B0\\FileVersion", &value, &size), 0);
  const std::string version = QD_WRT_VERSION;
  EXPECT_EQ(std::wstring(static_cast<const wchar_t*>(value)), std::wstring(version.begin(), version.end()));
}

TEST_F(Loader, APluginBuiltAgainstAnotherVersionIsRefused) {
  const Plugin plugin;
  for (const char* version : {"0.0.1", "", "9.9.9"}) EXPECT_EQ(plugin.open(m_frame, version), nullptr) << version;
  EXPECT_EQ(plugin.open(m_frame, nullptr), nullptr);
  EXPECT_EQ(GetWindow(m_frame, GW_CHILD), nullptr);
  FreeLibrary(plugin.module);
}

TEST_F(Loader, LoadingTwiceIsOneModuleAndASecondCopyIsRefused) {
  const HMODULE first = LoadLibraryW((Here() / "QD_wrt.dll").c_str());
  EXPECT_EQ(LoadLibraryW((Here() / "QD_wrt.dll").c_str()), first);
  const ScratchFolder folder;
  const fs::path copy = folder / "QD_copy.dll";
  fs::copy_file(Here() / "QD_wrt.dll", copy, fs::copy_options::overwrite_existing);
  EXPECT_EQ(LoadLibraryW(copy.c_str()), nullptr);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_DLL_INIT_FAILED));
  FreeLibrary(first);
  EXPECT_TRUE(IsLoaded());
  FreeLibrary(first);
  EXPECT_FALSE(IsLoaded());
  // The refused copy has left nothing behind, and is welcome now.
  const HMODULE alone = LoadLibraryW(copy.c_str());
  EXPECT_NE(alone, nullptr);
  FreeLibrary(alone);
}

/// The plugin forgets its pane: the windows are the system's then, and do nothing.
TEST_F(Loader, UnloadingWithPanesOpenTakesTheirWindowsAlong) {
  for (const bool editing : {false, true}) {
    const Plugin plugin;
    const HWND tree = plugin.open(m_frame, QD_WRT_VERSION);
    ASSERT_NE(tree, nullptr);
    Pump();
    if (editing) plugin.edit();
    PostMessageW(tree, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(60, 8));
    PostMessageW(tree, WM_APP, 1, 2);
    FreeLibrary(plugin.module);
    EXPECT_FALSE(IsLoaded());
    Pump();
    EXPECT_FALSE(IsWindow(tree));
    EXPECT_EQ(GetWindow(m_frame, GW_CHILD), nullptr);
    SendMessageW(tree, WM_PAINT, 0, 0);
    UpdateWindow(m_frame);
    Pump();
  }
  // And it can be loaded again.
  const Plugin again;
  EXPECT_NE(again.open(m_frame, QD_WRT_VERSION), nullptr);
  again.close();
  FreeLibrary(again.module);
}

/// Runs a program in a folder of its own and returns how it ended, or the error why it could not be started.
DWORD RunIn(const fs::path& folder, const std::wstring& program) {
  STARTUPINFOW start{};
  start.cb = sizeof(start);
  PROCESS_INFORMATION process{};
  std::wstring command = (folder / program).wstring() + L" --no-such-option";
  if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(), &start,
                     &process) == 0) {
    return GetLastError();
  }
  constexpr DWORD kLongest = 20'000;
  EXPECT_EQ(WaitForSingleObject(process.hProcess, kLongest), WAIT_OBJECT_0);
  DWORD result = STILL_ACTIVE;
  GetExitCodeProcess(process.hProcess, &result);
  TerminateProcess(process.hProcess, 1);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return result;
}

TEST_F(Loader, AProgramWithoutTheModuleDoesNotStart) {
  const ScratchFolder folder;
  const fs::path module = folder.Path() / "QD_wrt.dll";
  const auto put = [](const fs::path& from, const fs::path& to) {
    fs::copy_file(from, to, fs::copy_options::overwrite_existing);
  };
  put(Here() / "native_workbench.exe", folder / "native_workbench.exe");
  // With its module it starts, and says itself that it does not know the option.
  put(Here() / "QD_wrt.dll", module);
  constexpr DWORD kWrongUse = 2;
  ASSERT_EQ(RunIn(folder.Path(), L"native_workbench.exe"), kWrongUse);
  // Without it the system ends it before it has begun; in which words, differs from system to system.
  fs::remove(module);
  const DWORD ended = RunIn(folder.Path(), L"native_workbench.exe");
  EXPECT_TRUE(ended == 0xC0000135 || ended == ERROR_MOD_NOT_FOUND || ended == ERROR_INTERNAL_ERROR ||
              (ended & 0xFF) == 0x35)
      << std::hex << ended;
  // Something else under its name is no library.
  put(Here() / "native_workbench.exe", module);
  fs::resize_file(module, 1000);
  const DWORD refused = RunIn(folder.Path(), L"native_workbench.exe");
  EXPECT_TRUE(refused != 0 && refused != kWrongUse) << std::hex << refused;
}

}  // namespace
}  // namespace qd::test

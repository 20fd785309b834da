// What the user does in the native main window.

#include <windows.h>
// After what they build on.
#include <commdlg.h>
#include <shellapi.h>

#include <algorithm>
#include <utility>

#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/store/StoreImport.h"
#include "workbench/native/Commands.h"
#include "workbench/native/ExampleModel.h"
#include "workbench/native/MainFrame.h"
#include "workbench/native/Resource.h"
#include "workbench/native/Texts.h"
#include "workbench/text/Paths.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

void MainFrame::OnCommand(unsigned command) {
  if (RunWindowCommand(*m_session, command)) return;
  switch (command) {
    case kImport:
      return OnImport();
    case kOpenExample:
      return OpenExample();
    case kExit:
      DestroyWindow(m_frame);
      return;
    default:
      break;
  }
  if (const auto variant = VariantOf(command)) {
    m_session->ChangeVariant(*variant);
    MakeMenu();
  }
  const std::vector<std::string> languages = NativeMessages::Languages();
  const std::size_t language = command - kFirstLanguage;
  if (command >= kFirstLanguage && language < languages.size()) SetLanguage(languages[language]);
}

void MainFrame::OpenExample() {
  if (BuildExample(m_doc.GetDatabase(), ReadResource(L"bracket", L"DECK")) == 0) {
    return Say(
        Text("IDS_WB_IMPORT_FAILED", {WithoutMark(Text("IDS_WB_OPEN_EXAMPLE")), Text("IDS_WB_IMPORT_REFUSED")}));
  }
  m_session->Trees().OpenBranches();
}

void MainFrame::OnImport() {
  // Names and patterns stand between zeros.
  CString decks;
  for (const std::string_view ending : InpFormat().Endings())
    decks += (decks.empty() ? L"*" : L";*") + CString(ending.begin(), ending.end());
  CString filter = Text("IDS_WB_IMPORT_FILTER") + L" (" + decks + L")" + CString(1, L'\0') + decks +
                   CString(1, L'\0') + Text("IDS_WB_ALL_FILES") + CString(1, L'\0') + L"*.*" + CString(2, L'\0');
  constexpr std::size_t kLongestPath = 32768;
  CString path(kLongestPath, L'\0');
  OPENFILENAMEW open{};
  open.lStructSize = sizeof(open);
  open.hwndOwner = m_frame;
  open.lpstrFilter = filter.c_str();
  open.lpstrFile = path.data();
  open.nMaxFile = static_cast<DWORD>(path.size());
  open.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (GetOpenFileNameW(&open) != 0) Import(path.substr(0, path.find(L'\0')));
}

void MainFrame::Import(const std::wstring& path) {
  m_waiting.push_back(path);
  if (m_import == nullptr) StartNextImport();
}

void MainFrame::StartNextImport() {
  if (!m_waiting.empty()) {
    const HWND frame = m_frame;
    m_import =
        std::make_unique<InpImport>(m_waiting.front(), [frame] { PostMessageW(frame, kImportMessage, 0, 0); });
    m_waiting.pop_front();
    SendMessageW(m_progress, PBM_SETPOS, 0, 0);
  }
  Layout();
}

void MainFrame::OnImportNews() {
  if (m_import == nullptr) return;
  SendMessageW(m_progress, PBM_SETPOS, static_cast<WPARAM>(m_import->Thousandths()), 0);
  std::optional<InpImport::Result> result = m_import->TakeResult();
  if (!result.has_value()) return;
  const std::unique_ptr<InpImport> done = std::move(m_import);
  Store(*done, *result);
  StartNextImport();
}

void MainFrame::Store(const InpImport& import, InpImport::Result& read) {
  const CString path = FromUtf8(PathText(import.Path()));
  const CString file = FromUtf8(PathText(import.Path().filename()));
  if (read.error.has_value()) {
    const CString reason = Text(read.error->key.c_str(), {FromUtf8(read.error->detail)});
    return Say(Text("IDS_WB_IMPORT_FAILED", {path, reason}));
  }
  if (!read.model.has_value()) return Say(Text("IDS_WB_IMPORT_CANCELLED", {path}));
  for (const ImportNote& note : read.model->notes) {
    Say(path + L": " + Text(note.key.c_str(), {FromUtf8(note.detail)}));
  }
  Database& database = m_doc.GetDatabase();
  const bool first = m_session->IsEmpty();
  const std::size_t sets = read.model->meshSets.size();
  if (StoreImport(database, std::move(*read.model), Text("IDS_WB_TRANS_IMPORT", {file})) == 0) {
    return Say(Text("IDS_WB_IMPORT_FAILED", {path, Text("IDS_WB_IMPORT_REFUSED")}));
  }
  Say(Text("IDS_WB_IMPORTED_MESH", {path, std::to_wstring(sets)}));
  if (!first) return;
  // The first file gives the document its name.
  m_session->Rename(path);
  m_named = true;
  m_session->Trees().OpenBranches();
  RefreshTexts();
}

void MainFrame::OnDrop(HDROP files) {
  const UINT count = DragQueryFileW(files, 0xFFFFFFFF, nullptr, 0);
  for (UINT index = 0; index < count; ++index) {
    const UINT length = DragQueryFileW(files, index, nullptr, 0);
    CString path(length + 1, L'\0');
    DragQueryFileW(files, index, path.data(), length + 1);
    path.resize(length);
    Import(path);
  }
  DragFinish(files);
}

}  // namespace qd::workbench

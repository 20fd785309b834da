#pragma once

#include <windows.h>

#include <deque>
#include <memory>
#include <string>

#include "host/CMainFrame.h"
#include "host/MessageOutput.h"
#include "platform/win32/NativeToolkit.h"
#include "workbench/native/DialogRefuser.h"
#include "workbench/native/InpImport.h"
#include "workbench/native/NativeMessages.h"
#include "workbench/native/PropertyPane.h"
#include "workbench/session/Session.h"

namespace qd::workbench {

/// The native main window: one document, its works trees and the property and message panes.
class MainFrame final : public CMainFrame, private IMessageOutput {
 public:
  MainFrame(NativeToolkit& toolkit, NativeMessages& messages);
  ~MainFrame() override;

  HWND Handle() const { return m_frame; }
  WorkDocument& Document() { return m_doc; }
  CWorksTreeBar& ModelBar() { return m_modelBar; }
  PropertyPane& Properties() { return *m_properties; }
  /// Handles messages until the window is closed; returns the program's result.
  int Run();
  /// Handles one message as the loop does; for programs with a loop of their own.
  void Handle(MSG& message);
  /// To be called when the queue is empty.
  void Idle();

  /// Imports a solver deck, after those that are waiting. What comes of it is said in the message pane.
  void Import(const std::wstring& path);
  bool IsImporting() const { return m_import != nullptr; }
  void OpenExample();
  void SetLanguage(const std::string& code);
  CString MessageText() const;

  CPropertiesWnd* GetPropertiesWnd(CQDDocBase*) override { return m_properties.get(); }
  IWorksTreeManager* GetWorksTreeManager() override {
    return m_session != nullptr ? &m_session->Manager() : nullptr;
  }

 private:
  static constexpr UINT kImportMessage = WM_APP + 2;  // there is news of the import
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l);
  LRESULT OnMessage(UINT message, WPARAM w, LPARAM l);

  void MakePanes();
  void MakeMenu();
  void RefreshTexts();
  void MakeFont();
  void Layout();
  void ShowTree();
  bool DragSplitter(UINT message, LPARAM place);
  int ToPixels(int length) const;

  void OnCommand(unsigned command);
  void OnImport();
  void StartNextImport();
  void OnImportNews();
  void Store(const InpImport& import, InpImport::Result& read);
  void OnDrop(HDROP files);
  void Later(std::function<void()> what);
  void Say(const CString& text);
  void Warn(const CString& text) override { Say(text); }

  NativeToolkit& m_toolkit;
  NativeMessages& m_messages;
  WorkDocument m_doc;
  CWorksTreeBar m_modelBar;
  CWorksTreeBar m_gsetBar;
  DialogRefuser m_dialogs{m_doc};
  HWND m_frame = nullptr;
  HWND m_tabs = nullptr;
  HWND m_messageText = nullptr;
  HWND m_progress = nullptr;
  HWND m_cancel = nullptr;
  HACCEL m_accelerators = nullptr;
  HFONT m_font = nullptr;
  int m_treeWidth = 380;  // in device-independent pixels
  bool m_draggingSplitter = false;
  bool m_named = false;  // by the first file
  std::unique_ptr<PropertyPane> m_properties;
  std::unique_ptr<Session> m_session;
  Subscription m_onRecords;
  Subscription m_onSelection;
  Subscription m_onDisplay;
  std::unique_ptr<InpImport> m_import;
  std::deque<std::wstring> m_waiting;  // files to import after it
  std::vector<std::function<void()>> m_later;
};

}  // namespace qd::workbench

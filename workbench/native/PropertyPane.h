#pragma once

#include <windows.h>
// After what it builds on.
#include <commctrl.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "host/CMainFrame.h"

namespace qd::workbench {

/// The property pane: a list of names and values, which are edited in place.
class PropertyPane final : public CPropertiesWnd {
 public:
  explicit PropertyPane(HWND parent);
  ~PropertyPane();
  PropertyPane(const PropertyPane&) = delete;
  PropertyPane& operator=(const PropertyPane&) = delete;

  void Place(const RECT& area, HFONT font);
  /// What the frame is told by the list; the answer when it was for this pane.
  std::optional<LRESULT> OnNotify(NMHDR& notice);
  /// What the frame is told by a button; true when it was this pane's.
  bool OnCommand(HWND sender);
  /// Texts in the language of now.
  void Refresh() override;
  void SetPropertySet(std::unique_ptr<IPropertySet> page) override;
  IPropertySet* GetPropertySet() const override { return m_page.get(); }
  /// Makes the page that is shown while the works trees give none, null for none; asked each time.
  void SetOwnPage(std::function<std::unique_ptr<IPropertySet>()> make) { m_makeOwnPage = std::move(make); }
  /// Lays the rows out anew if that is due. The frame calls it when its queue is empty: pages replace themselves
  /// while they are being worked with.
  void ShowIfDue();

 private:
  static LRESULT CALLBACK EditorProcedure(HWND editor, UINT message, WPARAM w, LPARAM l, UINT_PTR, DWORD_PTR self);

  LRESULT Draw(NMLVCUSTOMDRAW& draw) const;
  void ShowRows();
  void Open(int index);
  void OpenEditor(int index, CBCGPProp& row);
  void ChooseColour(CBCGPProp& row);
  void CloseEditor(bool keep);
  void Tell(CBCGPProp& row);

  HWND m_list;
  HWND m_apply;
  HWND m_editor = nullptr;
  CBCGPProp* m_edited = nullptr;  // the row that the editor is over
  IPropertySet* Page() const { return m_page != nullptr ? m_page.get() : m_ownPage.get(); }

  std::unique_ptr<IPropertySet> m_page;
  std::unique_ptr<IPropertySet> m_ownPage;  // on show while there is no other
  std::function<std::unique_ptr<IPropertySet>()> m_makeOwnPage;
  std::vector<std::unique_ptr<IPropertySet>> m_retired;
  std::vector<CBCGPProp*> m_rows;  // as they stand in the list
  bool m_due = true;
};

}  // namespace qd::workbench

#include "host/ShowPage.h"

#include <utility>

#include "host/CMainFrame.h"

namespace qd {

void ShowPropertyPage(CQDDocBase* doc, std::unique_ptr<IPropertySet> page) {
  CMainFrame* frame = CMainFrame::Get();
  CPropertiesWnd* window = frame != nullptr ? frame->GetPropertiesWnd(doc) : nullptr;
  if (window == nullptr) return;
  window->SetPropertySet(std::move(page));
  window->Refresh();
}

}  // namespace qd

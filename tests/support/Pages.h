#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "host/CMainFrame.h"
#include "host/IPropertySet.h"
#include "support/RecordingHost.h"
#include "workbench/text/Utf8.h"

namespace qd::test {

/// A page as the user has it before him, a line a row, indented below its title: name, value or choices with
/// brackets round the chosen one, what can be done with it, its description. Keys stand without their first words.
inline std::string PageText(const IPropertySet& page) {
  const auto word = [](const CString& text) {
    std::string bytes = workbench::ToUtf8(text);
    for (const std::string prefix : {"IDS_QD_WRT_", "IDS_"}) {
      if (bytes.starts_with(prefix)) bytes.erase(0, prefix.size());
    }
    return bytes;
  };
  std::string text;
  for (const auto& row : page.GetRows()) {
    for (const CBCGPProp* above = row->parent; above != nullptr; above = above->parent) text += "  ";
    text += word(row->name);
    if (row->kind == CBCGPProp::Kind::Text) text += ": " + word(row->value);
    if (row->kind == CBCGPProp::Kind::Colour) text += ": " + HostLog::Colour(row->colour);
    for (std::size_t i = 0; i < row->options.size(); ++i) {
      const bool chosen = row->value == row->options[i];
      text += (i == 0 ? ": " : " | ") + (chosen ? "[" + word(row->options[i]) + "]" : word(row->options[i]));
    }
    if (row->collapsed) text += " (closed)";
    if (row->readOnly) text += " (fixed)";
    if (row->calculate) text += " (click)";
    if (!row->description.empty()) text += " -- " + word(row->description);
    text += "\n";
  }
  return text + (page.HasApplyButton() ? "with a button\n" : "");
}

/// A test of pages over one of the models: what is shown of the selected rows, and the user who changes it.
template <typename Model>
class PageOf : public Model {
 public:
  /// The page of a row, made anew.
  IPropertySet& PageFor(const CString& title) {
    if (this->Node(title) == nullptr) throw std::logic_error("no such row");
    this->Tree().SelectCTItem(this->Node(title));
    return Page();
  }
  IPropertySet& Page() {
    IPropertySet* page = this->m_properties.GetPropertySet();
    if (page == nullptr) throw std::logic_error("no page");
    page->ShowProperty();
    return *page;
  }
  std::string Text(const CString& title) { return PageText(PageFor(title)); }
  /// The page as it stands now, with what was computed.
  std::string Now() { return PageText(*this->m_properties.GetPropertySet()); }
  static CBCGPProp& RowOf(const IPropertySet& page, const CString& name) {
    for (const auto& row : page.GetRows()) {
      if (row->name == name && row->kind != CBCGPProp::Kind::Title) return *row;
    }
    throw std::logic_error("no such row");
  }
  /// The user sets a row of the page that stands open.
  void Set(const CString& name, const CString& value, COLORREF colour = 0) {
    IPropertySet& page = Page();
    CBCGPProp& row = RowOf(page, name);
    (row.kind == CBCGPProp::Kind::Colour ? void(row.colour = colour) : void(row.value = value));
    page.OnPropertyChanged(&row, row.data);
  }
};

}  // namespace qd::test

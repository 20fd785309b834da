#include "host/IPropertySet.h"

#include <utility>

#include "host/CMainFrame.h"

namespace qd {

IPropertySet::~IPropertySet() = default;

void IPropertySet::OnUnitChanged() {
  CMainFrame* frame = CMainFrame::Get();
  CPropertiesWnd* window = frame != nullptr ? frame->GetPropertiesWnd(m_doc) : nullptr;
  if (window != nullptr && window->GetPropertySet() == this) window->Refresh();
}

CBCGPProp* IPropertySet::Add(CBCGPProp row) {
  return m_rows.emplace_back(std::make_unique<CBCGPProp>(std::move(row))).get();
}

CBCGPProp* IPropertySet::AddTitle(CBCGPProp* parent, const CString& text) {
  CBCGPProp row;
  row.parent = parent;
  row.kind = CBCGPProp::Kind::Title;
  row.name = text;
  return Add(std::move(row));
}

CBCGPProp* IPropertySet::AddGeneralPropertyWithOption(CBCGPProp* parent, const CString& name,
                                                      const std::vector<CString>& options, int current,
                                                      const CString& description, std::uint64_t data, int) {
  CBCGPProp row;
  row.parent = parent;
  row.kind = CBCGPProp::Kind::Options;
  row.name = name;
  row.options = options;
  if (current >= 0 && static_cast<std::size_t>(current) < options.size()) {
    row.value = options[static_cast<std::size_t>(current)];
  }
  row.description = description;
  row.data = data;
  return Add(std::move(row));
}

CBCGPProp* IPropertySet::AddText(CBCGPProp* parent, const CString& name, const CString& value, std::uint64_t data,
                                 bool readOnly, const CString& description) {
  CBCGPProp row;
  row.parent = parent;
  row.name = name;
  row.value = value;
  row.data = data;
  row.readOnly = readOnly;
  row.description = description;
  return Add(std::move(row));
}

CBCGPProp* IPropertySet::AddColour(CBCGPProp* parent, const CString& name, COLORREF colour, std::uint64_t data,
                                   const CString& description) {
  CBCGPProp row;
  row.parent = parent;
  row.kind = CBCGPProp::Kind::Colour;
  row.name = name;
  row.colour = colour;
  row.description = description;
  row.data = data;
  return Add(std::move(row));
}

void IPropertySet::ExtractString(const CBCGPProp* row, CString& text) {
  text = row != nullptr ? row->value : CString();
}

void IPropertySet::AdjustLayout() {
  if (m_onLayout) m_onLayout();
}

}  // namespace qd

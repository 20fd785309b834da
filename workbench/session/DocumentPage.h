#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "host/IPropertySet.h"
#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// How often each keyword stands in the text of a deck.
std::map<std::string, std::size_t> CountKeywords(std::string_view deck);

/// The property page of the document itself: what is kept with it beside its records. Shown while nothing is
/// selected.
class DocumentPage final : public IPropertySet {
 public:
  /// Null for a document of which there is nothing to show.
  static std::unique_ptr<DocumentPage> For(WorkDocument& doc);

  void ShowProperty() override;
  /// The row by which a deck is given up.
  void OnPropertyChanged(CBCGPProp* row, std::uint64_t data) override;

 private:
  explicit DocumentPage(WorkDocument& doc);

  WorkDocument& m_document;
};

}  // namespace qd::workbench

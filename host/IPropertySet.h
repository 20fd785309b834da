#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "host/CQDDocBase.h"
#include "host/CQDUnitCtrl.h"
#include "platform/Export.h"

namespace qd {

/// One row of a property page.
struct CBCGPProp {
  enum class Kind { Title, Text, Options, Colour };
  CBCGPProp* parent = nullptr;
  Kind kind = Kind::Text;
  CString name;
  CString value;                 ///< text, or the text of the chosen option
  std::vector<CString> options;  ///< of a row with options
  COLORREF colour = 0;           ///< of a row with a colour
  CString description;
  std::uint64_t data = 0;  ///< the page's own mark
  bool readOnly = false;
  bool calculate = false;  ///< a click on the row asks the page for its value
  bool collapsed = false;  ///< a title whose rows are not shown until it is opened
};

/// A page of the property grid: rows that the page makes and the grid shows.
class QD_EXPORT IPropertySet : public IUnitListener {
 public:
  IPropertySet(CQDDocBase* doc, iterator itr, std::uint16_t dataType)
      : m_doc(doc), m_itr(itr), m_dataType(dataType) {}
  CQDDocBase* GetUnitListenerDoc() const override { return m_doc; }
  /// Has the window make the rows anew, if the page is on show.
  void OnUnitChanged() override;
  virtual ~IPropertySet();

  /// Makes the rows; called when the page is activated and when its texts have changed.
  virtual void ShowProperty() = 0;
  virtual void ApplyProperty() {}
  /// Called with the row that the user has changed and its data.
  virtual void OnPropertyChanged(CBCGPProp* row, std::uint64_t data) = 0;
  /// Called when the user clicks a row that is to be calculated.
  virtual void CalProp(CBCGPProp*) {}
  /// Called when the user chooses one of a row's options, before the row counts as changed.
  virtual void OnSelChangeComboBox(CBCGPProp*) {}

  const std::vector<std::unique_ptr<CBCGPProp>>& GetRows() const { return m_rows; }
  CQDDocBase* GetDocument() const { return m_doc; }
  iterator GetIterator() const { return m_itr; }
  std::uint16_t GetDataType() const { return m_dataType; }
  bool HasApplyButton() const { return m_applyButton; }
  /// Called when the rows were laid out anew. One listener.
  void SetOnLayout(std::function<void()> onLayout) { m_onLayout = std::move(onLayout); }

 protected:
  void RemoveAllProperties() { m_rows.clear(); }
  /// The rows belong to the page until RemoveAllProperties.
  CBCGPProp* AddTitle(CBCGPProp* parent, const CString& text);
  CBCGPProp* AddGeneralPropertyWithOption(CBCGPProp* parent, const CString& name,
                                          const std::vector<CString>& options, int current,
                                          const CString& description, std::uint64_t data, int flag);
  CBCGPProp* AddText(CBCGPProp* parent, const CString& name, const CString& value, std::uint64_t data,
                     bool readOnly, const CString& description = {});
  CBCGPProp* AddColour(CBCGPProp* parent, const CString& name, COLORREF colour, std::uint64_t data,
                       const CString& description = {});
  static void ExtractString(const CBCGPProp* row, CString& text);
  void AdjustLayout();
  void SetInfo(int) {}
  void ShowApplyBtn(int show) { m_applyButton = show != 0; }

 private:
  CBCGPProp* Add(CBCGPProp row);

  CQDDocBase* m_doc;
  iterator m_itr;
  std::uint16_t m_dataType;
  std::vector<std::unique_ptr<CBCGPProp>> m_rows;
  std::function<void()> m_onLayout;
  bool m_applyButton = true;
};

}  // namespace qd

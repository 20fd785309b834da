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
  /// What the row shows, and how it is edited.
  enum class Kind { Title, Text, Options, Colour };
  CBCGPProp* parent = nullptr;   ///< the title that it stands below, null at the top
  Kind kind = Kind::Text;        ///< see Kind
  CString name;                  ///< what stands before the value
  CString value;                 ///< text, or the text of the chosen option
  std::vector<CString> options;  ///< of a row with options
  COLORREF colour = 0;           ///< of a row with a colour
  CString description;           ///< shown while the row is chosen
  std::uint64_t data = 0;        ///< the page's own mark
  bool readOnly = false;         ///< whether the user can change it
  bool calculate = false;        ///< a click on the row asks the page for its value
  bool collapsed = false;        ///< a title whose rows are not shown until it is opened
};

/// A page of the property grid: rows that the page makes and the grid shows.
class QD_EXPORT IPropertySet : public IUnitListener {
 public:
  /// A page on a record (0 for none) of a type. The document is not owned.
  IPropertySet(CQDDocBase* doc, iterator itr, std::uint16_t dataType)
      : m_doc(doc), m_itr(itr), m_dataType(dataType) {}
  CQDDocBase* GetUnitListenerDoc() const override { return m_doc; }
  /// Has the window make the rows anew, if the page is on show.
  void OnUnitChanged() override;
  virtual ~IPropertySet();

  /// Makes the rows; called when the page is activated and when its texts have changed.
  virtual void ShowProperty() = 0;
  virtual void ApplyProperty() {}  ///< called when the user presses the button that keeps what was changed
  /// Called with the row that the user has changed and its data.
  virtual void OnPropertyChanged(CBCGPProp* row, std::uint64_t data) = 0;
  /// Called when the user clicks a row that is to be calculated.
  virtual void CalProp(CBCGPProp*) {}
  /// Called when the user chooses one of a row's options, before the row counts as changed.
  virtual void OnSelChangeComboBox(CBCGPProp*) {}

  /// The rows, each behind the title that it stands below.
  const std::vector<std::unique_ptr<CBCGPProp>>& GetRows() const { return m_rows; }
  CQDDocBase* GetDocument() const { return m_doc; }         ///< null for a page on nothing
  iterator GetIterator() const { return m_itr; }            ///< 0 for none
  std::uint16_t GetDataType() const { return m_dataType; }  ///< as DataType has them
  /// Whether there is a button that keeps what was changed; else rows are kept as they change.
  bool HasApplyButton() const { return m_applyButton; }
  /// Called when the rows were laid out anew. One listener.
  void SetOnLayout(std::function<void()> onLayout) { m_onLayout = std::move(onLayout); }

 protected:
  void RemoveAllProperties() { m_rows.clear(); }  ///< takes all rows away
  /// The rows belong to the page until RemoveAllProperties.
  CBCGPProp* AddTitle(CBCGPProp* parent, const CString& text);
  /// @{
  /// Adds a row below a title (null: at the top) and returns it, as AddTitle does. `current` is the place of the
  /// chosen option; `flag` is 0.
  CBCGPProp* AddGeneralPropertyWithOption(CBCGPProp* parent, const CString& name,
                                          const std::vector<CString>& options, int current,
                                          const CString& description, std::uint64_t data, int flag);
  CBCGPProp* AddText(CBCGPProp* parent, const CString& name, const CString& value, std::uint64_t data,
                     bool readOnly, const CString& description = {});
  CBCGPProp* AddColour(CBCGPProp* parent, const CString& name, COLORREF colour, std::uint64_t data,
                       const CString& description = {});
  /// @}
  static void ExtractString(const CBCGPProp* row, CString& text);  ///< reads the row's value; null reads nothing
  void AdjustLayout();  ///< tells who shows the page that its rows are complete
  void SetInfo(int) {}  ///< does nothing; pages of hosts call it
  void ShowApplyBtn(int show) { m_applyButton = show != 0; }  ///< 0 for a page whose rows are kept as they change

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

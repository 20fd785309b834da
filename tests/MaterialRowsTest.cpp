// Rows of materials: what their menus ask for and do.

#include <gtest/gtest.h>

#include "support/EnglishTexts.h"
#include "support/Geometry.h"
#include "workbench/session/SelectionPage.h"
#include "workbench/tree/MaterialNodes.h"

namespace qd::test {
namespace {

using namespace workbench;

class MaterialRows : public GeometryTest {
 protected:
  MaterialRows() {
    AddMaterial(L"Steel");
    AddMaterial(L"Brass");
    AddMaterial(L"Tin");
    Open();
    Heard();
  }
};

TEST_F(MaterialRows, TheDialogOpensForTheMaterialOfTheRow) {
  Select({L"Brass"});
  Command(kCommandEditMaterial);
  EXPECT_THAT(Heard(), ::testing::HasSubstr("app.OpenDialog(0, CLbcMaterialMainDlg, [Brass])"));
  Select({L"IDS_WB_MATERIALS"});
  Command(kCommandNewMaterial);
  EXPECT_THAT(Heard(), ::testing::HasSubstr("app.OpenDialog(0, CLbcMaterialMainDlg, [])"));
}

TEST_F(MaterialRows, AllThatAreSelectedAreDeletedAsOneAct) {
  Select({L"Steel", L"Tin"});
  ExpectOneAct(L"", [this] {
    Command(kCommandDeleteMaterial);
    return Data().GetMaterialPool().Count() == 1 ? 1 : 0;
  });
  EXPECT_NE(Row(L"Brass"), HTREEITEM{});
}

/// The page of what is selected: values with units, and one act for all of them.
TEST_F(MaterialRows, AreChangedOnThePageWithUnitsAndAllAtOnce) {
  const auto row = [](IPropertySet& page, const CString& name) {
    page.ShowProperty();
    for (const auto& each : page.GetRows()) {
      if (each->name == name) return each.get();
    }
    return static_cast<CBCGPProp*>(nullptr);
  };
  const std::vector<iterator> all = Data().GetMaterialPool().GetItrList();
  m_doc.Select({{all[0], all[2]}});
  const auto page = workbench::SelectionPage::For(m_doc);
  const auto type = [&](const CString& name, const CString& text) {
    CBCGPProp* each = row(*page, name);
    each->value = text;
    page->OnPropertyChanged(each, each->data);
    return row(*page, name)->value;
  };
  ExpectOneAct(L"", [&] { return type(L"IDS_WB_MATERIAL_YOUNG", L"2*100 GPa") == L"200000 MPa" ? 1 : 0; });
  const auto before = Data().Snapshot();
  EXPECT_EQ(type(L"IDS_WB_MATERIAL_POISSON", L"0.7").find(L"0.7"), CString::npos);
  EXPECT_EQ(type(L"IDS_WB_MATERIAL_DENSITY", L"heavy").find(L"heavy"), CString::npos);
  EXPECT_EQ(Data().Snapshot(), before) << "what cannot be is told, and nothing is stored";
  EXPECT_TRUE(row(*page, L"IDS_QD_WRT_PROP_NAME")->readOnly) << "two cannot get one name";
  EXPECT_EQ(row(*page, L"IDS_QD_WRT_PROP_NAME")->value, L"IDS_WB_MIXED");
}

/// Parts get the material that was meant, however many have its name.
TEST_F(MaterialRows, OfTwoWithOneNameTheChosenOneIsGivenOnThePage) {
  const std::vector<iterator> parts = AddParts({L"a", L"b"});
  const iterator second = AddMaterial(L"Steel");
  m_doc.Select({{parts[0], parts[1]}});
  const auto page = workbench::SelectionPage::For(m_doc);
  const EnglishTexts english;  // of the page only: the rows of the tree are there already
  m_checked = false;
  page->ShowProperty();
  CBCGPProp* row = nullptr;
  for (const auto& each : page->GetRows()) {
    if (each->name == CMSGFunction::GetValue("IDS_QD_WRT_PROP_MATERIAL")) row = each.get();
  }
  ASSERT_NE(row, nullptr);
  const std::vector<iterator> all = Data().GetMaterialPool().GetItrList();
  ASSERT_GT(row->options.size(), all.size());
  row->value = row->options[all.size()];  // behind none
  page->OnPropertyChanged(row, row->data);
  for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(Data().GetGeomPool().GetAtNU(parts[i])->material, second);
}

}  // namespace
}  // namespace qd::test

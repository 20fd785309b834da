// The property page of mesh sets: what it shows, what it computes, what it writes.

#include "qd_wrt/properties/CPropertySetMesh.h"
#include "support/Heard.h"
#include "support/Mesh.h"

namespace qd::test {
namespace {

using namespace workbench;

/// Sets A (with B and, below that, C) and D; the default set is E.
class MeshPage : public MeshTest {
 protected:
  MeshPage() {
    const iterator a = AddMset(L"A");
    b = AddMset(L"B", a);
    AddMset(L"C", b);
    d = AddMset(L"D");
    iterator e = 0;
    Act([&] { e = Pool().NeedDefaultMset(); });
    ChangeMset(e, [](tagTMset& set) { set.name = L"E"; });
    Heard();
  }
  iterator b, d;

  std::string Rows() {
    m_properties.GetPropertySet()->ShowProperty();
    std::string text;
    for (const auto& row : m_properties.GetPropertySet()->GetRows()) {
      std::string name = ToUtf8(row->name);
      const std::string prefix = "IDS_QD_WRT_";
      if (name.starts_with(prefix)) name.erase(0, prefix.size());
      text += name + (row->kind == CBCGPProp::Kind::Title ? "" : "=" + ToUtf8(row->value)) +
              (row->readOnly ? "" : "*") + "|";
    }
    return text;
  }
  CBCGPProp& RowOf(const CString& name) {
    for (const auto& row : m_properties.GetPropertySet()->GetRows()) {
      if (row->name == name && row->kind != CBCGPProp::Kind::Title) return *row;
    }
    throw std::logic_error("no such row");
  }
};
const std::string kMassRows = "MESH_MASS*|MESH_MASS=|MASSX=|MASSY=|MASSZ=|";

TEST_F(MeshPage, ShowsASetOrTheSumsOfSeveral) {
  Click(kMeshRoot);
  Tree().SelectCTItem(Node(L"D"));
  EXPECT_EQ(Rows(),
            "IDS_DB_DATA_NAME_MESH*|ID=4|NAME=D*|Color=*|MESH_ELEM_COUNT=2|MESH_NODE_COUNT=4|" + kMassRows);
  Tree().SelectCTItem(Node(L"E"));
  EXPECT_NE(Rows().find("NAME=E|"), std::string::npos);
  Select({L"A", L"B", L"D"});
  Tree().OnSelchangAction();
  EXPECT_EQ(Rows(), "IDS_DB_DATA_NAME_MESH*|COUNT=3|MESH_ELEM_COUNT=6|MESH_NODE_COUNT=12|");
}

TEST_F(MeshPage, NamesPropertyMaterialAndMass) {
  Act([&] {
    tagTMaterial steel;
    steel.name = L"Steel";
    steel.density = 3;
    tagTProperty plate;
    plate.name = L"Plate";
    plate.kind = tagTProperty::Kind::Shell;
    plate.size = 2;
    plate.material = Data().GetMaterialPool().Add(steel);
    const iterator property = Data().GetPropertyPool().Add(plate);
    tagTMset record = Mset(d);
    record.property = property;
    ASSERT_EQ(Pool().Modify(d, record), 1);
  });
  Tree().SelectCTItem(Node(L"D"));
  EXPECT_NE(Rows().find("MESH_PROPERTY=1 : Plate|MESH_MATERIAL=1 : Steel|"), std::string::npos);
  IPropertySet& page = *m_properties.GetPropertySet();
  page.CalProp(&RowOf(L"IDS_QD_WRT_NAME"));
  EXPECT_EQ(RowOf(L"IDS_QD_WRT_MESH_MASS").value, L"");
  page.CalProp(&RowOf(L"IDS_QD_WRT_MASSY"));
  // Two triangles of one half each, two thick, three dense.
  EXPECT_EQ(RowOf(L"IDS_QD_WRT_MESH_MASS").value, L"    6 t");
  EXPECT_EQ(RowOf(L"IDS_QD_WRT_MASSX").value, L"  0.5 mm");
  EXPECT_EQ(RowOf(L"IDS_QD_WRT_MASSZ").value, L"    0 mm");
}

TEST_F(MeshPage, AStoppedComputationLeavesTheMassEmpty) {
  m_host.StopLongWork();
  ChangeMset(d, [](tagTMset& set) { PutMesh(set, Strip(70'000, 9)); });
  Tree().SelectCTItem(Node(L"D"));
  m_properties.GetPropertySet()->ShowProperty();
  m_properties.GetPropertySet()->CalProp(&RowOf(L"IDS_QD_WRT_MASSX"));
  EXPECT_EQ(RowOf(L"IDS_QD_WRT_MESH_MASS").value, L"");
}

TEST_F(MeshPage, WritesNameAndColourInOneAct) {
  Tree().SelectCTItem(Node(L"B"));
  const auto apply = [this](const CString& name, COLORREF colour) {
    m_properties.GetPropertySet()->ShowProperty();
    RowOf(L"IDS_QD_WRT_NAME").value = name;
    RowOf(L"IDS_QD_WRT_Color").colour = colour;
    const auto before = Data().Snapshot();
    m_properties.GetPropertySet()->ApplyProperty();
    return Data().Snapshot() != before;
  };
  const COLORREF colour = Mset(b).colour;
  EXPECT_FALSE(apply(L"B", colour));
  EXPECT_FALSE(apply(L"D", colour));
  EXPECT_FALSE(apply(L"", colour));
  EXPECT_TRUE(apply(L"D", Rgb(7, 7, 7)));  // the name is ignored, the colour is not
  EXPECT_EQ(Mset(b).name, L"B");
  EXPECT_EQ(Mset(b).colour, Rgb(7, 7, 7));
  EXPECT_TRUE(apply(CString(80, L'q'), Rgb(8, 8, 8)));
  EXPECT_EQ(Mset(b).name, CString(63, L'q'));
  Data().Undo();
  EXPECT_EQ(Mset(b).colour, Rgb(7, 7, 7));
  Data().SetWriteGuard([](iterator) { return false; });
  EXPECT_FALSE(apply(L"other", 1));
  Data().SetWriteGuard(nullptr);
  CPropertySetMesh page(&m_doc, b, kDataMset);
  page.ShowProperty();
  ASSERT_EQ(Pool().TR_Del({b}), 1);
  const auto gone = Data().Snapshot();
  page.ApplyProperty();
  EXPECT_EQ(Data().Snapshot(), gone);
  page.ShowProperty();
  EXPECT_TRUE(page.GetRows().empty());
}

struct GenerationCase {
  int kind;
  int method;
  const char* rows;
};
class MeshGenerationPage : public MeshPage, public ::testing::WithParamInterface<GenerationCase> {};
TEST_P(MeshGenerationPage, ShowsTheRecordedParametersInTheOrderOfThePage) {
  Act([&] {
    tagTMGInfo generation;
    generation.kind = GetParam().kind;
    generation.method = GetParam().method;
    generation.options = {{"IDS_QDMESH_MERGE_TOLERANCE", 0.25},
                          {"IDS_HWB_MESH_HIGH_ORDER", true},
                          {"IDS_HWB_MESH_ELEM_SIZE", 1},
                          {"IDS_HWB_MESH_3D_MESHER", 0},
                          {"IDS_QD_MESH_LAYERED_NUM_LAYERS", 3},
                          {"IDS_QDMESH_INNER_ELEM_TYPE", 1},
                          {"IDS_SOMETHING_ELSE", 1.0}};
    tagTMset record = Mset(d);
    record.mgInfo = MGInfoPool::KeyOf(Data().GetMGInfoPool().Add(generation));
    ASSERT_EQ(Pool().Modify(d, record), 1);
  });
  Tree().SelectCTItem(Node(L"D"));
  const std::string rows = Rows();
  const std::size_t from = rows.find("MASSZ=|") + 7;
  EXPECT_EQ(rows.substr(from), GetParam().rows);
}
INSTANTIATE_TEST_SUITE_P(
    Methods, MeshGenerationPage,
    ::testing::Values(
        GenerationCase{0, 0,
                       "IDS_QD_MESH_GEN_INFO*|IDS_QDMESH_METHOD=IDS_QDMESH_TAB_AUTO_SOLID|IDS_HWB_MESH_3D_MESHER="
                       "IDS_HWB_MESH_3D_MESHER1|IDS_HWB_MESH_ELEM_SIZE=IDS_HWB_MESH_ELEM_SIZE_USER|"
                       "IDS_QDMESH_MERGE_TOLERANCE=0.25|IDS_HWB_MESH_HIGH_ORDER=IDS_QD_WRT_YES|"},
        GenerationCase{2, 1,
                       "IDS_QD_MESH_GEN_INFO*|IDS_QDMESH_METHOD=IDS_QDMESH_TAB_MAP_SOLID|IDS_HWB_MESH_ELEM_SIZE="
                       "IDS_HWB_MESH_ELEM_SIZE_USER|IDS_HWB_MESH_HIGH_ORDER=IDS_QD_WRT_YES|"
                       "IDS_QDMESH_MERGE_TOLERANCE=0.25|"},
        GenerationCase{0, 2,
                       "IDS_QD_MESH_GEN_INFO*|IDS_QDMESH_METHOD=IDS_QDMESH_TAB_GENERATE_2D_TO_3D|"
                       "IDS_QDMESH_MERGE_TOLERANCE=0.25|IDS_HWB_MESH_HIGH_ORDER=IDS_QD_WRT_YES|"},
        GenerationCase{0, 3,
                       "IDS_QD_MESH_GEN_INFO*|IDS_QDMESH_METHOD=IDS_QDMESH_TAB_AUTO_SOLID_LAYERED|"
                       "IDS_QD_MESH_LAYERED_NUM_LAYERS=3|IDS_QDMESH_INNER_ELEM_TYPE=IDS_QDMESH_INNER_HEXA|"
                       "IDS_HWB_MESH_HIGH_ORDER=IDS_QD_WRT_YES|IDS_QDMESH_MERGE_TOLERANCE=0.25|"},
        GenerationCase{0, 9, "IDS_QD_MESH_GEN_INFO*|IDS_QDMESH_METHOD=|"}, GenerationCase{1, 0, ""},
        GenerationCase{3, 0, ""}));

}  // namespace
}  // namespace qd::test

// The property page of mesh sets: what it shows, what it computes, what it writes.

#include "host/CQDUnitCtrl.h"
#include "qd_wrt/properties/CPropertySetMesh.h"
#include "support/Heard.h"
#include "support/Mesh.h"
#include "support/Pages.h"

namespace qd::test {
namespace {

using namespace heard;

const CString kName = L"IDS_QD_WRT_NAME";
const CString kColour = L"IDS_QD_WRT_Color";

/// Sets A (with B and, below that, C) and D; the default set is E.
class MeshPage : public Standalone<PageOf<MeshTest>> {
 public:
  void Make(int) {
    const iterator a = AddMset(L"A");
    b = AddMset(L"B", a);
    AddMset(L"C", b);
    d = AddMset(L"D");
    Act([&] { Pool().NeedDefaultMset(); });
    ChangeMset(Pool().GetDefaultMset(), [](tagTMset& set) { set.name = L"E"; });
    Heard();
  }
  /// The button of the page.
  void Apply(const CString& row, const CString& name, COLORREF colour) {
    PageFor(row);
    Set(kName, name);
    RowOf(*m_properties.GetPropertySet(), kName).value = name;
    RowOf(*m_properties.GetPropertySet(), kColour).colour = colour;
    Heard();
    m_properties.GetPropertySet()->ApplyProperty();
  }
  void ExpectOthersAsEver(Standing standing, bool changed);

  iterator b = 0;
  iterator d = 0;
};

// ---- what it shows --------------------------------------------------------------------------------------

std::string Counts(int elements, int nodes) {
  return "  MESH_ELEM_COUNT: " + std::to_string(elements) +
         " (fixed) -- MESH_ELEM_COUNT_DESC\n  MESH_NODE_COUNT: " + std::to_string(nodes) +
         " (fixed) -- MESH_NODE_COUNT_DESC\n";
}
std::string Identity(const std::string& number, const std::string& name, const std::string& colour = "#010203") {
  return "DB_DATA_NAME_MESH\n  ID: " + number + " (fixed) -- ID_DESC\n  NAME: " + name +
         " -- NAME_DESC\n  Color: " + colour + " -- COLOR_DESC\n";
}
std::string Mass(const std::string& mass = "", const std::string& x = "", const std::string& y = "",
                 const std::string& z = "") {
  std::string text = "MESH_MASS (closed)\n";
  for (const auto& [row, value] : {std::pair("MESH_MASS", mass), {"MASSX", x}, {"MASSY", y}, {"MASSZ", z}}) {
    text += std::string("  ") + row + ": " + value + " (fixed) (click) -- " + row + "_DESC\n";
  }
  return text;
}
const std::string kButton = "with a button\n";

TEST_F(MeshPage, ShowsASetOrTheSumsOfSeveral) {
  Make(0);
  EXPECT_EQ(Text(L"D"), Identity("4", "D") + Counts(2, 4) + Mass() + kButton);
  ChangeMset(Node(L"A")->GetIterator(), [](tagTMset& set) { workbench::PutMesh(set, nullptr); });
  EXPECT_EQ(Text(L"A"), Identity("1", "A") + Counts(4, 8) + Mass() + kButton) << "with what is nested in it";
  EXPECT_EQ(Text(L"E"), Identity("5", "E (fixed)", "#5ea7eb") + Counts(0, 0) + Mass() + kButton);
  ChangeMset(d, [](tagTMset& set) { workbench::PutMesh(set, Strip(3, 9)); });
  Select({L"A", L"B", L"D"});
  Tree().OnSelchangAction();
  const std::string sums = "DB_DATA_NAME_MESH\n  COUNT: 3 (fixed) -- COUNT_DESC\n";
  EXPECT_EQ(PageText(Page()), sums + Counts(7, 13)) << "each set once";
  EXPECT_FALSE(m_toolkit.IsWaitCursor());
  Heard();
  m_properties.GetPropertySet()->ApplyProperty();
  EXPECT_EQ(Heard(), "");
}

TEST_F(MeshPage, NamesPropertyMaterialAndMass) {
  Make(0);
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
    record = Mset(b);
    plate.material = 0;
    record.property = Data().GetPropertyPool().Add(plate);
    ASSERT_EQ(Pool().Modify(b, record), 1);
  });
  const std::string property = "  MESH_PROPERTY: 2 : Plate (fixed) -- MESH_PROPERTY_DESC\n";
  EXPECT_EQ(Text(L"B"), Identity("2", "B") + Counts(4, 8) + property + Mass() + kButton);
  const std::string rows =
      Identity("4", "D") + Counts(2, 4) +
      "  MESH_PROPERTY: 1 : Plate (fixed) -- MESH_PROPERTY_DESC\n  MESH_MATERIAL: 1 : Steel (fixed) -- "
      "MESH_MATERIAL_DESC\n";
  // Two triangles of one half each, two thick, three dense.
  const std::string mass = Mass("    6 t", "  0.5 mm", "  0.5 mm", "    0 mm");
  const std::string before = rows + Mass() + kButton;
  const std::string after = rows + mass + kButton;
  for (const CString& row : {CString(L"IDS_QD_WRT_MESH_MASS"), CString(L"IDS_QD_WRT_MASSX"),
                             CString(L"IDS_QD_WRT_MASSY"), CString(L"IDS_QD_WRT_MASSZ")}) {
    EXPECT_EQ(Text(L"D"), before);
    IPropertySet& page = *m_properties.GetPropertySet();
    page.CalProp(&RowOf(page, kName));
    page.CalProp(nullptr);
    EXPECT_EQ(Now(), before);
    page.CalProp(&RowOf(page, row));
    EXPECT_EQ(Now(), after);
  }
}

TEST_F(MeshPage, AStoppedComputationLeavesTheMassEmpty) {
  Make(0);
  m_host.StopLongWork();
  ChangeMset(d, [](tagTMset& set) { workbench::PutMesh(set, Strip(70'000, 9)); });
  IPropertySet& page = PageFor(L"D");
  page.CalProp(&RowOf(page, L"IDS_QD_WRT_MASSX"));
  EXPECT_EQ(Now(), Identity("4", "D") + Counts(70'000, 70'002) + Mass() + kButton);
}

// ---- what it writes -------------------------------------------------------------------------------------

using Act = HeardAct<MeshPage>;
std::function<void(MeshPage&)> Put(const CString& row, const CString& name, COLORREF colour) {
  return [=](MeshPage& test) { test.Apply(row, name, colour); };
}
std::string Modify(const std::string& set, const std::string& change, const std::string& number) {
  return Transaction("Modify_Mset", "msets.Modify(" + set + ", {" + change + "})\n",
                     "IDS_DB_DATA_NAME_MESH: IDS_QD_WRT_ID " + number);
}
const COLORREF kAsItIs = Rgb(1, 2, 3);

std::vector<Act> Acts() {
  const std::string cut(63, 'q');
  return {
      {"name_and_colour", L"", Put(L"B", L"new", Rgb(7, 8, 9)), Modify("B", "name=new colour=#070809", "2")},
      {"name", L"", Put(L"D", L"new", kAsItIs), Modify("D", "name=new", "4")},
      {"colour", L"", Put(L"D", L"D", Rgb(7, 8, 9)), Modify("D", "colour=#070809", "4")},
      {"nothing", L"", Put(L"B", L"B", kAsItIs), ""},
      {"a_name_in_use", L"", Put(L"B", L"D", kAsItIs), ""},
      {"a_name_in_use_and_a_colour", L"", Put(L"B", L"D", 1), Modify("B", "colour=#010000", "2")},
      {"no_name", L"", Put(L"B", L"", kAsItIs), ""},
      {"a_long_name", L"", Put(L"B", CString(80, L'q'), kAsItIs), Modify("B", "name=" + cut, "2")},
      {"the_default_set", L"", Put(L"E", L"new", 1), Modify("E", "colour=#010000", "5")},
  };
}
void MeshPage::ExpectOthersAsEver(Standing standing, bool) {
  Apply(L"A", L"later", kAsItIs);
  EXPECT_EQ(Heard(), As(standing, Modify("A", "name=later", "1"))) << "afterwards";
}
class MeshPageActs : public ::testing::TestWithParam<Act> {};
TEST_P(MeshPageActs, AreHeardCallByCallAndTakenBackWhenRefused) {
  ExpectHeard(GetParam());
}
INSTANTIATE_TEST_SUITE_P(Pages, MeshPageActs, ::testing::ValuesIn(Acts()),
                         [](const auto& param) { return param.param.name; });

TEST_F(MeshPage, ANameThatIsInUseOnlyWhenCutIsIgnoredToo) {
  Make(0);
  ChangeMset(d, [](tagTMset& set) { set.name.assign(63, L'q'); });
  Heard();
  Apply(L"B", CString(64, L'q'), kAsItIs);
  EXPECT_EQ(Heard(), "");
}

TEST_F(MeshPage, OutlivesItsSet) {
  Make(0);
  CPropertySetMesh page(&m_doc, b, kDataMset);
  page.ShowProperty();
  RowOf(page, kName).value = L"new";
  ASSERT_EQ(Pool().TR_Del({b}), 1);
  Heard();
  page.ApplyProperty();
  page.ShowProperty();
  EXPECT_EQ(PageText(page) + Heard(), kButton);
}

// ---- how it was made ------------------------------------------------------------------------------------

TEST_F(MeshPage, OnShowIsMadeAnewInOtherUnits) {
  Make(0);
  Text(L"D");
  const CPropertySetMesh hidden(&m_doc, b, kDataMset);
  Heard();
  CQDUnitCtrl::SetUnitSystem(L"m", L"kg");
  EXPECT_EQ(Heard(), "pages.Refresh\n");
  EXPECT_EQ(hidden.GetUnitListenerDoc(), &m_doc);
  m_properties.SetPropertySet(nullptr);
  Heard();
  CQDUnitCtrl::SetUnitSystem(L"mm", L"t");
  EXPECT_EQ(Heard(), "");
}

TEST_F(MeshPage, AListenerOfUnitsMayTakeOthersAlong) {
  struct Listener final : IUnitListener {
    explicit Listener(std::function<void()> what) : onChange(std::move(what)) {}
    CQDDocBase* GetUnitListenerDoc() const override { return nullptr; }
    void OnUnitChanged() override { onChange(); }
    std::function<void()> onChange;
  };
  std::string told;
  std::unique_ptr<Listener> before;
  std::unique_ptr<Listener> behind;
  before = std::make_unique<Listener>([&] { told += "before "; });
  const Listener takes([&] {
    told += "takes ";
    before.reset();
    behind.reset();
    std::make_unique<Listener>([&] { told += "came too late "; }).reset();
  });
  behind = std::make_unique<Listener>([&] { told += "behind "; });
  std::unique_ptr<Listener> itself;
  itself = std::make_unique<Listener>([&] {
    told += "itself ";
    itself.reset();
  });
  const Listener last([&] { told += "last "; });
  CQDUnitCtrl::SetUnitSystem(L"mm", L"t");
  EXPECT_EQ(told, "before takes itself last ");
}

struct GenerationCase {
  int kind;
  int method;
  std::vector<std::string> rows;  // below the method; none at all for the other kinds
};
std::string Generated(const GenerationCase& made) {
  const char* kMethods[] = {"AUTO_SOLID", "MAP_SOLID", "GENERATE_2D_TO_3D", "AUTO_SOLID_LAYERED"};
  std::string text = "QD_MESH_GEN_INFO\n  QDMESH_METHOD: ";
  for (int i = 0; i < 4; ++i) {
    const std::string method = std::string("QDMESH_TAB_") + kMethods[i];
    text += (i > 0 ? " | " : "") + (i == made.method ? "[" + method + "]" : method);
  }
  text += " (fixed)\n";
  for (const std::string& row : made.rows) text += "  " + row + " (fixed)\n";
  return text;
}
class MeshGenerationPage : public MeshPage, public ::testing::WithParamInterface<GenerationCase> {};
TEST_P(MeshGenerationPage, ShowsTheRecordedParametersInTheOrderOfThePage) {
  Make(0);
  Act([&] {
    tagMGInfo generation;
    generation.kind = GetParam().kind;
    generation.method = GetParam().method;
    generation.options = {{"IDS_QDMESH_MERGE_TOLERANCE", 0.25},
                          {"IDS_HWB_MESH_HIGH_ORDER", true},
                          {"IDS_HWB_MESH_ELEM_SIZE", 1},
                          {"IDS_HWB_MESH_3D_MESHER", 3},
                          {"IDS_HWB_MESH_GEOM_PROJ", false},
                          {"IDS_QDMESH_AVOID_COLLISION_TYPE", -1},
                          {"IDS_QD_MESH_LAYERED_NUM_LAYERS", 3},
                          {"IDS_QDMESH_INNER_ELEM_TYPE", 1},
                          {"IDS_SOMETHING_ELSE", 1.0}};
    tagTMset record = Mset(d);
    record.mgInfo = workbench::MGInfoPool::KeyOf(Data().GetMGInfoPool().Add(generation));
    ASSERT_EQ(Pool().Modify(d, record), 1);
  });
  const bool solid = GetParam().kind == 0 || GetParam().kind == 2;
  EXPECT_EQ(Text(L"D"),
            Identity("4", "D") + Counts(2, 4) + Mass() + (solid ? Generated(GetParam()) : "") + kButton);
  if (!solid) return;
  // What was is told, and nothing of it is written back.
  auto& page = dynamic_cast<CPropertySetMesh&>(*m_properties.GetPropertySet());
  EXPECT_FALSE(page.IsGenerationChanged());
  page.OnPropertyChanged(&RowOf(page, kName), 0);
  EXPECT_FALSE(page.IsGenerationChanged());
  CBCGPProp& method = RowOf(page, L"IDS_QDMESH_METHOD");
  method.value = L"other";
  page.OnPropertyChanged(&method, method.data);
  EXPECT_TRUE(page.IsGenerationChanged());
  Heard();
  page.ApplyProperty();
  EXPECT_EQ(Heard(), "");
  page.ShowProperty();
  EXPECT_FALSE(page.IsGenerationChanged());
}
const std::string kSize = "HWB_MESH_ELEM_SIZE: HWB_MESH_ELEM_SIZE_USER";
const std::string kTolerance = "QDMESH_MERGE_TOLERANCE: 0.25";
const std::string kOrder = "HWB_MESH_HIGH_ORDER: YES";
const std::string kProjection = "HWB_MESH_GEOM_PROJ: NO";
INSTANTIATE_TEST_SUITE_P(
    Methods, MeshGenerationPage,
    ::testing::Values(GenerationCase{0, 0, {"HWB_MESH_3D_MESHER: 3", kSize, kTolerance, kOrder, kProjection}},
                      GenerationCase{2, 1, {kSize, kOrder, kProjection, kTolerance}},
                      GenerationCase{0, 2, {kTolerance, kOrder, kProjection}},
                      GenerationCase{0,
                                     3,
                                     {"QD_MESH_LAYERED_NUM_LAYERS: 3", "QDMESH_INNER_ELEM_TYPE: QDMESH_INNER_HEXA",
                                      "QDMESH_AVOID_COLLISION_TYPE: -1", kOrder, kProjection, kTolerance}},
                      GenerationCase{0, 4, {}}, GenerationCase{1, 0, {}}, GenerationCase{3, 0, {}}));

}  // namespace
}  // namespace qd::test

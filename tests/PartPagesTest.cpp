// The property pages of parts and of the geometry root: what they show, what the user's changes do.

#include <memory>

#include "qd_wrt/properties/CPropertySetGeom.h"
#include "support/Geometry.h"
#include "support/Heard.h"
#include "support/Pages.h"

namespace qd::test {
namespace {

using namespace heard;

const CString kRoot = L"IDS_DB_DATA_NAME_GEOM";
const CString kName = L"IDS_QD_WRT_PROP_NAME";
const CString kColour = L"IDS_QD_WRT_Color";
const CString kMaterial = L"IDS_QD_WRT_PROP_MATERIAL";
const CString kBody = L"IDS_QD_DB_DEFORMABLE_BODY";
const CString kShading = L"IDS_QD_WRT_GEOM_SHADING_COLOR";
const CString kTitles = L"IDS_QD_WRT_GEOM_GEOM_TITLE";

/// Bolt of brass, Sheet and Nut; two of the three materials have the same name.
class PartPages : public Standalone<PageOf<GeometryTest>> {
 public:
  using ModelTest::ChangePart;
  using ModelTest::m_materialsInTitles;

  void Make(int) {
    steel = AddMaterial(L"Steel");
    brass = AddMaterial(L"Brass", 8.5);
    AddMaterial(L"Brass");
    Open();
    bolt = AddPartTo(0, L"Bolt");
    sheet = AddPartTo(0, L"Sheet", TopologyKind::Surface);
    nut = AddPartTo(0, L"Nut");
    ChangePart(bolt, [this](tagTGeom& part) { part.material = brass; });
    Heard();
  }
  void ExpectOthersAsEver(Standing standing, bool changed);
  iterator AddPartNow(const CString& name) { return AddPartTo(0, name); }
  const tagTGeom& Record(iterator itr) { return Part(itr); }

  iterator steel = 0;
  iterator brass = 0;
  iterator bolt = 0;
  iterator sheet = 0;
  iterator nut = 0;
};

// ---- what the pages show --------------------------------------------------------------------------------

struct Shown {
  const char* name;
  std::function<void(PartPages&, tagTGeom&)> change;
  std::string page;
};
class PartPageRows : public PartPages, public ::testing::WithParamInterface<Shown> {};
TEST_P(PartPageRows, TellWhatThePartIs) {
  Make(0);
  ChangePart(nut, [this](tagTGeom& part) { GetParam().change(*this, part); });
  EXPECT_EQ(Text(L"Nut"), GetParam().page);
}

std::shared_ptr<const PartShape> Shape(double volume, double area, double length,
                                       std::vector<std::pair<std::string, double>> geometry = {}) {
  PartShape shape;
  shape.volume = volume;
  shape.area = area;
  shape.length = length;
  shape.geometry = std::move(geometry);
  return std::make_shared<const PartShape>(shape);
}
std::shared_ptr<const PartOrigin> Origin(const CString& product, const CString& instance, const CString& use) {
  PartOrigin origin;
  origin.product = product;
  origin.instance = instance;
  origin.assemblies = {{L"Pump", L"", 0}, {L"Lid", use, 1}};
  return std::make_shared<const PartOrigin>(origin);
}
std::string Body(const std::string& kind, const std::string& more, const std::string& material = {},
                 bool flexible = true) {
  std::string text =
      "GEOMSET_" + kind + "\n  PROP_NAME: Nut\n  ID: 3 (fixed)\n  Color: #000000\n  PROP_MATERIAL: ";
  text += material.empty() ? "[PROP_NO_MATERIAL] | Steel | Brass | Brass\n" : material + "\n";
  if (kind == "SOLID") {
    text += std::string("  QD_DB_DEFORMABLE_BODY: ") + (flexible ? "QD_DB_BODY_RIGID | [QD_DB_BODY_FLEXIBLE]\n"
                                                                 : "[QD_DB_BODY_RIGID] | QD_DB_BODY_FLEXIBLE\n");
  }
  return text + more;
}
const std::string kOfSteel = "PROP_NO_MATERIAL | [Steel] | Brass | Brass";
const std::string kOfBrass = "PROP_NO_MATERIAL | Steel | [Brass] | [Brass]";

INSTANTIATE_TEST_SUITE_P(
    Parts, PartPageRows,
    ::testing::Values(
        Shown{"bare", [](PartPages&, tagTGeom&) {}, Body("SOLID", "")},
        Shown{"of_steel", [](PartPages& test, tagTGeom& part) { part.material = test.steel; },
              Body("SOLID", "", kOfSteel)},
        Shown{
            "solid",
            [](PartPages& test, tagTGeom& part) {
              part.shape = Shape(2, 1234567.89, 9);
              part.material = test.brass;
              part.flexible = false;
            },
            Body("SOLID", "  PROP_VOLUME: 2 (fixed)\n  PROP_AREA: 1.23457e+06 (fixed)\n  PROP_MASS: 17 (fixed)\n",
                 kOfBrass, false)},
        Shown{
            "compound",
            [](PartPages& test, tagTGeom& part) {
              part.kind = TopologyKind::Compound;
              part.shape = Shape(0.25, 12, 9);
              part.material = test.brass;
            },
            Body("COMPOUND", "  PROP_VOLUME: 0.25 (fixed)\n  PROP_AREA: 12 (fixed)\n  PROP_MASS: 2.125 (fixed)\n",
                 kOfBrass)},
        Shown{"without_material_no_mass", [](PartPages&, tagTGeom& part) { part.shape = Shape(2, 0, 0); },
              Body("SOLID", "  PROP_VOLUME: 2 (fixed)\n")},
        Shown{"face",
              [](PartPages& test, tagTGeom& part) {
                part.kind = TopologyKind::Surface;
                part.shape = Shape(5, 4, 9, {{"IDS_QD_WRT_TORUS", 0}, {"IDS_QD_WRT_RADIUS", 2.5}});
                part.material = test.brass;
              },
              Body("SURFACE", "  PROP_AREA: 4 (fixed)\n  PROP_GEOMETRY: TORUS (fixed)\n  RADIUS: 2.5 (fixed)\n",
                   kOfBrass)},
        Shown{"edge",
              [](PartPages&, tagTGeom& part) {
                part.kind = TopologyKind::Curve;
                part.shape = Shape(1, 2, 3);
              },
              Body("CURVE", "  PROP_LENGTH: 3 (fixed)\n")},
        Shown{"point",
              [](PartPages&, tagTGeom& part) {
                part.kind = TopologyKind::Point;
                part.shape = Shape(1, 2, 3);
              },
              Body("POINT", "")},
        Shown{"from_an_assembly",
              [](PartPages&, tagTGeom& part) { part.origin = Origin(L"Screw", L"left", L"Upper lid"); },
              Body("SOLID",
                   "  PROP_PRODUCT: Screw (fixed)\n  PROP_INSTANCE: left (fixed)\n  PROP_ASSEMBLY: Pump/Lid "
                   "(fixed)\n  PROP_ASSEMBLY_USES: Pump/Upper lid (fixed)\n")},
        Shown{"from_one_without_names_of_uses",
              [](PartPages&, tagTGeom& part) { part.origin = Origin(L"Screw", L"", L""); },
              Body("SOLID", "  PROP_PRODUCT: Screw (fixed)\n  PROP_ASSEMBLY: Pump/Lid (fixed)\n")},
        Shown{"with_endless_names",
              [](PartPages&, tagTGeom& part) {
                part.origin = Origin(CString(1000, L'p'), CString(1001, L'i'), L"");
              },
              Body("SOLID", "  PROP_PRODUCT: " + std::string(1000, 'p') + " (fixed)\n  PROP_INSTANCE: " +
                                std::string(1000, 'i') + "… (fixed)\n  PROP_ASSEMBLY: Pump/Lid (fixed)\n")}),
    [](const auto& param) { return std::string(param.param.name); });

std::string RootPage(int colour, int title) {
  const auto two = [](int chosen, const std::string& first, const std::string& second) {
    return (chosen == 0 ? "[" + first + "] | " + second : first + " | [" + second + "]") + "\n";
  };
  return "DB_DATA_NAME_GEOM\n  GEOM_DISPLAY\n    GEOM_SHADING_COLOR: " +
         two(colour, "GEOM_GEOM_COLOR", "GEOM_MATL_COLOR") +
         "    GEOM_GEOM_TITLE: " + two(title, "GEOM_GEOM_NAME", "GEOM_GEOM_NAME_MATL_NAME");
}

// ---- what the user's changes do -------------------------------------------------------------------------

using Act = HeardAct<PartPages>;

/// A row of the page of another row is set.
std::function<void(PartPages&)> Put(const CString& title, const CString& row, const CString& value,
                                    COLORREF colour = 0) {
  return [=](PartPages& test) {
    test.PageFor(title);
    test.Heard();
    test.Set(row, value, colour);
  };
}
std::string Modify(const std::string& part, const std::string& change, const std::string& page) {
  return Transaction("Modify_Geometry", "geoms.Private_Modify(" + part + ", {" + change + "}, 0, 1)\n", page);
}
std::string PageHead(const std::string& name, const std::string& kind = "SOLID") {
  return "IDS_QD_WRT_GEOMSET_" + kind + ": IDS_QD_WRT_PROP_NAME " + name;
}
std::string Applied(const std::string& material) {
  return Announced("doc.RunCommand(Geom, Action=ApplyMaterial, Itr=[Bolt], ItrMaterial=" + material + ")",
                   PageHead("Bolt"));
}
std::string Coloured(int mode) {
  return "view.SetAllColorModelType(" + std::to_string(mode) + ")\nview.Invalidate(0)\n";
}
/// The root's page after choices, one after the other; parts that come later are titled alike.
std::function<void(PartPages&)> Choose(const std::vector<std::pair<CString, CString>>& choices, int colour,
                                       int title) {
  return [=](PartPages& test) {
    test.PageFor(kRoot);
    test.Heard();
    for (const auto& [row, value] : choices) {
      test.Set(row, value);
      if (row == kTitles) test.m_materialsInTitles = value == L"IDS_QD_WRT_GEOM_GEOM_NAME_MATL_NAME";
    }
    EXPECT_EQ(PageText(test.Page()), RootPage(colour, title));
    int told[2] = {};
    test.m_bar.GetGeomTitleAndColor(&test.m_doc, told[0], told[1]);
    EXPECT_EQ(told[0] * 10 + told[1], title * 10 + colour);
  };
}

std::vector<Act> Acts() {
  const CString longName(80, L'n');
  return {
      {"rename", L"", Put(L"Bolt", kName, L"Pin"), Modify("Bolt", "name=Pin", PageHead("Pin"))},
      {"rename_alike", L"", Put(L"Bolt", kName, L"Bolt"), ""},
      {"rename_as_another", L"", Put(L"Bolt", kName, L"Nut"), Modify("Bolt", "name=Nut", PageHead("Nut"))},
      {"rename_to_nothing", L"", Put(L"Bolt", kName, L""), "warning(IDS_QD_DB_NAME_EMPTY)\n"},
      {"rename_at_length", L"", Put(L"Sheet", kName, longName),
       Modify("Sheet", "name=" + std::string(63, 'n'), PageHead(std::string(63, 'n'), "SURFACE"))},
      {"recolour", L"", Put(L"Bolt", kColour, L"", 0xFF563412),
       Modify("Bolt", "colour=#123456", PageHead("Bolt"))},
      {"first_material", L"", Put(L"Bolt", kMaterial, L"Steel"), Applied("Steel")},
      {"material_of_two_alike", L"", Put(L"Bolt", kMaterial, L"Brass"), Applied("Brass")},
      {"no_material", L"", Put(L"Bolt", kMaterial, L"IDS_QD_WRT_PROP_NO_MATERIAL"), Applied("none")},
      {"unknown_material", L"", Put(L"Bolt", kMaterial, L"Gold"), Applied("none")},
      {"rigid", L"", Put(L"Bolt", kBody, L"IDS_QD_DB_BODY_RIGID"),
       Transaction("Modify_Geometry", "appdb.SetBodyType([Bolt], 0)\n", PageHead("Bolt"))},
      {"flexible", L"", Put(L"Bolt", kBody, L"IDS_QD_DB_BODY_FLEXIBLE"),
       Transaction("Modify_Geometry", "appdb.SetBodyType([Bolt], 1)\n", PageHead("Bolt"))},
      {"a_row_that_tells_only", L"", Put(L"Bolt", L"IDS_QD_WRT_ID", L"7"), ""},
      {"colours_of_materials", L"", Choose({{kShading, L"IDS_QD_WRT_GEOM_MATL_COLOR"}}, 1, 0), Coloured(1)},
      {"own_colours_again", L"",
       Choose({{kShading, L"IDS_QD_WRT_GEOM_MATL_COLOR"}, {kShading, L"IDS_QD_WRT_GEOM_GEOM_COLOR"}}, 0, 0),
       Coloured(1) + Coloured(0)},
      {"colours_in_another_language", L"",
       Choose({{kShading, L"IDS_QD_WRT_GEOM_MATL_COLOR"}, {kShading, L"Farbe"}}, 1, 0),
       Coloured(1) + "view.Invalidate(0)\n"},
      {"titles_with_materials", L"", Choose({{kTitles, L"IDS_QD_WRT_GEOM_GEOM_NAME_MATL_NAME"}}, 0, 1), ""},
      {"titles_without_again", L"",
       Choose({{kTitles, L"IDS_QD_WRT_GEOM_GEOM_NAME_MATL_NAME"}, {kTitles, L"IDS_QD_WRT_GEOM_GEOM_NAME"}}, 0, 0),
       ""},
      {"titles_in_another_language", L"",
       Choose({{kTitles, L"IDS_QD_WRT_GEOM_GEOM_NAME_MATL_NAME"}, {kTitles, L"Name"}}, 0, 0), ""},
  };
}

/// A new part joins those that are there, and the page of a part changes it as ever.
void PartPages::ExpectOthersAsEver(Standing standing, bool) {
  const bool titled = m_materialsInTitles;
  const iterator washer = AddPartNow(L"Washer");
  ChangePart(washer, [this](tagTGeom& part) { part.material = steel; });
  EXPECT_EQ(Tree().GetItemText(Tree().FindGeomNode(washer)->GetTreeItemHandle(), 0),
            titled ? L"Washer (Steel)" : L"Washer");
  PageFor(titled ? L"Washer (Steel)" : L"Washer");
  Heard();
  Set(kName, L"Ring");
  EXPECT_EQ(Heard(), As(standing, Modify("Washer", "name=Ring", PageHead("Ring")))) << "afterwards";
}

class PartPageActs : public ::testing::TestWithParam<Act> {};
TEST_P(PartPageActs, AreHeardCallByCallAndTakenBackWhenRefused) {
  ExpectHeard(GetParam());
}
INSTANTIATE_TEST_SUITE_P(Pages, PartPageActs, ::testing::ValuesIn(Acts()),
                         [](const auto& param) { return param.param.name; });

TEST_F(PartPages, OfTwoMaterialsWithOneNameTheFirstIsGiven) {
  Make(0);
  PageFor(L"Nut");
  Set(kMaterial, L"Brass");
  EXPECT_EQ(Record(nut).material, brass);
}

TEST_F(PartPages, PagesOutliveWhatTheyAreAbout) {
  Make(0);
  CPropertySetGeom gone(&m_doc, nut);
  gone.ShowProperty();
  CBCGPProp name = RowOf(gone, kName);
  Data().GetGeomPool().TR_Del({nut});
  Heard();
  name.value = L"Pin";
  gone.OnPropertyChanged(&name, name.data);
  gone.OnPropertyChanged(nullptr, 0);
  gone.ShowProperty();
  EXPECT_EQ(PageText(gone), "");
  IPropertySet& root = PageFor(kRoot);
  CBCGPProp titles = RowOf(root, kTitles);
  root.OnPropertyChanged(nullptr, 0);
  m_bar.DestroyTreeItems();
  m_checked = false;
  Heard();
  root.OnPropertyChanged(&titles, titles.data);
  root.ShowProperty();
  EXPECT_EQ(PageText(root) + Heard(), "");
}

}  // namespace
}  // namespace qd::test

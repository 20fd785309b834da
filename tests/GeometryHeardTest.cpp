// What the host hears of every act on the geometry branch and in the geometry-set tree.

#include "qd_wrt/geometry/GeomMenus.h"
#include "support/Geometry.h"
#include "support/Heard.h"

namespace qd::test {
namespace {

using namespace heard;

const CString kRoot = L"IDS_DB_DATA_NAME_GEOM";
const CString kSolids = L"IDS_QD_WRT_GEOMSET_SOLID [1]";

/// A part "Bolt" and a surface "Sheet" in the set "Frame", parts "Nut" and "Gasket", which is hidden, in the set
/// "Case". All but the sheet have meshes.
class GeometryHeard final : public Standalone<GeometryTest> {
 public:
  void Make(int tree) {
    m_tree = tree;
    const iterator frame = AddSet(L"Frame");
    const iterator box = AddSet(L"Case");
    for (const auto& [name, set] :
         {std::pair(L"Bolt", frame), {L"Sheet", frame}, {L"Nut", box}, {L"Gasket", box}}) {
      const bool sheet = CString(name) == L"Sheet";
      const iterator part = AddPartTo(set, name, sheet ? TopologyKind::Surface : TopologyKind::Solid);
      if (!sheet) AddMesh(part);
    }
    AddMaterial(L"Steel");
    AddMaterial(L"Brass");
    Show(tree);
    Open();
    for (const CString& row : {CString(L"Frame"), kSolids, CString(L"IDS_QD_WRT_GEOMSET_SURFACE [1]")}) {
      if (Row(row)) Node(row)->Expand(1);
    }
    m_toolkit.Pump();
    Node(L"Gasket")->OnClickCheck(kChecked);
    Heard();
  }
  void Choose(int material) {
    m_toolkit.AnswerMenu(MaterialCommandBase() + material);
    Menu();
  }
  void ExpectOthersAsEver(Standing standing, bool changed);

 private:
  int m_tree = 0;
};

// ---- what is heard again and again ----------------------------------------------------------------------

std::vector<std::string> Words(const std::string& names) {
  std::istringstream in(names);
  return {std::istream_iterator<std::string>(in), {}};
}

/// Parts that are shown or hidden, one after the other.
std::string Switch(const std::string& names, int show) {
  std::string calls;
  const std::string to = std::to_string(show);
  for (const std::string& name : Words(names)) {
    calls += Call("parts.SetShowHide", {name, to});
    if (name != "Sheet") calls += Call("meshes.ShowHideMset", {"mesh of " + name, to});
    calls += "range.UpdateAllRange(1)\nrange.UpdateCADRange(1)\ndoc.ClearSelectBuffer(1)\n";
    calls += "post.UpdateShowHideGeom(view)\npost.UpdateActivity(view, 1)\n";
  }
  return calls;
}
const std::string kMarks = "range.UpdateAllRange(1)\ndoc.SetPendingUpdate(1)\n";
const std::string kEnd = kMarks + kRedraw;

std::string Meshes(const std::string& names) {
  std::string list;
  for (const std::string& name : Words(names)) list.append(list.empty() ? "mesh of " : " mesh of ").append(name);
  return "[" + list + "]";
}
std::string Marks(const std::string& names, int present) {
  std::string calls;
  for (const std::string& name : Words(names)) {
    calls += Call("parts.SetMeshMark", {name, std::to_string(present)});
  }
  return calls;
}
std::string MeshSwitch(const std::string& marked, const std::string& meshes, int show) {
  return Marks(marked, show) + "meshes.ShowHideMset(" + Meshes(meshes) + ", " + std::to_string(show) +
         ")\nrange.UpdateAllRange(1)\n" + kSections + "in post mode: post.UpdateActivity(view, 1)\n" + kModelInfo;
}
std::string Look(const char* what, const std::string& names, const char* value, const std::string& meshes = {},
                 const char* meshValue = "") {
  std::string calls = std::string("parts.") + what + "([" + names + "], " + value + ")\n";
  if (!meshes.empty()) calls += std::string("looks.") + what + "(" + Meshes(meshes) + ", " + meshValue + ")\n";
  return calls;
}
std::string Recolour(const std::string& names, const std::string& page = "none") {
  const char* kColours[] = {"#5ea7eb", "#aabf4d", "#8f3d99", "#5eebb3"};
  std::string writes;
  int place = 0;
  for (const std::string& name : Words(names)) {
    const std::string colour = std::string("{colour=") + kColours[place++] + "}";
    writes += Call("geoms.Private_Modify", {name, colour, "0", "1"});
    if (name != "Sheet") writes += Call("msets.Modify", {"mesh of " + name, colour});
  }
  return Transaction("Modify_Geometry", writes, page) + "doc.ClearSelectBuffer(1)\n" + kRedraw;
}
const std::string kAll = "Bolt Sheet Nut Gasket";
const std::string kMeshed = "Bolt Nut Gasket";
/// In the geometry-set tree the kinds stand in their order, the sheet before the bolt.
const std::string kAllByKind = "Sheet Bolt Nut Gasket";
const std::string kRootPage = "IDS_DB_DATA_NAME_GEOM: IDS_QD_WRT_GEOM_DISPLAY";

std::string PageOf(const std::string& part) {
  return std::string("IDS_QD_WRT_GEOMSET_") + (part == "Sheet" ? "SURFACE" : "SOLID") + ": IDS_QD_WRT_PROP_NAME " +
         part;
}
std::string Selected(const std::string& names, const std::string& page) {
  std::string calls = "doc.ClearSelectBuffer(0)\n";
  for (const std::string& name : Words(names)) calls += Call("doc.AddToSelBuffer", {name});
  return calls + kRedraw + Page(page);
}

// ---- the acts -------------------------------------------------------------------------------------------

using Act = HeardAct<GeometryHeard>;
using Do = Doing<GeometryHeard>;

/// A command of the host's own menu for the branch.
std::function<void(GeometryHeard&)> Host(unsigned command) {
  return [command](GeometryHeard& test) { test.Tree().OnMenuEventGeomRoot(command); };
}

/// The same acts in one of the trees.
std::vector<Act> In(int tree, std::vector<Act> acts) {
  for (Act& act : acts) act.variant = tree;
  return acts;
}

std::vector<Act> ModelTreeActs() {
  const CString root = kRoot;
  const CString two = L"Gasket|Bolt";
  const std::string only = "Bolt Gasket";
  return {
      {"import", root, Do::Run(41006), "doc.Import\n"},
      {"show_all", root, Do::Run(41007), Change(Switch(kAll, 1) + kEnd) + kModelInfo},
      {"hide_all", root, Do::Run(41008), Change(Switch(kAll, 0) + kEnd) + kModelInfo},
      {"reverse_all", root, Do::Run(41011),
       Change(Switch("Bolt Sheet Nut", 0) + Switch("Gasket", 1) + kRedraw) + kModelInfo},
      {"previous", root, Do::Run(41151),
       "parts.ChangePrevShowHide\n" + kReset + "doc.ReMakeAllLabel(0)\nrange.UpdateCADRange(1)\n" + kRedraw +
           kModelInfo},
      {"show_meshes_of_all", root, Do::Run(41200), MeshSwitch("Bolt Nut", "Bolt Nut", 1)},
      {"hide_meshes_of_all", root, Do::Run(41201), MeshSwitch("Bolt Sheet Nut", "Bolt Nut", 0)},
      {"show_mesh_units", root, Do::Run(41205),
       "meshes.ShowHideMsetUnit(mesh of Bolt, 1)\nparts.SetMeshMark(Bolt, 1)\nmeshes.ShowHideMsetUnit(mesh of "
       "Nut, "
       "1)\nparts.SetMeshMark(Nut, 1)\nmeshes.ShowHideMsetUnit(mesh of Gasket, 1)\nparts.SetMeshMark(Gasket, "
       "1)\nmeshes.CommitShowHideMsetUnit\n" +
           kRedraw + kModelInfo},
      {"edge_shading", root, Do::Run(41105),
       Look("SetRenderMode", kAll, "1", kMeshed, "1") + kRedraw + kModelInfo},
      {"shading", root, Do::Run(41106), Look("SetRenderMode", kAll, "0", kMeshed, "0") + kRedraw + kModelInfo},
      {"wireframe", two, Do::Run(41107), Look("SetRenderMode", only, "2", only, "3") + kRedraw + kModelInfo},
      {"bounding_box", two, Do::Run(41108), Look("SetRenderMode", only, "3", only, "6") + kRedraw + kModelInfo},
      {"mode_of_the_sheet", L"Sheet", Do::Run(41108), Look("SetRenderMode", "Sheet", "3") + kRedraw + kModelInfo},
      {"transparent", root, Do::Run(41109),
       Look("SetTransparency", kAll, "0", kMeshed, "0") + kRefresh + kModelInfo},
      {"three_tenths", two, Do::Run(41112),
       Look("SetTransparency", only, "0.3", only, "76") + kRefresh + kModelInfo},
      {"opaque", two, Do::Run(41119), Look("SetTransparency", only, "1", only, "255") + kRefresh + kModelInfo},
      {"random_colours_of_all", root, Do::Run(41120), Recolour(kAll, kRootPage)},
      {"random_colours", two, Do::Run(41120), Recolour(only)},
      {"rigid", root, Do::Run(41548),
       Transaction("Modify_Geometry", "appdb.SetBodyType([Bolt Nut Gasket], 0)\n", kRootPage)},
      {"flexible", L"Sheet|Nut", Do::Run(41549), Transaction("Modify_Geometry", "appdb.SetBodyType([Nut], 1)\n")},
      {"no_solid", L"Sheet", Do::Run(41549), ""},
      {"material_dialog", root, Do::Run(41133),
       "app.OpenDialog(0, CLbcMaterialMainDlg, [Bolt Sheet Nut Gasket])\n"},
      {"material_dialog_of_two", two, Do::Run(41133), "app.OpenDialog(0, CLbcMaterialMainDlg, [Bolt Gasket])\n"},
      {"simplify", root, Do::Run(41134), "DoModeless(CSimplifyDlg)\n"},
      {"reserved", root, Do::Run(41239), ""},
      {"generate_meshes", root, Do::Run(41240),
       "app.OpenMeshDialog(2, CMeshGenerateMeshDlg, [key of Bolt key of Sheet key of Nut])\n"},
      {"generate_of_shown", two, Do::Run(41240), "app.OpenMeshDialog(2, CMeshGenerateMeshDlg, [key of Bolt])\n"},
      {"delete_meshes", root, Do::Run(41245),
       "msets.TR_Del(" + Meshes(kMeshed) + ")\n" + Inside(Marks(kMeshed, 0) + Page(kRootPage))},
      {"delete_meshes_from_the_host", two, Host(41245),
       "msets.TR_Del(" + Meshes(kMeshed) + ")\n" + Inside(Marks(kMeshed, 0) + Page())},
      {"delete_mesh", L"Nut", Do::Run(41245),
       "msets.TR_Del([mesh of Nut])\n" + Inside(Marks("Nut", 0) + Page(PageOf("Nut")))},
      {"delete_no_mesh", L"Sheet", Do::Run(41245), ""},
      {"delete_all", root, Do::Run(41002), Announced("geoms.TR_Del([Bolt Sheet Nut Gasket])", kRootPage)},
      {"delete", two, Do::Run(41002), Announced("geoms.TR_Del([Bolt Gasket])")},
      {"show", two, Do::Run(41100), Change(Switch("Gasket", 1) + kEnd) + kModelInfo},
      {"hide", two, Do::Run(41101), Change(Switch("Bolt", 0) + kEnd) + kModelInfo},
      {"show_only", two, Do::Run(41009), Change(Switch(kAll, 0) + Switch(only, 1) + kEnd) + kModelInfo},
      {"hide_only", two, Do::Run(41010), Change(Switch(kAll, 1) + Switch(only, 0) + kEnd) + kModelInfo},
      {"reverse", two, Do::Run(41017), Change(Switch("Bolt", 0) + Switch("Gasket", 1) + kRedraw) + kModelInfo},
      {"show_meshes", two, Do::Run(41200), MeshSwitch("Bolt", "Bolt", 1)},
      {"hide_mesh_of_the_sheet", L"Sheet", Do::Run(41201), MeshSwitch("Sheet", "", 0)},
      {"contacts", two, Do::Run(41300), "app.SetSelectAssignedContact([Bolt Gasket])\n"},
      {"unknown", two, Do::Run(41999), ""},
      {"shortcut_of_a_mode", two, Host(41137),
       Look("SetRenderMode", kAll, "2", kMeshed, "3") + kRedraw + kModelInfo},
      {"shortcut_of_colours", two, Host(41150), Recolour(kAll)},
      {"apply_to_all", root, [](GeometryHeard& test) { test.Choose(1); },
       Announced("doc.RunCommand(Geom, Action=ApplyMaterial, Itr=[Bolt Sheet Nut Gasket], ItrMaterial=Brass)",
                 kRootPage)},
      {"apply", L"Nut|Bolt", [](GeometryHeard& test) { test.Choose(0); },
       Announced("doc.RunCommand(Geom, Action=ApplyMaterial, Itr=[Bolt Nut], ItrMaterial=Steel)")},
      {"apply_what_was_listed_before", L"Nut|Bolt",
       [](GeometryHeard& test) {
         test.Choose(0);
         test.Heard();
         test.Command(MaterialCommandBase());
       },
       ""},
      {"drop_on_all", L"Steel", Do::Drop({L"Steel"}, kRoot),
       Announced("doc.RunCommand(Geom, Action=ApplyMaterial, Itr=[Bolt Sheet Nut Gasket], ItrMaterial=Steel)")},
      {"drop_on_one", L"Steel", Do::Drop({L"Steel"}, L"Nut"),
       Announced("doc.RunCommand(Geom, Action=ApplyMaterial, Itr=[Nut], ItrMaterial=Steel)")},
      {"drop_of_two", L"Steel", Do::Drop({L"Steel", L"Brass"}, L"Nut"), ""},
      {"drop_of_two_on_all", L"Steel", Do::Drop({L"Steel", L"Brass"}, kRoot), ""},
      {"drop_of_a_part", L"Bolt", Do::Drop({L"Bolt"}, L"Nut"), ""},
      {"rename", L"Nut", Do::Rename(L"Nut", L"Ring"),
       Transaction("Modify_Geometry", "geoms.Private_Modify(Nut, {name=Ring}, 0, 1)\n", PageOf("Ring"))},
      {"rename_alike", L"", Do::Rename(L"Nut", L"Nut"), ""},
      {"rename_to_nothing", L"", Do::Rename(L"Nut", L""), "warning(IDS_QD_DB_NAME_EMPTY)\n"},
      {"rename_as_another", L"", Do::Rename(L"Nut", L"Bolt"),
       Transaction("Modify_Geometry", "geoms.Private_Modify(Nut, {name=Bolt}, 0, 1)\n", PageOf("Bolt"))},
      {"rename_at_length", L"", Do::Rename(L"Nut", CString(64, L'q')),
       Transaction("Modify_Geometry", "geoms.Private_Modify(Nut, {name=" + std::string(63, 'q') + "}, 0, 1)\n",
                   PageOf(std::string(63, 'q')))},
      {"click", L"", Do::Click(L"Nut"), Selected("Nut", PageOf("Nut"))},
      {"click_the_root", L"", Do::Click(kRoot), Selected("", kRootPage)},
      {"click_a_second", L"",
       [](GeometryHeard& test) {
         test.Click(L"Nut");
         test.Heard();
         test.Click(L"Bolt", kMouseControl);
       },
       Selected("Bolt Nut", "none")},
      {"box", L"", Do::Box(L"Nut"), Change(Switch("Nut", 0)) + kRedraw},
      {"box_beside_the_selection", L"Gasket|Sheet", Do::Box(L"Nut"), Change(Switch("Nut", 0)) + kRedraw},
      {"boxes", L"Gasket|Nut|Sheet", Do::Box(L"Gasket"), Change(Switch("Sheet Nut Gasket", 1)) + kRedraw},
      {"host_shows", L"",
       [](GeometryHeard& test) {
         TArray<iterator> parts{test.Node(L"Gasket")->GetIterator(), 99, test.Node(L"Bolt")->GetIterator()};
         test.m_bar.SetShowHideItem(&test.m_doc, 0, parts, 1, 0);
       },
       Switch("Gasket Bolt", 1)},
  };
}

std::vector<Act> SetTreeActs() {
  const CString root = kRoot;
  const CString frame = L"Frame";
  const CString both = L"Case|Frame";
  const CString solids = kSolids;
  const CString bolt = L"Bolt";
  const std::string inFrame = "Sheet Bolt";
  const auto only = [](int others, const std::string& chosen) {
    return Change(Change(Switch(kAllByKind, others) + kMarks) + kModelInfo + Switch(chosen, 1 - others) + kReset +
                  kRedraw) +
           kModelInfo;
  };
  const auto answered = [](MessageAnswer answer, const CString& set, const CString& target) {
    return [=](GeometryHeard& test) {
      test.m_toolkit.AnswerMessage(answer);
      test.Drag({set}, target);
      EXPECT_EQ(test.m_toolkit.TakeMessages(), std::vector<CString>{L"IDS_QD_WRT_MERGE_GEOMSET"});
    };
  };
  return {
      // The root.
      {"root_new_set", root, Do::Run(41000),
       Announced("doc.RunCommand(GeomSet, Action=0, Data=[IDS_QD_WRT_GEOMSET 3])")},
      {"root_show_all", root, Do::Run(41007), Change(Switch(kAllByKind, 1) + kEnd) + kModelInfo},
      {"root_hide_all", root, Do::Run(41008), Change(Switch(kAllByKind, 0) + kEnd) + kModelInfo},
      {"root_reverse", root, Do::Run(41011),
       Change(Switch("Bolt Sheet Nut", 0) + Switch("Gasket", 1) + kRedraw) + kModelInfo},
      {"root_previous", root, Do::Run(41151),
       "parts.ChangePrevShowHide\n" + kReset + "doc.ReMakeAllLabel(0)\nrange.UpdateCADRange(1)\n" + kRedraw +
           kModelInfo},
      {"root_show", root, Do::Run(41100), Change(Switch("Gasket", 1) + kEnd) + kModelInfo},
      {"root_show_only", root, Do::Run(41009),
       Change(Switch(kAllByKind, 0) + Switch(kAll, 1) + kEnd) + kModelInfo},
      {"root_hides_the_selection", frame, Host(41101), Change(Switch("Bolt Sheet", 0) + kEnd) + kModelInfo},
      {"root_hides_a_selected_group", solids, Host(41101), Change(Switch("Bolt", 0) + kEnd) + kModelInfo},
      {"root_colours_a_selected_group", solids, Host(41120), Recolour("Bolt")},
      {"root_mode", root, Do::Run(41107), Look("SetRenderMode", kAll, "2") + kRedraw + kModelInfo},
      {"root_transparency", root, Do::Run(41110), Look("SetTransparency", kAll, "0.1") + kRefresh + kModelInfo},
      {"root_colours", root, Do::Run(41120), Recolour(kAll)},
      {"root_rigid", root, Do::Run(41548),
       Transaction("Modify_Geometry", "appdb.SetBodyType([Bolt Nut Gasket], 0)\n")},
      {"root_transform", root, Do::Run(41124),
       "DoModeless(CQDGeomTransformDlg, type 8, [key of Bolt key of Sheet key of Nut], command 41124)\n"},
      {"root_box", L"", Do::Box(kRoot), Change(Switch(kAllByKind, 0)) + kRedraw},
      // Sets.
      {"new_set", frame, Do::Run(41000),
       Announced("doc.RunCommand(GeomSet, Action=0, Data=[IDS_QD_WRT_GEOMSET 3], Itr=[Frame])")},
      {"current_set", L"Case", Do::Run(41003), "gsets.PutCurrentSet(Case)\n"},
      {"import", frame, Do::Run(41006), "doc.Import\n"},
      {"show", both, Do::Run(41100), Change(Switch(kAllByKind, 1) + kRedraw) + kModelInfo},
      {"hide", frame, Do::Run(41101), Change(Switch(inFrame, 0) + kRedraw) + kModelInfo},
      {"show_only", frame, Do::Run(41009), only(0, inFrame)},
      {"hide_only", both, Do::Run(41010), only(1, kAllByKind)},
      {"reverse", L"Case", Do::Run(41017), Change(Switch("Nut", 0) + Switch("Gasket", 1) + kRedraw) + kModelInfo},
      {"mode", frame, Do::Run(41105), Look("SetRenderMode", inFrame, "1") + kRedraw + kModelInfo},
      {"transparency", both, Do::Run(41118), Look("SetTransparency", kAllByKind, "0.9") + kRefresh + kModelInfo},
      {"transform", L"Case", Do::Run(41121),
       "DoModeless(CQDGeomTransformDlg, type 8, [key of Nut], command 41121)\n"},
      {"sweep", frame, Do::Run(41152),
       "DoModeless(CQDGeomTransformDlg, type 8, [key of Sheet key of Bolt], command 41152)\n"},
      {"project", frame, Do::Run(41125), "DoModeless(CQDGeomProjectDlg)\n"},
      {"attach", frame, Do::Run(41126), "DoModeless(CQDGeomAttachDlg)\n"},
      {"include_exclude", frame, Do::Run(41131), "DoModeless(CQDGeomIncludeExcludeDlg, Frame)\n"},
      {"simplify", L"Case", Do::Run(41134), "DoModeless(CSimplifyDlg, type 0, [key of Nut])\n"},
      {"no_command_of_sets", frame, Do::Run(41240), ""},
      {"delete", L"Bolt|Frame", Do::Run(41002), Announced("gsets.TR_Del([Frame])")},
      {"rename", frame, Do::Rename(L"Frame", L"Door"),
       Announced("doc.RunCommand(GeomSet, Action=1, Data=[Door], Itr=[Frame])")},
      {"rename_alike", frame, Do::Rename(L"Frame", L"Frame"), ""},
      {"rename_at_length", frame, Do::Rename(L"Frame", CString(80, L'q')),
       Announced("doc.RunCommand(GeomSet, Action=1, Data=[" + std::string(63, 'q') + "], Itr=[Frame])")},
      {"rename_to_what_is_the_same_when_cut", L"",
       Do::RenameAfter(L"Frame", CString(80, L'q'), CString(63, L'q'), CString(64, L'q')), ""},
      {"rename_as_another_when_cut", L"", Do::RenameAfter(L"Frame", CString(63, L'q'), L"Case", CString(64, L'q')),
       "warning(IDS_QD_DB_EXIST_NEW_DATA_NAME)\n"},
      {"rename_as_another", frame, Do::Rename(L"Frame", L"Case"), "warning(IDS_QD_DB_EXIST_NEW_DATA_NAME)\n"},
      {"rename_to_nothing", frame, Do::Rename(L"Frame", L""), "warning(IDS_QD_DB_NAME_EMPTY)\n"},
      {"click", L"", Do::Click(L"Case"), Selected("Case", "none")},
      {"boxes_of_sets", both, Do::Box(L"Case"), Change(Switch(kAllByKind, 0)) + kRedraw},
      // Drops.
      {"drop_parts", L"", Do::Drop({L"Nut", L"Bolt", L"Sheet"}, L"Frame"),
       Announced("doc.RunCommand(Geom, Action=ApplyGset, Itr=[Nut], ItrGset=Frame)")},
      {"drop_on_a_group", L"", Do::Drop({L"Nut", L"Gasket"}, kSolids),
       Announced("doc.RunCommand(Geom, Action=ApplyGset, Itr=[Nut Gasket], ItrGset=Frame)")},
      {"drop_on_an_entity", L"", Do::Drop({L"Bolt"}, L"Nut"),
       Announced("doc.RunCommand(Geom, Action=ApplyGset, Itr=[Bolt], ItrGset=Case)")},
      {"drop_at_home", L"", Do::Drop({L"Bolt", L"Frame"}, L"Frame"), ""},
      {"merge_the_current_set", L"", answered(MessageAnswer::Yes, L"Frame", L"Case"),
       Transaction(
           "Merge_GeomSet",
           "geoms.Private_ApplyGset([Bolt Sheet], Case)\ngsets.SetCurrentSet(Case)\ngsets.Delete(Frame)\n")},
      {"merge_another_set", L"", answered(MessageAnswer::Yes, L"Case", L"Frame"),
       Transaction("Merge_GeomSet", "geoms.Private_ApplyGset([Nut Gasket], Frame)\ngsets.Delete(Case)\n")},
      {"merge_not", L"", answered(MessageAnswer::No, L"Case", L"Frame"), ""},
      // Groups and entities.
      {"group_show_only", solids, Do::Run(41009), only(0, "Bolt")},
      {"group_hide", solids, Do::Run(41101), Change(Switch("Bolt", 0) + kRedraw) + kModelInfo},
      {"group_new_set", solids, Do::Run(41000),
       Announced("doc.RunCommand(GeomSet, Action=0, Data=[IDS_QD_WRT_GEOMSET 3], Itr=[Frame])")},
      {"group_include", solids, Do::Run(41131), "DoModeless(CQDGeomIncludeExcludeDlg, Frame)\n"},
      {"group_delete", solids, Do::Run(41002), "warning(IDS_QD_WRT_GROUP_STAYS)\n"},
      {"group_sort", solids, Do::Run(41038), ""},
      {"group_meshes", solids, Do::Run(41240), "app.OpenMeshDialog(2, CMeshGenerateMeshDlg, [key of Bolt])\n"},
      {"group_materials", solids, Do::Run(41133), "app.OpenDialog(0, CLbcMaterialMainDlg, [Bolt])\n"},
      {"group_flexible", solids, Do::Run(41549), Transaction("Modify_Geometry", "appdb.SetBodyType([Bolt], 1)\n")},
      {"group_box", L"", Do::Box(kSolids), Change(Switch("Bolt", 0)) + kRedraw},
      {"entity_hide_only", bolt, Do::Run(41010), only(1, "Bolt")},
      {"entity_mode", bolt, Do::Run(41108), Look("SetRenderMode", "Bolt", "3") + kRedraw + kModelInfo},
      {"entity_delete", bolt, Do::Run(41002), Announced("geoms.TR_Del([Bolt])")},
      {"entity_rename", bolt, Do::Rename(L"Bolt", L"Pin"),
       Transaction("Modify_Geometry", "geoms.Private_Modify(Bolt, {name=Pin}, 0, 1)\n", PageOf("Pin"))},
      {"entity_and_its_set", L"Frame|Sheet", Do::Run(41106),
       Look("SetRenderMode", inFrame, "0") + kRedraw + kModelInfo},
      {"entity_click", L"", Do::Click(L"Sheet"), Selected("Sheet", PageOf("Sheet"))},
  };
}

// ---- the tests ------------------------------------------------------------------------------------------

/// The box of the sheet, and with all parts still there all of them hidden.
void GeometryHeard::ExpectOthersAsEver(Standing standing, bool changed) {
  if (!Row(L"Sheet")) return;
  Select({L"Sheet"});
  const int show = Node(L"Sheet")->GetCheckStatus() == kChecked ? 0 : 1;
  Heard();
  Key(kKeySpace);
  EXPECT_EQ(Heard(), As(standing, Change(Switch("Sheet", show)) + kRedraw)) << "afterwards";
  if (changed) return;
  Select({kRoot});
  Command(41008);
  const std::string parts = m_tree == workbench::kModelTree ? kAll : kAllByKind;
  EXPECT_EQ(Heard(), As(standing, Change(Switch(parts, 0) + kEnd) + kModelInfo)) << "afterwards";
}

class GeometryActs : public ::testing::TestWithParam<Act> {};
TEST_P(GeometryActs, AreHeardCallByCallAndTakenBackWhenRefused) {
  ExpectHeard(GetParam());
}
INSTANTIATE_TEST_SUITE_P(ModelTree, GeometryActs, ::testing::ValuesIn(In(workbench::kModelTree, ModelTreeActs())),
                         [](const auto& param) { return std::string(param.param.name); });
INSTANTIATE_TEST_SUITE_P(SetTree, GeometryActs,
                         ::testing::ValuesIn(In(workbench::kGeometrySetTree, SetTreeActs())),
                         [](const auto& param) { return std::string(param.param.name); });

}  // namespace
}  // namespace qd::test

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

std::function<void(GeometryHeard&)> Run(unsigned command) {
  return [command](GeometryHeard& test) { test.Command(command); };
}
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
  const std::vector<CString> root{kRoot};
  const std::vector<CString> two{L"Gasket", L"Bolt"};
  const std::string only = "Bolt Gasket";
  return {
      {"import", root, Run(41006), "doc.Import\n"},
      {"show_all", root, Run(41007), Change(Switch(kAll, 1) + kEnd) + kModelInfo},
      {"hide_all", root, Run(41008), Change(Switch(kAll, 0) + kEnd) + kModelInfo},
      {"reverse_all", root, Run(41011),
       Change(Switch("Bolt Sheet Nut", 0) + Switch("Gasket", 1) + kRedraw) + kModelInfo},
      {"previous", root, Run(41151),
       "parts.ChangePrevShowHide\n" + kReset + "doc.ReMakeAllLabel(0)\nrange.UpdateCADRange(1)\n" + kRedraw +
           kModelInfo},
      {"show_meshes_of_all", root, Run(41200), MeshSwitch("Bolt Nut", "Bolt Nut", 1)},
      {"hide_meshes_of_all", root, Run(41201), MeshSwitch("Bolt Sheet Nut", "Bolt Nut", 0)},
      {"show_mesh_units", root, Run(41205),
       "meshes.ShowHideMsetUnit(mesh of Bolt, 1)\nparts.SetMeshMark(Bolt, 1)\nmeshes.ShowHideMsetUnit(mesh of "
       "Nut, "
       "1)\nparts.SetMeshMark(Nut, 1)\nmeshes.ShowHideMsetUnit(mesh of Gasket, 1)\nparts.SetMeshMark(Gasket, "
       "1)\nmeshes.CommitShowHideMsetUnit\n" +
           kRedraw + kModelInfo},
      {"edge_shading", root, Run(41105), Look("SetRenderMode", kAll, "1", kMeshed, "1") + kRedraw + kModelInfo},
      {"shading", root, Run(41106), Look("SetRenderMode", kAll, "0", kMeshed, "0") + kRedraw + kModelInfo},
      {"wireframe", two, Run(41107), Look("SetRenderMode", only, "2", only, "3") + kRedraw + kModelInfo},
      {"bounding_box", two, Run(41108), Look("SetRenderMode", only, "3", only, "6") + kRedraw + kModelInfo},
      {"mode_of_the_sheet", {L"Sheet"}, Run(41108), Look("SetRenderMode", "Sheet", "3") + kRedraw + kModelInfo},
      {"transparent", root, Run(41109), Look("SetTransparency", kAll, "0", kMeshed, "0") + kRefresh + kModelInfo},
      {"three_tenths", two, Run(41112), Look("SetTransparency", only, "0.3", only, "76") + kRefresh + kModelInfo},
      {"opaque", two, Run(41119), Look("SetTransparency", only, "1", only, "255") + kRefresh + kModelInfo},
      {"random_colours_of_all", root, Run(41120), Recolour(kAll, kRootPage)},
      {"random_colours", two, Run(41120), Recolour(only)},
      {"rigid", root, Run(41548),
       Transaction("Modify_Geometry", "appdb.SetBodyType([Bolt Nut Gasket], 0)\n", kRootPage)},
      {"flexible",
       {L"Sheet", L"Nut"},
       Run(41549),
       Transaction("Modify_Geometry", "appdb.SetBodyType([Nut], 1)\n")},
      {"no_solid", {L"Sheet"}, Run(41549), ""},
      {"material_dialog", root, Run(41133), "app.OpenDialog(0, CLbcMaterialMainDlg, [Bolt Sheet Nut Gasket])\n"},
      {"material_dialog_of_two", two, Run(41133), "app.OpenDialog(0, CLbcMaterialMainDlg, [Bolt Gasket])\n"},
      {"simplify", root, Run(41134), "DoModeless(CSimplifyDlg)\n"},
      {"reserved", root, Run(41239), ""},
      {"generate_meshes", root, Run(41240),
       "app.OpenMeshDialog(2, CMeshGenerateMeshDlg, [key of Bolt key of Sheet key of Nut])\n"},
      {"generate_of_shown", two, Run(41240), "app.OpenMeshDialog(2, CMeshGenerateMeshDlg, [key of Bolt])\n"},
      {"delete_meshes", root, Run(41245),
       "msets.TR_Del(" + Meshes(kMeshed) + ")\n" + Inside(Marks(kMeshed, 0) + Page(kRootPage))},
      {"delete_mesh",
       {L"Nut"},
       Run(41245),
       "msets.TR_Del([mesh of Nut])\n" + Inside(Marks("Nut", 0) + Page(PageOf("Nut")))},
      {"delete_no_mesh", {L"Sheet"}, Run(41245), ""},
      {"delete_all", root, Run(41002), Announced("geoms.TR_Del([Bolt Sheet Nut Gasket])", kRootPage)},
      {"delete", two, Run(41002), Announced("geoms.TR_Del([Bolt Gasket])")},
      {"show", two, Run(41100), Change(Switch("Gasket", 1) + kEnd) + kModelInfo},
      {"hide", two, Run(41101), Change(Switch("Bolt", 0) + kEnd) + kModelInfo},
      {"show_only", two, Run(41009), Change(Switch(kAll, 0) + Switch(only, 1) + kEnd) + kModelInfo},
      {"hide_only", two, Run(41010), Change(Switch(kAll, 1) + Switch(only, 0) + kEnd) + kModelInfo},
      {"reverse", two, Run(41017), Change(Switch("Bolt", 0) + Switch("Gasket", 1) + kRedraw) + kModelInfo},
      {"show_meshes", two, Run(41200), MeshSwitch("Bolt", "Bolt", 1)},
      {"hide_mesh_of_the_sheet", {L"Sheet"}, Run(41201), MeshSwitch("Sheet", "", 0)},
      {"contacts", two, Run(41300), "app.SetSelectAssignedContact([Bolt Gasket])\n"},
      {"unknown", two, Run(41999), ""},
      {"shortcut_of_a_mode", two, Host(41137),
       Look("SetRenderMode", kAll, "2", kMeshed, "3") + kRedraw + kModelInfo},
      {"shortcut_of_colours", two, Host(41150), Recolour(kAll)},
      {"apply_to_all", root, [](GeometryHeard& test) { test.Choose(1); },
       Announced("doc.RunCommand(Geom, Action=ApplyMaterial, Itr=[Bolt Sheet Nut Gasket], ItrMaterial=Brass)",
                 kRootPage)},
      {"apply",
       {L"Nut", L"Bolt"},
       [](GeometryHeard& test) { test.Choose(0); },
       Announced("doc.RunCommand(Geom, Action=ApplyMaterial, Itr=[Bolt Nut], ItrMaterial=Steel)")},
      {"apply_what_was_listed_before",
       {L"Nut", L"Bolt"},
       [](GeometryHeard& test) {
         test.Choose(0);
         test.Heard();
         test.Command(MaterialCommandBase());
       },
       ""},
      {"drop_on_all",
       {L"Steel"},
       [](GeometryHeard& test) { test.Drag({L"Steel"}, kRoot); },
       Announced("doc.RunCommand(Geom, Action=ApplyMaterial, Itr=[Bolt Sheet Nut Gasket], ItrMaterial=Steel)")},
      {"drop_on_one",
       {L"Steel"},
       [](GeometryHeard& test) { test.Drag({L"Steel"}, L"Nut"); },
       Announced("doc.RunCommand(Geom, Action=ApplyMaterial, Itr=[Nut], ItrMaterial=Steel)")},
      {"drop_of_two",
       {L"Steel"},
       [](GeometryHeard& test) {
         test.Drag({L"Steel", L"Brass"}, L"Nut");
       },
       ""},
      {"drop_of_a_part", {L"Bolt"}, [](GeometryHeard& test) { test.Drag({L"Bolt"}, L"Nut"); }, ""},
      {"rename",
       {L"Nut"},
       [](GeometryHeard& test) { test.Rename(L"Nut", L"Ring"); },
       Transaction("Modify_Geometry", "geoms.Private_Modify(Nut, {name=Ring}, 0, 1)\n", PageOf("Ring"))},
      {"rename_alike", {}, [](GeometryHeard& test) { test.Rename(L"Nut", L"Nut"); }, ""},
      {"rename_to_nothing",
       {},
       [](GeometryHeard& test) { test.Rename(L"Nut", L""); },
       "warning(IDS_QD_DB_NAME_EMPTY)\n"},
      {"click", {}, [](GeometryHeard& test) { test.Click(L"Nut"); }, Selected("Nut", PageOf("Nut"))},
      {"click_the_root", {}, [](GeometryHeard& test) { test.Click(kRoot); }, Selected("", kRootPage)},
      {"click_a_second",
       {},
       [](GeometryHeard& test) {
         test.Click(L"Nut");
         test.Heard();
         test.Click(L"Bolt", kMouseControl);
       },
       Selected("Bolt Nut", "none")},
      {"box", {}, [](GeometryHeard& test) { test.ClickCheck(L"Nut"); }, Change(Switch("Nut", 0)) + kRedraw},
      {"boxes",
       {L"Gasket", L"Nut", L"Sheet"},
       [](GeometryHeard& test) { test.ClickCheck(L"Gasket"); },
       Change(Switch("Sheet Nut Gasket", 1)) + kRedraw},
      {"host_shows",
       {},
       [](GeometryHeard& test) {
         TArray<iterator> parts{test.Node(L"Gasket")->GetIterator(), 99, test.Node(L"Bolt")->GetIterator()};
         test.m_bar.SetShowHideItem(&test.m_doc, 0, parts, 1, 0);
       },
       Switch("Gasket Bolt", 1)},
  };
}

std::vector<Act> SetTreeActs() {
  const std::vector<CString> root{kRoot};
  const std::vector<CString> frame{L"Frame"};
  const std::vector<CString> both{L"Case", L"Frame"};
  const std::vector<CString> solids{kSolids};
  const std::vector<CString> bolt{L"Bolt"};
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
  const auto dropped = [](const std::vector<CString>& nodes, const CString& target) {
    return [=](GeometryHeard& test) { test.Drag(nodes, target); };
  };
  const auto renamed = [](const CString& node, const CString& text) {
    return [=](GeometryHeard& test) { test.Rename(node, text); };
  };
  return {
      // The root.
      {"root_new_set", root, Run(41000),
       Announced("doc.RunCommand(GeomSet, Action=0, Data=[IDS_QD_WRT_GEOMSET 3])")},
      {"root_show_all", root, Run(41007), Change(Switch(kAllByKind, 1) + kEnd) + kModelInfo},
      {"root_hide_all", root, Run(41008), Change(Switch(kAllByKind, 0) + kEnd) + kModelInfo},
      {"root_reverse", root, Run(41011),
       Change(Switch("Bolt Sheet Nut", 0) + Switch("Gasket", 1) + kRedraw) + kModelInfo},
      {"root_previous", root, Run(41151),
       "parts.ChangePrevShowHide\n" + kReset + "doc.ReMakeAllLabel(0)\nrange.UpdateCADRange(1)\n" + kRedraw +
           kModelInfo},
      {"root_show", root, Run(41100), Change(Switch("Gasket", 1) + kEnd) + kModelInfo},
      {"root_show_only", root, Run(41009), Change(Switch(kAllByKind, 0) + Switch(kAll, 1) + kEnd) + kModelInfo},
      {"root_hides_the_selection", frame, Host(41101), Change(Switch("Bolt Sheet", 0) + kEnd) + kModelInfo},
      {"root_mode", root, Run(41107), Look("SetRenderMode", kAll, "2") + kRedraw + kModelInfo},
      {"root_transparency", root, Run(41110), Look("SetTransparency", kAll, "0.1") + kRefresh + kModelInfo},
      {"root_colours", root, Run(41120), Recolour(kAll)},
      {"root_rigid", root, Run(41548),
       Transaction("Modify_Geometry", "appdb.SetBodyType([Bolt Nut Gasket], 0)\n")},
      {"root_transform", root, Run(41124),
       "DoModeless(CQDGeomTransformDlg, type 8, [key of Bolt key of Sheet key of Nut], command 41124)\n"},
      {"root_box",
       {},
       [](GeometryHeard& test) { test.ClickCheck(kRoot); },
       Change(Switch(kAllByKind, 0)) + kRedraw},
      // Sets.
      {"new_set", frame, Run(41000),
       Announced("doc.RunCommand(GeomSet, Action=0, Data=[IDS_QD_WRT_GEOMSET 3], Itr=[Frame])")},
      {"current_set", {L"Case"}, Run(41003), "gsets.PutCurrentSet(Case)\n"},
      {"import", frame, Run(41006), "doc.Import\n"},
      {"show", both, Run(41100), Change(Switch(kAllByKind, 1) + kRedraw) + kModelInfo},
      {"hide", frame, Run(41101), Change(Switch(inFrame, 0) + kRedraw) + kModelInfo},
      {"show_only", frame, Run(41009), only(0, inFrame)},
      {"hide_only", both, Run(41010), only(1, kAllByKind)},
      {"reverse", {L"Case"}, Run(41017), Change(Switch("Nut", 0) + Switch("Gasket", 1) + kRedraw) + kModelInfo},
      {"mode", frame, Run(41105), Look("SetRenderMode", inFrame, "1") + kRedraw + kModelInfo},
      {"transparency", both, Run(41118), Look("SetTransparency", kAllByKind, "0.9") + kRefresh + kModelInfo},
      {"transform",
       {L"Case"},
       Run(41121),
       "DoModeless(CQDGeomTransformDlg, type 8, [key of Nut], command 41121)\n"},
      {"sweep", frame, Run(41152),
       "DoModeless(CQDGeomTransformDlg, type 8, [key of Sheet key of Bolt], command 41152)\n"},
      {"project", frame, Run(41125), "DoModeless(CQDGeomProjectDlg)\n"},
      {"attach", frame, Run(41126), "DoModeless(CQDGeomAttachDlg)\n"},
      {"include_exclude", frame, Run(41131), "DoModeless(CQDGeomIncludeExcludeDlg, Frame)\n"},
      {"simplify", {L"Case"}, Run(41134), "DoModeless(CSimplifyDlg, type 0, [key of Nut])\n"},
      {"no_command_of_sets", frame, Run(41240), ""},
      {"delete", {L"Bolt", L"Frame"}, Run(41002), Announced("gsets.TR_Del([Frame])")},
      {"rename", frame, renamed(L"Frame", L"Door"),
       Announced("doc.RunCommand(GeomSet, Action=1, Data=[Door], Itr=[Frame])")},
      {"rename_alike", frame, renamed(L"Frame", L"Frame"), ""},
      {"rename_at_length", frame, renamed(L"Frame", CString(80, L'q')),
       Announced("doc.RunCommand(GeomSet, Action=1, Data=[" + std::string(63, 'q') + "], Itr=[Frame])")},
      {"rename_to_what_is_the_same_when_cut",
       {},
       [](GeometryHeard& test) {
         test.Rename(L"Frame", CString(80, L'q'));
         test.Heard();
         test.Rename(CString(63, L'q'), CString(64, L'q'));
       },
       ""},
      {"rename_as_another_when_cut",
       {},
       [](GeometryHeard& test) {
         test.Rename(L"Frame", CString(63, L'q'));
         test.Heard();
         test.Rename(L"Case", CString(64, L'q'));
       },
       "warning(IDS_QD_DB_EXIST_NEW_DATA_NAME)\n"},
      {"rename_as_another", frame, renamed(L"Frame", L"Case"), "warning(IDS_QD_DB_EXIST_NEW_DATA_NAME)\n"},
      {"rename_to_nothing", frame, renamed(L"Frame", L""), "warning(IDS_QD_DB_NAME_EMPTY)\n"},
      {"click", {}, [](GeometryHeard& test) { test.Click(L"Case"); }, Selected("Case", "none")},
      {"boxes_of_sets", both, [](GeometryHeard& test) { test.ClickCheck(L"Case"); },
       Change(Switch(kAllByKind, 0)) + kRedraw},
      // Drops.
      {"drop_parts",
       {},
       dropped({L"Nut", L"Bolt", L"Sheet"}, L"Frame"),
       Announced("doc.RunCommand(Geom, Action=ApplyGset, Itr=[Nut], ItrGset=Frame)")},
      {"drop_on_a_group",
       {},
       dropped({L"Nut", L"Gasket"}, kSolids),
       Announced("doc.RunCommand(Geom, Action=ApplyGset, Itr=[Nut Gasket], ItrGset=Frame)")},
      {"drop_on_an_entity",
       {},
       dropped({L"Bolt"}, L"Nut"),
       Announced("doc.RunCommand(Geom, Action=ApplyGset, Itr=[Bolt], ItrGset=Case)")},
      {"drop_at_home", {}, dropped({L"Bolt", L"Frame"}, L"Frame"), ""},
      {"merge_the_current_set",
       {},
       answered(MessageAnswer::Yes, L"Frame", L"Case"),
       Transaction(
           "Merge_GeomSet",
           "geoms.Private_ApplyGset([Bolt Sheet], Case)\ngsets.SetCurrentSet(Case)\ngsets.Delete(Frame)\n")},
      {"merge_another_set",
       {},
       answered(MessageAnswer::Yes, L"Case", L"Frame"),
       Transaction("Merge_GeomSet", "geoms.Private_ApplyGset([Nut Gasket], Frame)\ngsets.Delete(Case)\n")},
      {"merge_not", {}, answered(MessageAnswer::No, L"Case", L"Frame"), ""},
      // Groups and entities.
      {"group_show_only", solids, Run(41009), only(0, "Bolt")},
      {"group_hide", solids, Run(41101), Change(Switch("Bolt", 0) + kRedraw) + kModelInfo},
      {"group_new_set", solids, Run(41000),
       Announced("doc.RunCommand(GeomSet, Action=0, Data=[IDS_QD_WRT_GEOMSET 3], Itr=[Frame])")},
      {"group_include", solids, Run(41131), "DoModeless(CQDGeomIncludeExcludeDlg, Frame)\n"},
      {"group_delete", solids, Run(41002), ""},
      {"group_sort", solids, Run(41038), ""},
      {"group_meshes", solids, Run(41240), "app.OpenMeshDialog(2, CMeshGenerateMeshDlg, [key of Bolt])\n"},
      {"group_materials", solids, Run(41133), "app.OpenDialog(0, CLbcMaterialMainDlg, [Bolt])\n"},
      {"group_flexible", solids, Run(41549), Transaction("Modify_Geometry", "appdb.SetBodyType([Bolt], 1)\n")},
      {"group_box",
       {},
       [](GeometryHeard& test) { test.ClickCheck(kSolids); },
       Change(Switch("Bolt", 0)) + kRedraw},
      {"entity_hide_only", bolt, Run(41010), only(1, "Bolt")},
      {"entity_mode", bolt, Run(41108), Look("SetRenderMode", "Bolt", "3") + kRedraw + kModelInfo},
      {"entity_delete", bolt, Run(41002), Announced("geoms.TR_Del([Bolt])")},
      {"entity_rename", bolt, renamed(L"Bolt", L"Pin"),
       Transaction("Modify_Geometry", "geoms.Private_Modify(Bolt, {name=Pin}, 0, 1)\n", PageOf("Pin"))},
      {"entity_and_its_set",
       {L"Frame", L"Sheet"},
       Run(41106),
       Look("SetRenderMode", inFrame, "0") + kRedraw + kModelInfo},
      {"entity_click", {}, [](GeometryHeard& test) { test.Click(L"Sheet"); }, Selected("Sheet", PageOf("Sheet"))},
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

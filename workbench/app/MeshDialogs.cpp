// What the dialogs on meshes ask for and do.

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QRegularExpression>
#include <map>
#include <memory>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/app/MeshDialog.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"
#include "workbench/model/MeshTransforms.h"
#include "workbench/session/PythonText.h"
#include "workbench/session/ScriptWords.h"

namespace qd::workbench {

namespace {

/// The argument of a line for the set that was chosen; none for the default one.
std::string InSet(iterator set) {
  return set != 0 ? ", " + ScriptRecord(set) : std::string();
}

MeantLine LineOfMove(const WorkDocument& doc, const NumberRuns& elements, iterator into, iterator from) {
  return {doc, into == 0 ? std::string()
                         : "doc.move_elements(" + ScriptRuns(elements) + ", " + ScriptRecord(into) +
                               (from != 0 ? ", out_of=" + ScriptRecord(from) : std::string()) + ")"};
}

MeshDialog* MakeNodeDialog(WorkDocument& doc, QWidget* parent) {
  auto* dialog = new MeshDialog(doc, "IDS_MENU_WRT_MESH_ADD_NODE", parent);
  const NumberRow* at = dialog->AddNumbers("IDS_WB_POINT", {0, 0, 0}, NumberKinds::kPoint);
  const QComboBox* set = dialog->AddSetField("IDS_DB_DATA_NAME_MESH", true);
  dialog->AddMeshAct("IDS_WB_APPLY", "apply", "IDS_WB_MESH_NODE_MADE", [&doc, at, set](const CString& title) {
    const MeantLine line(doc, "doc.add_node(" + ScriptPoint(at->Point()) + InSet(ChosenSet(*set)) + ")");
    return AddNode(doc.GetDatabase(), ChosenSet(*set), at->Point(), title);
  });
  return dialog;
}

MeshDialog* MakeElementDialog(WorkDocument& doc, QWidget* parent) {
  auto* dialog = new MeshDialog(doc, "IDS_MENU_WRT_MESH_ADD_ELEM", parent);
  const QComboBox* type = dialog->AddTypeField();
  QLineEdit* nodes = dialog->AddTextField("IDS_QD_WRT_MESH_NODE_COUNT", "IDS_WB_MESH_NODES_HINT");
  const QComboBox* set = dialog->AddSetField("IDS_DB_DATA_NAME_MESH", true);
  // Nodes that are picked one after another in the view are those of the element.
  const auto follows = std::make_shared<Subscription>(doc.GetPicks().Subscribe([nodes](const Picks& picks) {
    QStringList numbers;
    for (const Picked& one : picks.OfKind(PickFilter::Nodes)) numbers << QString::number(one.number);
    if (!numbers.isEmpty()) nodes->setText(numbers.join(", "));
  }));
  dialog->AddMeshAct(
      "IDS_WB_APPLY", "apply", "IDS_WB_MESH_ELEMENT_MADE",
      [&doc, type, nodes, set, follows](const CString& title) -> ActResult {
        std::vector<std::uint64_t> numbers;
        static const QRegularExpression kBetween("[,\\s]+");
        for (const QString& field : nodes->text().trimmed().split(kBetween)) {
          bool good = false;
          numbers.push_back(field.toULongLong(&good));
          if (!good) return {0, "IDS_WB_MESH_BAD_NUMBERS", nodes->text().toStdString()};
        }
        std::string listed;
        for (const std::uint64_t number : numbers)
          listed += (listed.empty() ? "[" : ", ") + std::to_string(number);
        const int kind = type->currentData().toInt();
        const MeantLine line(
            doc, "doc.add_element(" + std::to_string(kind) + ", " + listed + "]" + InSet(ChosenSet(*set)) + ")");
        return AddElement(doc.GetDatabase(), ChosenSet(*set), kind, numbers, title);
      },
      nodes);
  return dialog;
}

MeshDialog* MakeIncludeExcludeDialog(WorkDocument& doc, iterator mset, QWidget* parent) {
  auto* dialog = new MeshDialog(doc, "IDS_QD_WRT_MESH_INCLUDE_EXCLUDE", parent);
  dialog->SetOwn(mset);
  dialog->AddInfo([&doc, mset](QLabel& label) {
    if (doc.GetDatabase().GetDataType(mset) != kDataMset) return ClearText(label);
    const tagTMset& set = *doc.GetDatabase().GetMsetPool().GetAtNU(mset);
    const auto elements = static_cast<qulonglong>(set.elementCount);
    SetText(label, "IDS_WB_MESH_CONTENTS", {ToQt(set.name), QLocale().toString(elements)});
  });
  QLineEdit* elements = dialog->AddTextField("IDS_QD_WRT_MESH_ELEM_COUNT", "IDS_WB_MESH_RUNS_HINT");
  const QComboBox* other = dialog->AddSetField("IDS_WB_MESH_OTHER_SET", false, mset);
  const auto move = [&doc, elements](iterator target, iterator from, const CString& title) -> ActResult {
    NumberRuns runs;
    const std::string text = elements->text().toStdString();
    if (!ParseRuns(text, runs)) return {0, "IDS_WB_MESH_BAD_NUMBERS", text};
    const MeantLine line = LineOfMove(doc, runs, target, from);
    return MoveElements(doc.GetDatabase(), runs, target, from, title);
  };
  dialog->AddMeshAct(
      "IDS_WB_INCLUDE", "include", "IDS_WB_MESH_MOVED",
      [move, mset](const CString& title) { return move(mset, 0, title); }, elements);
  dialog->AddMeshAct(
      "IDS_WB_EXCLUDE", "exclude", "IDS_WB_MESH_MOVED",
      [move, mset, other](const CString& title) { return move(ChosenSet(*other), mset, title); }, elements);
  return dialog;
}

/// What clicks have picked, as it is when a button is pressed.
NumberRuns PickedElements(const WorkDocument& doc, iterator& owner) {
  std::vector<std::uint64_t> numbers;
  for (const Picked& one : doc.GetPicks().OfKind(PickFilter::Elements)) {
    if (numbers.empty()) owner = one.owner;
    numbers.push_back(one.number);
  }
  return RunsOf(std::move(numbers));
}

MeshDialog* MakePickedDialog(WorkDocument& doc, QWidget* parent) {
  auto* dialog = new MeshDialog(doc, "IDS_WB_PICKED_INTO_SET", parent);
  dialog->AddInfo([&doc](QLabel& label) {
    const auto count = static_cast<qulonglong>(doc.GetPicks().OfKind(PickFilter::Elements).size());
    SetText(label, "IDS_WB_PICKED_COUNT", {QLocale().toString(count)});
  });
  const auto follows =
      std::make_shared<Subscription>(doc.GetPicks().Subscribe([dialog](const Picks&) { dialog->Update(0); }));
  const QComboBox* set = dialog->AddSetField("IDS_DB_DATA_NAME_MESH", false);
  dialog->AddMeshAct("IDS_WB_PICKED_MOVE", "into", "IDS_WB_MESH_MOVED",
                     [&doc, set, follows](const CString& title) {
                       iterator owner = 0;
                       const NumberRuns elements = PickedElements(doc, owner);
                       const MeantLine line = LineOfMove(doc, elements, ChosenSet(*set), 0);
                       return MoveElements(doc.GetDatabase(), elements, ChosenSet(*set), 0, title);
                     });
  const QLineEdit* name = dialog->AddTextField("IDS_WB_PICKED_NEW_NAME", "IDS_WB_PICKED_NEW_HINT");
  dialog->AddMeshAct("IDS_WB_PICKED_MOVE_NEW", "intoNew", "IDS_WB_MESH_MOVED",
                     [&doc, name](const CString& title) -> ActResult {
                       iterator owner = 0;
                       const NumberRuns elements = PickedElements(doc, owner);
                       if (elements.empty()) return {0, "IDS_WB_MESH_NO_ELEMENTS"};
                       const QString text = name->text().trimmed();
                       const CString called = FromQt(text.isEmpty() ? Text("IDS_WB_PICKED_SET") : text);
                       const MeantLine line(doc, "doc.mesh_set(" + PythonText(called) + ", " +
                                                     ScriptRuns(elements) + ", " + ScriptRecord(owner) + ")");
                       return MoveElementsToNew(doc.GetDatabase(), elements, owner, called, title);
                     });
  return dialog;
}

// ---- transforms -----------------------------------------------------------------------------------------

MeshDialog* MakeTransformDialog(WorkDocument& doc, unsigned command, QWidget* parent) {
  static const std::map<unsigned, const char*> kTitles{{kCommandMeshTranslate, "IDS_QD_WRT_TRANSFORM_TRANSLATE"},
                                                       {kCommandMeshRotate, "IDS_QD_WRT_TRANSFORM_ROTATE"},
                                                       {kCommandMeshMirror, "IDS_QD_WRT_TRANSFORM_MIRROR"},
                                                       {kCommandMeshScale, "IDS_QD_WRT_TRANSFORM_SCALE"},
                                                       {kCommandMeshSweep, "IDS_QDMESH_TAB_GENERATE_2D_TO_3D"}};
  const auto title = kTitles.find(command);
  if (title == kTitles.end()) return nullptr;
  auto* dialog = new MeshDialog(doc, title->second, parent);
  dialog->AddSetsInView();
  const auto act = [dialog](std::function<ActResult(const std::vector<iterator>&, const CString&)> work) {
    dialog->AddMeshAct(
        "IDS_WB_APPLY", "apply", "IDS_WB_MESH_CHANGED",
        [dialog, work = std::move(work)](const CString& text) { return work(dialog->SetsInView(), text); });
  };
  // `call` is what the line of a script says behind the sets.
  const auto transform = [&doc](const std::vector<iterator>& sets, const Transform& how, const char* verb,
                                const std::string& call, const CString& text) {
    const MeantLine line(doc, std::string("doc.") + verb + "(" + ScriptRecords(sets) + ", " + call + ")");
    return TransformMeshes(doc.GetDatabase(), sets, how, text);
  };
  if (command == kCommandMeshTranslate) {
    const NumberRow* way = dialog->AddNumbers("IDS_WB_VECTOR", {10, 0, 0}, NumberKinds::kWay);
    act([=](const auto& sets, const CString& text) {
      return transform(sets, Translation(way->Point()), "translate", ScriptPoint(way->Point()), text);
    });
  } else if (command == kCommandMeshRotate) {
    const NumberRow* point = dialog->AddNumbers("IDS_WB_POINT", {0, 0, 0}, NumberKinds::kPoint);
    const NumberRow* axis = dialog->AddNumbers("IDS_WB_DIRECTION", {0, 0, 1}, NumberKinds::kDirection);
    const NumberRow* angle = dialog->AddNumbers("IDS_WB_ANGLE", {90}, NumberKinds::kAngle);
    act([=](const auto& sets, const CString& text) {
      return transform(
          sets, Rotation(point->Point(), axis->Point(), angle->Value()), "rotate",
          ScriptPoint(point->Point()) + ", " + ScriptPoint(axis->Point()) + ", " + PythonNumber(angle->Value()),
          text);
    });
  } else if (command == kCommandMeshMirror) {
    const NumberRow* point = dialog->AddNumbers("IDS_WB_POINT", {0, 0, 0}, NumberKinds::kPoint);
    const NumberRow* normal = dialog->AddNumbers("IDS_WB_NORMAL", {1, 0, 0}, NumberKinds::kDirection);
    act([=](const auto& sets, const CString& text) {
      return transform(sets, Reflection(point->Point(), normal->Point()), "mirror",
                       ScriptPoint(point->Point()) + ", " + ScriptPoint(normal->Point()), text);
    });
  } else if (command == kCommandMeshScale) {
    const NumberRow* point = dialog->AddNumbers("IDS_WB_POINT", {0, 0, 0}, NumberKinds::kPoint);
    const NumberRow* factor = dialog->AddNumbers("IDS_WB_FACTOR", {2}, NumberKinds::kFactor);
    act([=](const auto& sets, const CString& text) {
      return transform(sets, Scaling(point->Point(), factor->Value()), "scale",
                       ScriptPoint(point->Point()) + ", " + PythonNumber(factor->Value()), text);
    });
  } else {
    const NumberRow* way = dialog->AddNumbers("IDS_WB_VECTOR", {0, 0, 10}, NumberKinds::kWay);
    const NumberRow* layers = dialog->AddNumbers("IDS_QD_MESH_LAYERED_NUM_LAYERS", {2},
                                                 {Quantity::Plain, {.least = 1, .greatest = 1000, .whole = true}});
    act([&doc, way, layers](const auto& sets, const CString& text) {
      const int count = static_cast<int>(layers->Value());
      const MeantLine line(doc, "doc.sweep(" + ScriptRecords(sets) + ", " + ScriptPoint(way->Point()) +
                                    ", layers=" + std::to_string(count) + ")");
      return SweepMeshes(doc.GetDatabase(), sets, way->Point(), count, text);
    });
  }
  return dialog;
}

}  // namespace

MeshDialog* MakeMeshDialog(WorkDocument& doc, const CString& dialogClass, iterator mset, unsigned command,
                           QWidget* parent) {
  MeshDialog* dialog = nullptr;
  if (dialogClass == L"CQDMeshNodeDlg") dialog = MakeNodeDialog(doc, parent);
  if (dialogClass == L"CQDMeshElemDlg") dialog = MakeElementDialog(doc, parent);
  if (dialogClass == L"CQDMeshIncludeExcludeDlg") dialog = MakeIncludeExcludeDialog(doc, mset, parent);
  if (dialogClass == L"CQDMeshPickedDlg") dialog = MakePickedDialog(doc, parent);
  if (dialogClass == L"CQDMeshTransformDlg") dialog = MakeTransformDialog(doc, command, parent);
  if (dialog != nullptr) dialog->FinishFields();
  return dialog;
}

}  // namespace qd::workbench

// What the dialogs on meshes ask for and do.

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QRegularExpression>
#include <cmath>
#include <map>
#include <memory>
#include <numbers>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/app/MeshDialog.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"

namespace qd::workbench {

namespace {

MeshDialog* MakeNodeDialog(WorkDocument& doc, QWidget* parent) {
  auto* dialog = new MeshDialog(doc, "IDS_MENU_WRT_MESH_ADD_NODE", parent);
  const NumberRow* at = dialog->AddNumbers("IDS_WB_POINT", {0, 0, 0}, NumberKinds::kPoint);
  const QComboBox* set = dialog->AddSetField("IDS_DB_DATA_NAME_MESH", true);
  dialog->AddMeshAct("IDS_WB_APPLY", "apply", "IDS_WB_MESH_NODE_MADE", [&doc, at, set](const CString& title) {
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
        return AddElement(doc.GetDatabase(), ChosenSet(*set), type->currentData().toInt(), numbers, title);
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
  dialog->AddMeshAct(
      "IDS_WB_PICKED_MOVE", "into", "IDS_WB_MESH_MOVED", [&doc, set, follows](const CString& title) {
        iterator owner = 0;
        return MoveElements(doc.GetDatabase(), PickedElements(doc, owner), ChosenSet(*set), 0, title);
      });
  const QLineEdit* name = dialog->AddTextField("IDS_WB_PICKED_NEW_NAME", "IDS_WB_PICKED_NEW_HINT");
  dialog->AddMeshAct("IDS_WB_PICKED_MOVE_NEW", "intoNew", "IDS_WB_MESH_MOVED",
                     [&doc, name](const CString& title) -> ActResult {
                       iterator owner = 0;
                       const NumberRuns elements = PickedElements(doc, owner);
                       if (elements.empty()) return {0, "IDS_WB_MESH_NO_ELEMENTS"};
                       const QString text = name->text().trimmed();
                       const CString called = FromQt(text.isEmpty() ? Text("IDS_WB_PICKED_SET") : text);
                       return MoveElementsToNew(doc.GetDatabase(), elements, owner, called, title);
                     });
  return dialog;
}

// ---- transforms -----------------------------------------------------------------------------------------

using Point = std::array<double, 3>;

/// Applies three rows about a point.
Transform About(const Point& point, const std::array<Point, 3>& rows) {
  Transform transform{};
  for (std::size_t i = 0; i < 3; ++i) {
    transform[i][3] = point[i];
    for (std::size_t k = 0; k < 3; ++k) {
      transform[i][k] = rows[i][k];
      transform[i][3] -= rows[i][k] * point[k];
    }
  }
  return transform;
}

Point Normalised(Point a) {
  const double length = std::hypot(a[0], a[1], a[2]);
  for (double& part : a) part /= length;
  return a;
}

std::array<Point, 3> Rotation(const Point& axis, double degrees) {
  const double angle = degrees * std::numbers::pi / 180;
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  std::array<Point, 3> rows{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) rows[i][k] = (1 - c) * axis[i] * axis[k] + (i == k ? c : 0);
    rows[i][(i + 1) % 3] -= s * axis[(i + 2) % 3];
    rows[i][(i + 2) % 3] += s * axis[(i + 1) % 3];
  }
  return rows;
}

std::array<Point, 3> Reflection(const Point& normal) {
  std::array<Point, 3> rows{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) rows[i][k] = (i == k ? 1 : 0) - 2 * normal[i] * normal[k];
  }
  return rows;
}

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
  const auto transform = [&doc](const std::vector<iterator>& sets, const Transform& how, const CString& text) {
    return TransformMeshes(doc.GetDatabase(), sets, how, text);
  };
  constexpr std::array<Point, 3> kUnit{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  if (command == kCommandMeshTranslate) {
    const NumberRow* way = dialog->AddNumbers("IDS_WB_VECTOR", {10, 0, 0}, NumberKinds::kWay);
    act([=](const auto& sets, const CString& text) {
      Transform how = About({0, 0, 0}, kUnit);
      for (std::size_t i = 0; i < 3; ++i) how[i][3] = way->Point()[i];
      return transform(sets, how, text);
    });
  } else if (command == kCommandMeshRotate) {
    const NumberRow* point = dialog->AddNumbers("IDS_WB_POINT", {0, 0, 0}, NumberKinds::kPoint);
    const NumberRow* axis = dialog->AddNumbers("IDS_WB_DIRECTION", {0, 0, 1}, NumberKinds::kDirection);
    const NumberRow* angle = dialog->AddNumbers("IDS_WB_ANGLE", {90}, NumberKinds::kAngle);
    act([=](const auto& sets, const CString& text) {
      return transform(sets, About(point->Point(), Rotation(Normalised(axis->Point()), angle->Value())), text);
    });
  } else if (command == kCommandMeshMirror) {
    const NumberRow* point = dialog->AddNumbers("IDS_WB_POINT", {0, 0, 0}, NumberKinds::kPoint);
    const NumberRow* normal = dialog->AddNumbers("IDS_WB_NORMAL", {1, 0, 0}, NumberKinds::kDirection);
    act([=](const auto& sets, const CString& text) {
      return transform(sets, About(point->Point(), Reflection(Normalised(normal->Point()))), text);
    });
  } else if (command == kCommandMeshScale) {
    const NumberRow* point = dialog->AddNumbers("IDS_WB_POINT", {0, 0, 0}, NumberKinds::kPoint);
    const NumberRow* factor = dialog->AddNumbers("IDS_WB_FACTOR", {2}, NumberKinds::kFactor);
    act([=](const auto& sets, const CString& text) {
      std::array<Point, 3> rows = kUnit;
      for (std::size_t i = 0; i < 3; ++i) rows[i][i] = factor->Value();
      return transform(sets, About(point->Point(), rows), text);
    });
  } else {
    const NumberRow* way = dialog->AddNumbers("IDS_WB_VECTOR", {0, 0, 10}, NumberKinds::kWay);
    const NumberRow* layers = dialog->AddNumbers("IDS_QD_MESH_LAYERED_NUM_LAYERS", {2},
                                                 {Quantity::Plain, {.least = 1, .greatest = 1000, .whole = true}});
    act([&doc, way, layers](const auto& sets, const CString& text) {
      return SweepMeshes(doc.GetDatabase(), sets, way->Point(), static_cast<int>(layers->Value()), text);
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

#include "workbench/app/DialogHost.h"

#include <QColorDialog>
#include <algorithm>
#include <list>
#include <map>

#include "platform/qt/QtConvert.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/app/CheckDialog.h"
#include "workbench/app/ContactDialog.h"
#include "workbench/app/CordDialog.h"
#include "workbench/app/IncludeExcludeDialog.h"
#include "workbench/app/MaterialDialog.h"
#include "workbench/app/MeasureDialog.h"
#include "workbench/app/MeshDialog.h"
#include "workbench/app/OperationDialog.h"
#include "workbench/app/QualityRangeDialog.h"
#include "workbench/app/Translated.h"
#include "workbench/session/RecordColour.h"

namespace qd::workbench {

namespace {

using Kind = ShapeOperationKind;

/// Forms of the transform dialog by command.
const std::map<unsigned, OperationForm>& Transforms() {
  static const std::map<unsigned, OperationForm> kForms{{kCommandTranslate,
                                                         {.titleKey = "IDS_QD_WRT_TRANSFORM_TRANSLATE",
                                                          .kind = Kind::Translate,
                                                          .vectorKey = "IDS_WB_VECTOR",
                                                          .vector = {10, 0, 0},
                                                          .vectorKind = NumberKinds::kWay}},
                                                        {kCommandRotate,
                                                         {.titleKey = "IDS_QD_WRT_TRANSFORM_ROTATE",
                                                          .kind = Kind::Rotate,
                                                          .pointKey = "IDS_WB_POINT",
                                                          .vectorKey = "IDS_WB_DIRECTION",
                                                          .amountKey = "IDS_WB_ANGLE",
                                                          .amount = 90,
                                                          .amountKind = NumberKinds::kAngle}},
                                                        {kCommandMirror,
                                                         {.titleKey = "IDS_QD_WRT_TRANSFORM_MIRROR",
                                                          .kind = Kind::Mirror,
                                                          .pointKey = "IDS_WB_POINT",
                                                          .vectorKey = "IDS_WB_NORMAL",
                                                          .vector = {1, 0, 0}}},
                                                        {kCommandScale,
                                                         {.titleKey = "IDS_QD_WRT_TRANSFORM_SCALE",
                                                          .kind = Kind::Scale,
                                                          .pointKey = "IDS_WB_POINT",
                                                          .amountKey = "IDS_WB_FACTOR",
                                                          .amount = 2,
                                                          .amountKind = NumberKinds::kFactor}},
                                                        {kCommandSweep,
                                                         {.titleKey = "IDS_QD_WRT_TRANSFORM_SWEEP_TRANSLATE",
                                                          .kind = Kind::Sweep,
                                                          .vectorKey = "IDS_WB_VECTOR",
                                                          .vector = {0, 0, 10},
                                                          .vectorKind = NumberKinds::kWay}}};
  return kForms;
}

/// Forms of the other dialogs by class name.
const std::map<CString, OperationForm>& Forms() {
  static const std::map<CString, OperationForm> kForms{
      {L"CSimplifyDlg",
       {.titleKey = "IDS_QD_WRT_MODEL_SIMPLY",
        .kind = Kind::Simplify,
        .amountKey = "IDS_WB_FACE_AREA",
        .amount = 1,
        .amountKind = {Quantity::Area, NumberLimits::Positive()}}},
      {L"CQDGeomProjectDlg",
       {.titleKey = "IDS_WB_PROJECT", .kind = Kind::Project, .vectorKey = "IDS_WB_DIRECTION", .target = true}},
      {L"CQDGeomAttachDlg",
       {.titleKey = "IDS_QD_WRT_TRANSFORM_ATTACH", .kind = Kind::Translate, .target = true, .alignment = true}}};
  return kForms;
}

/// The form of the generators of meshes.
const OperationForm& MeshForm() {
  static const OperationForm kForm{.titleKey = "IDS_QD_WRT_MESH_TETRA_GENERATE",
                                   .kind = Kind::Mesh,
                                   .amountKey = "IDS_WB_ELEMENT_SIZE",
                                   .amount = 5,
                                   .amountKind = {Quantity::Length, NumberLimits::Positive()},
                                   .solidsOnly = true};
  return kForm;
}

/// How a mesh set was made, as far as its record says.
void FillFormOf(Database& database, iterator set, OperationForm& form) {
  const tagTMset* record = database.GetMsetPool().GetAtNU(set);
  const MGInfoPool& pool = database.GetMGInfoPool();
  tagMGInfo generation;
  if (record == nullptr || pool.GetAt(pool.GetItrByKey(record->mgInfo), generation) == 0) return;
  constexpr int kSurfaces = 1;
  form.dimension = generation.kind == kSurfaces ? 2 : 3;
  form.mapped = generation.method == tagMGInfo::kMapSolid;
  const auto find = [&generation](const char* key, auto& value) {
    const auto option = generation.options.find(key);
    if (option == generation.options.end()) return;
    if (const auto* known = std::get_if<std::decay_t<decltype(value)>>(&option->second)) value = *known;
  };
  find("IDS_QDMESH_MESHSIZE_ST", form.amount);
  form.amountOfModel = true;
  find("IDS_HWB_MESH_HIGH_ORDER", form.secondOrder);
}

}  // namespace

DialogHost::DialogHost(WorkDocument& doc, OperationRunner& runner, QWidget* window)
    : m_doc(doc), m_runner(runner), m_window(window) {}

/// All of them, also those that are closed and only wait to be deleted: they look at the document. Hidden while
/// they are whole, they keep their sizes.
DialogHost::~DialogHost() {
  const auto dialogs = m_window->findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly);
  for (QDialog* dialog : dialogs) dialog->hide();
  qDeleteAll(dialogs);
}

/// One dialog of a class at a time: a new one takes the place of the old.
void DialogHost::Show(QDialog* dialog, const CString& dialogClass) {
  CloseDialog(&m_doc, dialogClass);
  m_open[dialogClass] = dialog;
  dialog->show();
}

void DialogHost::CloseDialog(CQDDocBase*, const CString& dialogClass) {
  if (QDialog* open = m_open[dialogClass]) open->close();
}

void DialogHost::CloseAll() {
  for (const auto& [dialogClass, dialog] : m_open) {
    if (dialog != nullptr) dialog->close();
  }
}

void DialogHost::OpenCheck(MeshCheck check) {
  auto* dialog = new CheckDialog(m_doc, check, m_window);
  QObject::connect(dialog, &CheckDialog::Said, dialog, [this](const Message& message) { m_said(message); });
  Show(dialog, L"CheckDialog");
}

void DialogHost::CloseMeshDialog(CQDDocBase* doc, const CString& dialogClass) {
  CloseDialog(doc, dialogClass);
}

std::vector<iterator> DialogHost::PartsOfKeys(const std::vector<iterator>& keys) const {
  std::vector<iterator> parts(keys.size());
  std::transform(keys.begin(), keys.end(), parts.begin(), GKeyPool::GeomOfKey);
  return parts;
}

// ---- what the module asks for ---------------------------------------------------------------------------

/// Its rows hand over the material to edit, all others the parts to apply one to.
void DialogHost::OpenDialog(int, CQDDocBase*, const CString& dialogClass, void* data) {
  if (dialogClass != L"CLbcMaterialMainDlg") return;
  iterator material = 0;
  std::vector<iterator> parts;
  for (const iterator itr : *static_cast<const std::list<iterator>*>(data)) {
    if (m_doc.GetDatabase().GetDataType(itr) == kDataMaterial) {
      material = itr;
    } else {
      parts.push_back(itr);
    }
  }
  Show(new MaterialDialog(m_doc, material, std::move(parts), m_window), dialogClass);
}

void DialogHost::OpenContacts() {
  Show(new ContactDialog(m_doc, m_window), L"ContactDialog");
}

void DialogHost::OpenColourRange() {
  Show(new QualityRangeDialog(m_doc, m_window), L"QualityRangeDialog");
}

void DialogHost::OpenMeasure() {
  Show(new MeasureDialog(m_doc, m_window), L"MeasureDialog");
}

void DialogHost::SetSelectAssignedContact(CQDDocBase*, std::list<iterator>&) {
  OpenContacts();
}

void DialogHost::OpenMeshDialog(int, CQDDocBase*, const CString& dialogClass, void* data) {
  const auto* keys = static_cast<const std::list<iterator>*>(data);
  Show(new OperationDialog(m_doc, m_runner, MeshForm(), {PartsOfKeys({keys->begin(), keys->end()})}, m_window),
       dialogClass);
}

/// The generators of surface and solid meshes, automatic or mapped as the last command says. What is made anew is
/// made as its record says, which knows surfaces, too; the dialog's name does not.
void DialogHost::OpenMeshing(const CString& dialogClass, const tagTMeshGUI& arguments, const iterator* set) {
  const unsigned command = IQueryMenuID2Idx::Instance().GetLastCommand();
  OperationForm form = MeshForm();
  form.dimension = dialogClass == L"CQDMeshGen2DDlg" ? 2 : 3;
  form.mapped = command == kCommandMeshMap2D || command == kCommandMeshMap3D;
  if (arguments.remesh && set != nullptr) FillFormOf(m_doc.GetDatabase(), *set, form);
  form.solidsOnly = form.dimension == 3;
  const char* titles[2][2] = {{"IDS_MENU_WRT_MESH_ADD_2D_AUTO", "IDS_MENU_WRT_MESH_ADD_2D_MAP"},
                              {"IDS_MENU_WRT_MESH_ADD_3D_AUTO", "IDS_MENU_WRT_MESH_ADD_3D_MAP"}};
  form.titleKey = titles[form.dimension - 2][form.mapped ? 1 : 0];
  OperationParts parts;
  parts.elseAll = !arguments.remesh;
  parts.follows = !arguments.remesh;
  if (arguments.remesh) parts.given = arguments.targets;
  Show(new OperationDialog(m_doc, m_runner, form, parts, m_window), dialogClass);
}

void DialogHost::OpenColour(const CString& dialogClass, iterator record) {
  const std::optional<COLORREF> colour = ColourOf(m_doc.GetDatabase(), record);
  if (!colour.has_value()) return;
  auto* dialog = new QColorDialog(ToQt(*colour), m_window);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  SetTitle(*dialog, "IDS_WB_PICK_COLOUR");
  QObject::connect(dialog, &QColorDialog::colorSelected, m_window, [this, record](const QColor& chosen) {
    static_cast<void>(Recolour(m_doc.GetDatabase(), record, FromQt(chosen)));
  });
  Show(dialog, dialogClass);
}

void DialogHost::Open(CQDDocBase*, const CString& dialogClass, const void* first, const void* second) {
  if (dialogClass == L"CQDMeshGen2DDlg" || dialogClass == L"CQDMeshGen3DDlg") {
    return OpenMeshing(dialogClass, *static_cast<const tagTMeshGUI*>(first), static_cast<const iterator*>(second));
  }
  if (dialogClass == L"CQDCmdColorDlg") return OpenColour(dialogClass, *static_cast<const iterator*>(first));
  if (dialogClass == L"CQDCmdCordDlg") {
    const auto* arguments = static_cast<const tagTCordGUI*>(first);
    const bool edit = arguments != nullptr && arguments->mode == tagTCordGUI::kEdit;
    return Show(new CordDialog(m_doc, edit ? arguments->itr : 0, m_window), dialogClass);
  }
  const bool forSet = dialogClass == L"CQDMeshIncludeExcludeDlg";
  if (MeshDialog* dialog = MakeMeshDialog(m_doc, dialogClass, forSet ? *static_cast<const iterator*>(first) : 0,
                                          IQueryMenuID2Idx::Instance().GetLastCommand(), m_window)) {
    return Show(dialog, dialogClass);
  }
  if (dialogClass == L"CQDGeomIncludeExcludeDlg") {
    return Show(new IncludeExcludeDialog(m_doc, *static_cast<const iterator*>(first), m_window), dialogClass);
  }
  const auto* operands = static_cast<const tagTGeomGUI*>(first);
  OperationParts parts;
  parts.elseAll = operands == nullptr;
  if (operands != nullptr) parts.given = PartsOfKeys(operands->keys);
  if (dialogClass == L"CQDGeomTransformDlg") {
    const auto form = Transforms().find(IQueryMenuID2Idx::Instance().GetLastCommand());
    if (form != Transforms().end()) {
      Show(new OperationDialog(m_doc, m_runner, form->second, parts, m_window), dialogClass);
    }
    return;
  }
  const auto form = Forms().find(dialogClass);
  if (form != Forms().end())
    Show(new OperationDialog(m_doc, m_runner, form->second, parts, m_window), dialogClass);
}

}  // namespace qd::workbench

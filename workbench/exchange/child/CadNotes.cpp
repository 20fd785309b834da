#include "workbench/exchange/child/CadNotes.h"

#include <BRepCheck_Analyzer.hxx>
#include <IGESData_IGESEntity.hxx>
#include <IGESGeom_CurveOnSurface.hxx>
#include <IGESGeom_TrimmedSurface.hxx>
#include <Interface_Check.hxx>
#include <Interface_CheckIterator.hxx>
#include <Interface_InterfaceModel.hxx>
#include <Standard_Failure.hxx>
#include <StepRepr_NextAssemblyUsageOccurrence.hxx>
#include <StepShape_EdgeCurve.hxx>
#include <StepShape_Face.hxx>
#include <StepShape_ShellBasedSurfaceModel.hxx>
#include <StepShape_SolidModel.hxx>
#include <TCollection_HAsciiString.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>

namespace qd::workbench {

namespace {

/// Number and type, as the file has them: "#43 ADVANCED_FACE".
std::string NameOf(const Handle(Interface_InterfaceModel) & model, const Handle(Standard_Transient) & entity) {
  const Handle(TCollection_HAsciiString) label = model->StringLabel(entity);
  std::string name = label.IsNull() ? std::string() : label->ToCString();
  if (const char* type = model->TypeName(entity, false); type != nullptr) name += std::string(" ") + type;
  while (!name.empty() && name.back() == ' ') name.pop_back();
  return name;
}

/// What gives a shape in every sound file.
bool GivesShape(const Handle(Standard_Transient) & entity) {
  return entity->IsKind(STANDARD_TYPE(StepShape_Face)) || entity->IsKind(STANDARD_TYPE(StepShape_EdgeCurve)) ||
         entity->IsKind(STANDARD_TYPE(StepShape_SolidModel)) ||
         entity->IsKind(STANDARD_TYPE(StepShape_ShellBasedSurfaceModel)) ||
         entity->IsKind(STANDARD_TYPE(StepRepr_NextAssemblyUsageOccurrence)) ||
         entity->IsKind(STANDARD_TYPE(IGESGeom_TrimmedSurface)) ||
         entity->IsKind(STANDARD_TYPE(IGESGeom_CurveOnSurface));
}

void NoteEntities(const Handle(Interface_InterfaceModel) & model,
                  const Handle(Transfer_TransientProcess) & process, NoteCounts& notes) {
  for (int i = 1; i <= model->NbEntities(); ++i) {
    const Handle(Standard_Transient) entity = model->Value(i);
    if (model->IsErrorEntity(i)) {
      notes.Add("IDS_WB_NOTE_DAMAGED", NameOf(model, entity));
    } else if (model->IsUnknownEntity(i)) {
      notes.Add("IDS_WB_NOTE_UNKNOWN", NameOf(model, entity));
    }
    if (!GivesShape(entity)) continue;
    const Handle(Transfer_Binder) binder = process->Find(entity);
    if (binder.IsNull() || !binder->HasResult()) notes.Add("IDS_WB_NOTE_NO_SHAPE", NameOf(model, entity));
  }
}

void NoteFails(const Handle(Interface_Check) & check, const std::string& key, NoteCounts& notes) {
  for (int i = 1; i <= check->NbFails(); ++i) notes.Add(key, check->CFail(i));
}

}  // namespace

void NoteFaults(const XSControl_Reader& reader, NoteCounts& notes) {
  const Handle(XSControl_WorkSession) session = reader.WS();
  const Handle(Interface_InterfaceModel) model = session->Model();
  const Handle(Transfer_TransientProcess) process = session->TransferReader()->TransientProcess();
  NoteFails(model->GlobalCheck(true), "IDS_WB_NOTE_DAMAGED", notes);
  NoteEntities(model, process, notes);
  const Interface_CheckIterator checks = process->CheckList(true);
  for (checks.Start(); checks.More(); checks.Next()) {
    NoteFails(checks.Value(), "IDS_WB_NOTE_TRANSFER", notes);
  }
}

bool IsSoundShape(const TopoDS_Shape& shape) {
  try {
    return BRepCheck_Analyzer(shape).IsValid();
  } catch (const Standard_Failure&) {
    return false;
  }
}

}  // namespace qd::workbench

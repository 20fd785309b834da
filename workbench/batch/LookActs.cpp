#include "workbench/batch/LookActs.h"

#include <algorithm>
#include <cmath>

#include "platform/FlatMap.h"
#include "qd_wrt/core/CQDTreeItem.h"

namespace qd::workbench {

namespace {

constexpr double kOpaque = 255;  // of mesh sets

const tagTGeom* PartAt(const WorkDocument& doc, iterator itr) {
  return doc.GetDatabase().GetGeomPool().GetAtNU(itr);
}

std::uint32_t KeyAt(const WorkDocument& doc, iterator itr) {
  const tagTMset* set = doc.GetDatabase().GetMsetPool().GetAtNU(itr);
  return set != nullptr ? set->key & kMsetKeyMask : 0;
}

/// Ends the act that a change is, unless a script's own goes on.
void End(WorkDocument& doc) {
  if (!doc.GetDatabase().IsInTransaction()) doc.GetDisplay().Deliver();
}

}  // namespace

unsigned ModeOf(const WorkDocument& doc, iterator itr) {
  if (const tagTGeom* part = PartAt(doc, itr)) return doc.GetDisplay().Parts().GetRenderMode(part->cadItem);
  return MeshLookOf(doc, itr).mode;
}

void SetMode(WorkDocument& doc, iterator itr, unsigned mode) {
  if (const tagTGeom* part = PartAt(doc, itr)) {
    doc.GetDisplay().Parts().SetRenderMode({part->cadItem}, mode);
  } else {
    doc.GetDisplay().Meshes().SetRenderMode({KeyAt(doc, itr)}, mode);
  }
  End(doc);
}

double OpacityOf(const WorkDocument& doc, iterator itr) {
  if (const tagTGeom* part = PartAt(doc, itr)) return doc.GetDisplay().Parts().GetLook(part->cadItem).opacity;
  return MeshLookOf(doc, itr).opacity / kOpaque;
}

void SetOpacity(WorkDocument& doc, iterator itr, double opacity) {
  if (const tagTGeom* part = PartAt(doc, itr)) {
    doc.GetDisplay().Parts().SetTransparency({part->cadItem}, opacity);
  } else {
    const auto value = static_cast<unsigned char>(std::lround(opacity * kOpaque));
    doc.GetDisplay().Meshes().SetTransparency({KeyAt(doc, itr)}, value);
  }
  End(doc);
}

MeshDisplay::Look MeshLookOf(const WorkDocument& doc, iterator set) {
  return doc.GetDisplay().Meshes().GetLook(KeyAt(doc, set));
}

void SetShrunk(WorkDocument& doc, iterator set, bool shrunk) {
  if (MeshLookOf(doc, set).shrink != shrunk) doc.GetDisplay().Meshes().ToggleShrink({KeyAt(doc, set)});
  End(doc);
}

void SetMarks(WorkDocument& doc, iterator set, std::uint32_t bits) {
  MeshDisplay& meshes = doc.GetDisplay().Meshes();
  if (set == 0) {
    meshes.DelAddOnInfoAll(kAddOnAll);
    meshes.SetAddOnInfoAll(bits);
  } else {
    meshes.DelAddOnInfo({KeyAt(doc, set)}, ~bits);
    meshes.SetAddOnInfo({KeyAt(doc, set)}, bits);
  }
  End(doc);
}

void Isolate(WorkDocument& doc, const std::vector<iterator>& records) {
  Display& display = doc.GetDisplay();
  const Database& data = doc.GetDatabase();
  FlatMap meant;
  for (const iterator itr : records) meant.Assign(itr, 1);
  display.BeginIsolation();
  display.Parts().BeginShowHide();
  for (const iterator part : data.GetGeomPool().GetItrList()) {
    display.Parts().SetShowHide(data.GetGeomPool().GetAtNU(part)->cadItem, meant.Contains(part) ? 1 : 0);
  }
  display.Parts().EndShowHide();
  for (const iterator set : data.GetMsetPool().GetItrList()) {
    display.Meshes().ShowHideMset(set, meant.Contains(set) ? 1 : 0);
  }
  End(doc);
}

void LeaveIsolation(WorkDocument& doc) {
  doc.GetDisplay().LeaveIsolation();
  End(doc);
}

void SetBox(WorkDocument& doc, const RowBox& box, bool checked) {
  doc.GetDisplay().Boxes().SetBox(box, checked ? kChecked : kUnchecked);
  End(doc);
}

void ColourMeshes(WorkDocument& doc, const MeshDisplay::Colouring& colouring) {
  doc.GetDisplay().Meshes().PutColouring(colouring);
  End(doc);
}

void ColourParts(WorkDocument& doc, bool byMaterial) {
  doc.GetDisplay().Parts().SetAllColorModelType(byMaterial ? 1 : 0);
  End(doc);
}

void FadeMeshed(WorkDocument& doc, bool fades) {
  doc.GetDisplay().Parts().SetFadesMeshed(fades);
  End(doc);
}

}  // namespace qd::workbench

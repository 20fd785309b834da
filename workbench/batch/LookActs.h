#pragma once

#include <vector>

#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

// How records are shown, as menus change it. Outside of an act each is one that undo takes back; in one it belongs
// to that. Numbers of modes are those of ScriptWords.h.

unsigned ModeOf(const WorkDocument& doc, iterator itr);
void SetMode(WorkDocument& doc, iterator itr, unsigned mode);
/// 0 is transparent, 1 opaque.
double OpacityOf(const WorkDocument& doc, iterator itr);
void SetOpacity(WorkDocument& doc, iterator itr, double opacity);
MeshDisplay::Look MeshLookOf(const WorkDocument& doc, iterator set);
/// Whether elements are drawn smaller, each by itself.
void SetShrunk(WorkDocument& doc, iterator set, bool shrunk);
/// Bits of what is drawn beside elements: of one set, or for 0 of all, those to come too.
void SetMarks(WorkDocument& doc, iterator set, std::uint32_t bits);
/// Shows some parts and mesh sets only, until the isolation is left.
void Isolate(WorkDocument& doc, const std::vector<iterator>& records);
void LeaveIsolation(WorkDocument& doc);
void SetBox(WorkDocument& doc, const RowBox& box, bool checked);
void ColourMeshes(WorkDocument& doc, const MeshDisplay::Colouring& colouring);
void ColourParts(WorkDocument& doc, bool byMaterial);
void FadeMeshed(WorkDocument& doc, bool fades);

}  // namespace qd::workbench

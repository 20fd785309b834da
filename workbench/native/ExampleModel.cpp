#include "workbench/native/ExampleModel.h"

#include <array>
#include <utility>

#include "host/Act.h"
#include "host/CMSGFunction.h"
#include "workbench/exchange/formats/InpFile.h"
#include "workbench/exchange/pipe/Protocol.h"
#include "workbench/exchange/store/StoreImport.h"

namespace qd::workbench {

namespace {

struct Body {
  const char* name;
  const char* assembly;
  COLORREF colour;
  TopologyKind kind;
  std::array<double, 3> size;  // of a box; mm
};

constexpr std::array kBodies{
    Body{"Housing", "Pump", Rgb(0x8C, 0x9B, 0xAE), TopologyKind::Solid, {120, 90, 80}},
    Body{"Cover", "Pump", Rgb(0xB0, 0xB8, 0xC4), TopologyKind::Solid, {120, 90, 8}},
    Body{"Gasket", "Pump", Rgb(0x3A, 0x3F, 0x46), TopologyKind::Surface, {120, 90, 0}},
    Body{"Impeller", "Pump/Rotor", Rgb(0xC7, 0x7C, 0x2B), TopologyKind::Solid, {60, 60, 18}},
    Body{"Shaft", "Pump/Rotor", Rgb(0x6E, 0x7F, 0x80), TopologyKind::Solid, {12, 12, 160}},
    Body{"Axis", "Pump/Rotor", Rgb(0xC0, 0x20, 0x20), TopologyKind::Curve, {0, 0, 180}},
};

/// The measures of a box, a rectangle or a straight line; there is no geometry kernel here to take them from.
PartShape ShapeOf(const Body& body) {
  const auto [x, y, z] = body.size;
  PartShape shape;
  shape.volume = x * y * z;
  shape.area = body.kind == TopologyKind::Curve     ? 0
               : body.kind == TopologyKind::Surface ? x * y
                                                    : 2 * (x * y + y * z + x * z);
  shape.length = body.kind == TopologyKind::Curve     ? z
                 : body.kind == TopologyKind::Surface ? 2 * (x + y)
                                                      : 4 * (x + y + z);
  return shape;
}

/// Materials of the parts, which imports do not know.
bool AddMaterials(Database& database) {
  tagTMaterial iron;
  iron.name = L"Cast iron";
  iron.youngsModulus = 170e3;
  iron.poissonsRatio = 0.28;
  iron.density = 7.2e-9;
  tagTMaterial bronze;
  bronze.name = L"Bronze";
  bronze.youngsModulus = 110e3;
  bronze.poissonsRatio = 0.34;
  bronze.density = 8.8e-9;
  const iterator cast = database.GetMaterialPool().Add(iron);
  const iterator turned = database.GetMaterialPool().Add(bronze);
  if (cast == 0 || turned == 0) return false;
  for (const iterator itr : database.GetGeomPool().GetItrList()) {
    tagTGeom part = *database.GetGeomPool().GetAtNU(itr);
    if (part.kind != TopologyKind::Solid) continue;
    part.material = part.name == L"Impeller" ? turned : cast;
    if (!database.GetGeomPool().Change(itr, part)) return false;
  }
  return true;
}

bool AddSystem(Database& database) {
  tagTCord system;
  system.SetName(L"Shaft axis");
  system.kind = CordKind::Cylindrical;
  system.parent = database.GetCordPool().GetItrList().front();
  system.origin = {60, 45, 0};
  return database.GetCordPool().Add(system) != 0;
}

}  // namespace

int BuildExample(Database& database, const std::string& deck) {
  const CString title = CMSGFunction::GetValue("IDS_WB_OPEN_EXAMPLE");
  ImportedModel model;
  try {
    model = ReadInpText(deck, "bracket");
  } catch (const ImportError&) {
    return 0;
  }
  for (const Body& body : kBodies) {
    ImportedPart& part = model.parts.emplace_back();
    part.name = body.name;
    if (*body.assembly != 0) part.assemblies = {{body.assembly, "", 0}};
    part.colour = body.colour;
    part.kind = body.kind;
    part.shape = ShapeOf(body);
  }
  if (StoreImport(database, std::move(model), title) == 0) return 0;
  return RunAct(&database, title, [&] { return AddMaterials(database) && AddSystem(database) ? 1 : 0; });
}

}  // namespace qd::workbench

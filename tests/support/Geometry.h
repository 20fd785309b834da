#pragma once

#include "host/Dialogs.h"
#include "host/MessageOutput.h"
#include "host/ProductVariant.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/core/IAppWrt.h"
#include "support/Model.h"

namespace qd::test {

/// Writes down what the module asks of the application.
class RecordedApp final : public IAppWrt, public IGeomDialog, public IQDMeshgDialog, public IMessageOutput {
 public:
  void OpenDialog(int flag, CQDDocBase*, const CString& dialog, void* data) override { Note(flag, dialog, data); }
  void CloseDialog(CQDDocBase*, const CString&) override {}
  void OpenMeshDialog(int flag, CQDDocBase*, const CString& dialog, void* data) override {
    Note(flag, dialog, data);
  }
  void CloseMeshDialog(CQDDocBase*, const CString&) override {}
  void SetSelectAssignedContact(CQDDocBase*, std::list<iterator>& parts) override {
    log += "contacts " + std::to_string(parts.size()) + " ";
  }
  int GetMenuIndexOfAutoSolid() const override { return 1; }
  int GetMenuIndexOfMapSolid() const override { return 2; }
  int GetMenuIndexOf2D3D() const override { return 3; }
  int GetMenuIndexOfAutoLayer() const override { return 4; }
  void Warn(const CString& text) override { log += "warn " + workbench::ToUtf8(text) + " "; }
  std::string TakeLog() { return std::exchange(log, {}); }

  std::string log;

 protected:
  void Open(CQDDocBase*, const CString& dialog, const void* first, const void* second) override {
    log += workbench::ToUtf8(dialog);
    if (dialog == L"CQDGeomTransformDlg") {
      const auto* operands = static_cast<const tagTGeomGUI*>(first);
      log += " " + std::to_string(IQueryMenuID2Idx::Instance().GetLastCommand()) + " type " +
             std::to_string(operands->type) + " keys " + std::to_string(operands->keys.size());
    }
    if (dialog == L"CQDGeomIncludeExcludeDlg")
      log += " " + std::to_string(*static_cast<const iterator*>(first) & 0xFF);
    if (dialog == L"CQDMeshIncludeExcludeDlg")
      log += " " + std::to_string(*static_cast<const iterator*>(first) & 0xFF);
    if (dialog.starts_with(L"CQDMesh")) log += " " + std::to_string(IQueryMenuID2Idx::Instance().GetLastCommand());
    if (dialog == L"CQDMeshGen3DDlg" && second != nullptr) {
      const auto* arguments = static_cast<const tagTMeshGUI*>(first);
      log += " of " + std::to_string(*static_cast<const iterator*>(second) & 0xFF) + " targets " +
             std::to_string(arguments->targets.size()) + (arguments->remesh ? " again" : "");
    }
    log += " ";
  }

 private:
  void Note(int flag, const CString& dialog, void* data) {
    log += workbench::ToUtf8(dialog) + " " + std::to_string(flag) + " of " +
           std::to_string(static_cast<std::list<iterator>*>(data)->size()) + " ";
  }
};

/// A model with geometry sets, materials and meshes, in the model tree or the geometry-set tree.
class GeometryTest : public ModelTest {
 protected:
  ~GeometryTest() override { SetProductVariant(ProductVariant::Standard); }

  iterator AddSet(const CString& name) {
    iterator set = 0;
    Act([&] {
      tagTGset record;
      record.name = name;
      set = Data().GetGsetPool().Add(record);
    });
    return set;
  }
  iterator AddPartTo(iterator set, const CString& name, TopologyKind kind = TopologyKind::Solid) {
    iterator part = 0;
    Act([&] {
      tagTGeom record;
      record.name = name;
      record.kind = kind;
      record.gset = set;
      record.cadItem = Data().GetGeomPool().NextNumber();
      part = Data().GetGeomPool().Add(record);
    });
    return part;
  }
  iterator AddMaterial(const CString& name) {
    iterator material = 0;
    Act([&] {
      tagTMaterial record;
      record.name = name;
      material = Data().GetMaterialPool().Add(record);
    });
    return material;
  }
  iterator AddMesh(iterator part) {
    iterator mesh = 0;
    Act([&] {
      tagTMset record;
      record.geom = part;
      record.key = 0xE0000000U + static_cast<std::uint32_t>(Data().GetMsetPool().NextNumber());
      mesh = Data().GetMsetPool().Add(record);
    });
    return mesh;
  }
  const tagTGeom& Part(iterator itr) { return *Data().GetGeomPool().GetAtNU(itr); }
  bool IsShown(iterator part) { return m_doc.GetDisplay().GetCadItem(Part(part).cadItem).shown; }

  RecordedApp m_app;
};

}  // namespace qd::test

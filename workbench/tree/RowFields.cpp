#include "workbench/tree/RowFields.h"

#include "qd_wrt/core/CQDTreeItem.h"

namespace qd::workbench {

namespace {

const tagTGeom* PartOf(const CQDTreeItem& node) {
  return node.GetDBSession() != nullptr ? node.GetDBSession()->GetGeomPool().GetAtNU(node.GetIterator()) : nullptr;
}

const tagTMset* MeshOf(const CQDTreeItem& node) {
  return node.GetDBSession() != nullptr ? node.GetDBSession()->GetMsetPool().GetAtNU(node.GetIterator()) : nullptr;
}

struct NumberField {
  const wchar_t* name;
  double PartShape::*ofShape;  // or
  std::uint64_t tagTMset::*ofMesh;
};
constexpr NumberField kNumbers[]{{L"volume", &PartShape::volume, nullptr},
                                 {L"area", &PartShape::area, nullptr},
                                 {L"length", &PartShape::length, nullptr},
                                 {L"elements", nullptr, &tagTMset::elementCount},
                                 {L"nodes", nullptr, &tagTMset::nodeCount}};
constexpr const wchar_t* kAssembly = L"assembly";

class Fields final : public IRowFields {
 public:
  TArray<Field> GetFields() const override {
    TArray<Field> fields;
    for (const NumberField& field : kNumbers) fields.push_back({field.name, true});
    fields.push_back({kAssembly, false});
    return fields;
  }
  int GetNumber(const CQDTreeItem& node, std::size_t field, double& value) const override {
    const NumberField& wanted = kNumbers[field];
    if (wanted.ofShape != nullptr) {
      const tagTGeom* part = PartOf(node);
      if (part == nullptr || part->shape == nullptr) return 0;
      value = *part->shape.*wanted.ofShape;
      return 1;
    }
    const tagTMset* mesh = MeshOf(node);
    if (mesh == nullptr) return 0;
    value = static_cast<double>(mesh->*wanted.ofMesh);
    return 1;
  }
  int GetTexts(const CQDTreeItem& node, std::size_t, TArray<CString>& texts) const override {
    const tagTGeom* part = PartOf(node);
    if (part == nullptr || part->origin == nullptr || part->origin->assemblies.empty()) return 0;
    for (const AssemblyUse& assembly : part->origin->assemblies) texts.push_back(assembly.product);
    return 1;
  }
};

}  // namespace

const IRowFields& DocumentFields() {
  static const Fields kFields;
  return kFields;
}

}  // namespace qd::workbench

#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "support/Mesh.h"
#include "support/SampleMesh.h"
#include "support/ScratchFolder.h"
#include "workbench/exchange/formats/MeshExport.h"
#include "workbench/exchange/store/CollectExport.h"
#include "workbench/model/MeshNumbers.h"

namespace qd::test {

inline const ProgressCall kGoOn = [](double) { return true; };

/// A document with meshes, and files that they are written to.
class MeshFiles : public MeshTest {
 protected:
  iterator AddElementSet(const CString& name, iterator parent, const std::vector<int>& types) {
    std::vector<workbench::MeshPtr> meshes;
    workbench::Numbering next = workbench::NextNumbers(Pool());
    for (const int type : types) {
      meshes.push_back(
          OneElement(type, 2.0 * static_cast<double>(next.elements), std::max(next.nodes, next.elements)));
      next.Continue(*meshes.back());
    }
    iterator set = 0;
    Act([&] {
      set = PutMset(name, parent, 0);
      tagTMset record = Mset(set);
      workbench::PutMesh(record, workbench::JoinMeshes(meshes));
      ASSERT_EQ(Pool().Modify(set, record), 1);
    });
    return set;
  }
  /// Sets with their counts of elements and nodes, as "name parent elements nodes property".
  static std::vector<std::string> Describe(workbench::Database& data) {
    std::vector<std::string> lines;
    for (const iterator itr : data.GetMsetPool().GetItrList()) {
      const tagTMset& set = *data.GetMsetPool().GetAtNU(itr);
      const iterator parent = data.GetMsetPool().GetItrByKey(set.parent);
      IAppDB::Property property;
      data.GetProperty(set.property, property);
      lines.push_back(workbench::ToUtf8(set.name) + "|" +
                      (parent != 0 ? workbench::ToUtf8(data.GetMsetPool().GetAtNU(parent)->name) : "") + "|" +
                      std::to_string(set.elementCount) + "|" + std::to_string(set.nodeCount) + "|" +
                      workbench::ToUtf8(property.materialName));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
  }
  /// Writes all of the document, and leaves what could not be written in m_report.
  std::filesystem::path WriteAll(const std::string& name) {
    std::filesystem::path path = m_folder / name;
    const auto error =
        workbench::WriteMeshFile(path, workbench::CollectExport(Data(), Pool().GetItrList()), kGoOn, m_report);
    EXPECT_FALSE(error) << name << " " << error->key;
    return path;
  }
  ScratchFolder m_folder;
  workbench::ExportReport m_report;
};

}  // namespace qd::test

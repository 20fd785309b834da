// What a CAD file says of its parts beside their names and shapes: it is kept with the part, in documents too.

#include <gtest/gtest.h>

#include "qd_wrt/properties/PartEdits.h"
#include "support/DocumentFolder.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/exchange/store/StoreImport.h"
#include "workbench/store/CheckDocument.h"

namespace qd::test {
namespace {

using namespace workbench;
using DocumentOrigin = DocumentFolder;

/// Two uses of a bolt in an assembly of an assembly, and one part outside of all.
ImportedModel Bolts() {
  ImportedModel model;
  for (const char* use : {"left \"Ø6\"", "right"}) {
    ImportedPart& part = model.parts.emplace_back();
    part.name = part.product = "Bolt " + std::string(200, 'x');
    part.instance = use;
    part.use = static_cast<std::uint32_t>(model.parts.size());
    part.assemblies = {{"Pump", "", 0}, {"Lid", "Upper lid", 3}};
  }
  model.parts.emplace_back().name = "Block";
  return model;
}

const tagTGeom& PartAt(Database& data, std::size_t place) {
  return *data.GetGeomPool().GetAtNU(data.GetGeomPool().GetItrList().at(place));
}

void ExpectBolt(const tagTGeom& part, const CString& instance, std::uint32_t use, std::uint32_t import) {
  ASSERT_NE(part.origin, nullptr);
  EXPECT_EQ(part.origin->product, L"Bolt " + CString(200, L'x')) << "whole, whatever records call it";
  EXPECT_EQ(part.origin->instance, instance);
  EXPECT_EQ(part.origin->use, use);
  EXPECT_EQ(part.origin->import, import);
  EXPECT_EQ(AssemblyPath(*part.origin), L"Pump/Lid");
  EXPECT_EQ(AssemblyPath(*part.origin, true), L"Pump/Upper lid");
  ASSERT_EQ(part.origin->assemblies.size(), 2U);
  EXPECT_EQ(part.origin->assemblies[1].use, 3U);
}

TEST_F(DocumentOrigin, StaysWithThePartAndComesBack) {
  std::string written;
  {
    const auto document = Create(Path("a.qdw"));
    ASSERT_NE(document->file, nullptr) << document->error.detail;
    ASSERT_EQ(StoreImport(document->data, Bolts(), L"import"), 1);
    ASSERT_EQ(StoreImport(document->data, Bolts(), L"import again"), 1);
    ASSERT_EQ(RenamePart(&document->data, document->data.GetGeomPool().GetItrList()[1], L"other"), 1);
    ASSERT_EQ(document->data.GetGeomPool().TR_Del({document->data.GetGeomPool().GetItrList()[4]}), 1);
    written = Contents(document->data);
  }
  EXPECT_TRUE(VerifyDocument(Path("a.qdw")).empty());
  const auto document = Open(Path("a.qdw"));
  ASSERT_NE(document->file, nullptr) << document->error.detail;
  EXPECT_EQ(Contents(document->data), written);
  ExpectBolt(PartAt(document->data, 0), L"left \"Ø6\"", 1, 1);
  ExpectBolt(PartAt(document->data, 1), L"right", 2, 1);
  EXPECT_EQ(PartAt(document->data, 1).name, L"other");
  EXPECT_EQ(PartAt(document->data, 2).origin, nullptr);
  ExpectBolt(PartAt(document->data, 3), L"left \"Ø6\"", 1, 4);
}

TEST_F(DocumentOrigin, DamagedOnesAreRefusedAndRepairKeepsTheParts) {
  for (const char* damage :
       {"UPDATE part_origin SET data = substr(data, 1, length(data) - 3)", "UPDATE part_origin SET data = x'00'",
        // A list that is longer than the file.
        "UPDATE part_origin SET data = CAST(substr(data, 1, 8) || 'aaaaaaaaaaaaaaaaaaaaaa' AS BLOB)",
        "DROP TABLE part_origin; CREATE TABLE part_origin (itr INTEGER PRIMARY KEY, data BLOB)"}) {
    const std::string path = Path("a.qdw");
    {
      const auto document = Create(path);
      ASSERT_EQ(StoreImport(document->data, Bolts(), L"import"), 1);
    }
    Sql(path, damage);
    EXPECT_NE(FaultOf(path), "") << damage;
    std::filesystem::remove(Path("mended.qdw"));
    EXPECT_TRUE(Repair(path, Path("mended.qdw"))) << damage;
    EXPECT_FALSE(m_notes.empty());
    EXPECT_EQ(Open(Path("mended.qdw"))->data.GetGeomPool().Count(), 3U) << damage;
    std::filesystem::remove(path);
  }
}

TEST(PartOrigin, IsBounded) {
  tagTGeom part;
  part.id = part.cadItem = 1;
  PartOrigin origin;
  origin.assemblies.resize(kMostAssemblies);
  const auto faultOf = [&](const PartOrigin& one) {
    part.origin = std::make_shared<const PartOrigin>(one);
    return FaultOf(kDataGeom, 1, part) != nullptr;
  };
  EXPECT_FALSE(faultOf(origin));
  PartOrigin deep = origin;
  deep.assemblies.emplace_back();
  EXPECT_TRUE(faultOf(deep));
  PartOrigin wordy = origin;
  wordy.assemblies.back().instance.assign(kMostName + 1, L'x');
  EXPECT_TRUE(faultOf(wordy));
  MakeFit(kDataGeom, 1, part);
  EXPECT_EQ(FaultOf(kDataGeom, 1, part), nullptr);

  // What comes in is made to fit.
  Database database;
  ImportedModel model;
  ImportedPart& come = model.parts.emplace_back();
  come.product = std::string(kMostName + 5, 'p') + std::string(1, '\0');
  come.assemblies.resize(kMostAssemblies + 7);
  ASSERT_EQ(StoreImport(database, std::move(model), L"import"), 1);
  EXPECT_EQ(PartAt(database, 0).origin->product.size(), kMostName);
}

}  // namespace
}  // namespace qd::test

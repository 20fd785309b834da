// What comes back from the exchange program is stored as one act, as far as the model is still what it was.

#include <gtest/gtest.h>

#include "support/Mesh.h"
#include "workbench/exchange/formats/InpFile.h"
#include "workbench/exchange/store/ApplyResults.h"
#include "workbench/exchange/store/CollectExport.h"
#include "workbench/exchange/store/StoreImport.h"

namespace qd::test {
namespace {

using namespace workbench;

class StoredResults : public MeshTest {
 protected:
  StoredResults() {
    m_first = AddSet(L"first");
    m_current = AddSet(L"current");
    m_steel = AddMaterial(L"Steel");
    m_parts = {AddPartTo(m_first, L"a", TopologyKind::Surface), AddPartTo(m_first, L"b")};
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
      ChangePart(m_parts[i], [&](tagTGeom& part) {
        part.material = m_steel;
        part.colour = Rgb(1, 2, 30 + static_cast<unsigned>(i));
        PartOrigin origin;
        origin.product = L"Bolt";
        part.origin = std::make_shared<const PartOrigin>(origin);
        part.shape = Shape("before");
      });
    }
    Act([&] { ASSERT_EQ(Data().GetGsetPool().SetCurrentSet(m_current), 1); });
    Open();
  }
  static std::shared_ptr<const PartShape> Shape(const std::string& brep) {
    auto shape = std::make_shared<PartShape>();
    shape->brep = brep;
    return shape;
  }
  std::vector<WorkedPart> Worked() {
    std::vector<WorkedPart> worked;
    for (const iterator part : m_parts) worked.push_back({part, Part(part).shape});
    return worked;
  }
  static ImportedModel Shapes(std::size_t count) {
    ImportedModel results;
    for (std::size_t i = 0; i < count; ++i) {
      ImportedPart& part = results.parts.emplace_back();
      part.kind = i == 0 ? TopologyKind::Solid : TopologyKind::Curve;
      part.shape.brep = "after " + std::to_string(i);
    }
    return results;
  }
  static ImportedModel MeshResults(std::size_t count) {
    ImportedModel results;
    for (std::size_t i = 0; i < count; ++i)
      results.meshSets.emplace_back().mesh = *Strip(2 + static_cast<int>(i), 0);
    return results;
  }
  /// All that is known of a part but its shape, which is named.
  std::string Text(iterator itr) {
    const tagTGeom& part = Part(itr);
    return ToUtf8(part.name) + " kind " + std::to_string(static_cast<int>(part.kind)) + " colour " +
           std::to_string(part.colour) + (part.gset == m_current ? " current" : " first") +
           (part.material == m_steel ? " Steel" : "") + (part.origin != nullptr ? " from a file " : " ") +
           part.shape->brep;
  }
  /// The note of how the mesh of a part was made.
  const tagMGInfo& Generation(iterator mset) {
    return *Data().GetMGInfoPool().GetAtNU(Data().GetMGInfoPool().GetItrByKey(Mset(mset).mgInfo));
  }
  /// All numbers of nodes or elements, of which none may stand twice.
  void ExpectOwnNumbers() {
    std::multiset<std::uint64_t> nodes;
    for (const iterator itr : Pool().GetItrList()) {
      nodes.insert(Mset(itr).mesh->nodeIds.begin(), Mset(itr).mesh->nodeIds.end());
    }
    const std::vector<std::uint64_t> elements = Elements();
    EXPECT_EQ(std::set<std::uint64_t>(nodes.begin(), nodes.end()).size(), nodes.size());
    EXPECT_EQ(std::adjacent_find(elements.begin(), elements.end()), elements.end());
  }

  iterator m_first = 0, m_current = 0, m_steel = 0;
  std::vector<iterator> m_parts;
};

TEST_F(StoredResults, NewShapesComeIntoTheirPartsOrAsNewOnes) {
  const std::vector<WorkedPart> worked = Worked();
  ExpectOneAct(L"move", [&] { return ReplaceShapes(Data(), worked, Shapes(2), L"move"); });
  EXPECT_EQ(Text(m_parts[0]), "a kind 3 colour 1966593 first Steel from a file after 0");
  EXPECT_EQ(Text(m_parts[1]), "b kind 1 colour 2032129 first Steel from a file after 1");
  ExpectOneAct(L"copy", [&] { return workbench::AddParts(Data(), Worked(), Shapes(2), L"copy"); });
  const std::vector<iterator> all = Data().GetGeomPool().GetItrList();
  ASSERT_EQ(all.size(), 4U);
  EXPECT_EQ(Text(all[0]), "a kind 3 colour 1966593 first Steel from a file after 0");
  EXPECT_EQ(Text(all[2]), "a kind 3 colour 1966593 current after 0");
  EXPECT_EQ(Text(all[3]), "b kind 1 colour 2032129 current after 1");
  EXPECT_NE(Part(all[2]).cadItem, Part(all[3]).cadItem);
}

TEST_F(StoredResults, MeshesTakeThePlaceOfThoseBeforeAndNoteHowTheyWereMade) {
  const iterator top = AddMset(L"top");
  const iterator known = AddMset(L"known", top, 1, m_parts[1]);
  ShapeOperation operation;
  operation.amount = 2.5;
  operation.dimension = 2;
  operation.secondOrder = true;
  ExpectOneAct(L"mesh", [&] { return AddMeshes(Data(), Worked(), MeshResults(2), operation, L"mesh"); });
  const iterator made = Pool().GetItrByGeomItr(m_parts[0]);
  EXPECT_EQ(Mset(made).name, L"a");
  EXPECT_EQ(Mset(made).colour, Part(m_parts[0]).colour);
  EXPECT_EQ(Mset(made).elementCount, 2U);
  EXPECT_EQ(Pool().GetItrByGeomItr(m_parts[1]), known) << "it keeps its place";
  EXPECT_EQ(Mset(known).name, L"known");
  EXPECT_EQ(Mset(known).parent, Mset(top).key);
  EXPECT_EQ(Mset(known).elementCount, 3U);
  ExpectOwnNumbers();
  using Options = decltype(tagMGInfo::options);
  EXPECT_EQ(Generation(made).options, (Options{{"IDS_HWB_MESH_ELEM_SIZE", 1},
                                               {"IDS_QDMESH_MESHSIZE_ST", 2.5},
                                               {"IDS_HWB_MESH_HIGH_ORDER", true},
                                               {"IDS_HWB_MESH_3D_MESHER", 0}}));
  EXPECT_EQ(Generation(made).kind, 1);
  EXPECT_EQ(Generation(made).method, tagMGInfo::kAutoSolid);
  EXPECT_EQ(Generation(known).targets, std::vector<iterator>{m_parts[1]});
  // Once more, and in rows: the notes of before go with their meshes.
  operation.dimension = 3;
  operation.secondOrder = false;
  operation.mapped = true;
  ExpectOneAct(L"again", [&] { return AddMeshes(Data(), Worked(), MeshResults(2), operation, L"again"); });
  EXPECT_EQ(Data().GetMGInfoPool().Count(), 2U);
  EXPECT_EQ(Pool().Count(), 3U);
  EXPECT_EQ(Generation(made).options, (Options{{"IDS_HWB_MESH_ELEM_SIZE", 1},
                                               {"IDS_QDMESH_MESHSIZE_ST", 2.5},
                                               {"IDS_HWB_MESH_HIGH_ORDER", false}}));
  EXPECT_EQ(Generation(made).kind, 0);
  EXPECT_EQ(Generation(made).method, tagMGInfo::kMapSolid);
  EXPECT_EQ(Generation(made).targets, std::vector<iterator>{m_parts[0]});
  ExpectOwnNumbers();
}

/// Work takes its time, and nobody waits for it.
TEST_F(StoredResults, WhatCameTooLateOrIsNotAllChangesNothing) {
  const std::vector<WorkedPart> worked = Worked();
  const std::pair<const char*, std::function<int(std::size_t)>> kWays[] = {
      {"replace", [&](std::size_t count) { return ReplaceShapes(Data(), worked, Shapes(count), L"late"); }},
      {"add", [&](std::size_t count) { return workbench::AddParts(Data(), worked, Shapes(count), L"late"); }},
      {"mesh", [&](std::size_t count) { return AddMeshes(Data(), worked, MeshResults(count), {}, L"late"); }}};
  const auto expectNone = [&](const char* why, std::size_t count) {
    const auto before = Data().Snapshot();
    for (const auto& [way, store] : kWays) {
      EXPECT_EQ(store(count), 0) << way << ": " << why;
      EXPECT_EQ(Data().Snapshot(), before) << way << ": " << why;
      EXPECT_FALSE(Data().IsInTransaction());
    }
  };
  expectNone("one is missing", 1);
  expectNone("one too many", 3);
  ASSERT_EQ(Data().BeginTransaction(L"open"), 1);
  for (const auto& [way, store] : kWays) EXPECT_EQ(store(2), 0) << way;
  Data().RollbackTransaction();
  ChangePart(m_parts[1], [](tagTGeom& part) { part.shape = Shape("worked on meanwhile"); });
  expectNone("another shape", 2);
  Undo();
  ASSERT_EQ(Data().Delete({m_parts[0]}), 1);
  Settle();
  expectNone("deleted", 2);
  Undo();
  EXPECT_EQ(kWays[0].second(2), 1);
  Settle();
}

/// Two files after each other, with properties, sets in sets, and numbers that meet or do not.
TEST_F(StoredResults, ImportedSetsKeepTheirNestingPropertiesAndNumbers) {
  ImportedModel model;
  model.materials = {{"Steel", 1, 0.25, 2}, {"Brass", 3, 0.5, 4}};
  model.properties = {{"thin", tagTProperty::Kind::Shell, 0.5, 1}, {"thick", tagTProperty::Kind::Shell, 5, 0}};
  const struct {
    const char* name;
    std::int32_t parent;
    std::int32_t property;
    int from;
  } kSets[] = {{"top", -1, 1, 2}, {"left", 0, 0, 3}, {"below", 1, -1, 4}, {"right", 0, 1, 5}};
  for (const auto& set : kSets) {
    ImportedMeshSet& made = model.meshSets.emplace_back();
    made.name = set.name;
    made.parent = set.parent;
    made.property = set.property;
    made.mesh = *Strip(2, set.from);
  }
  const auto text = [this](iterator itr) {
    const tagTMset& set = Mset(itr);
    const iterator parent = Pool().GetItrByKey(set.parent);
    IAppDB::Property property;
    Data().GetProperty(set.property, property);
    return ToUtf8(set.name + L" in " + (parent != 0 ? Mset(parent).name : L"none") + L": " + property.name +
                  L" of " + property.materialName);
  };
  std::vector<std::uint64_t> first;
  for (int time = 0; time < 2; ++time) {
    std::vector<ImportNote> notes;
    ExpectOneAct(L"import", [&] {
      notes.clear();
      return StoreImport(Data(), model, L"import", &notes);
    });
    EXPECT_TRUE(notes.empty());
    const std::vector<iterator> all = Pool().GetItrList();
    ASSERT_EQ(all.size(), 4U * (time + 1));
    const std::vector<iterator> sets(all.end() - 4, all.end());
    EXPECT_EQ(text(sets[0]), "top in none: thick of Steel");
    EXPECT_EQ(text(sets[1]), "left in top: thin of Brass");
    EXPECT_EQ(text(sets[2]), "below in left:  of ");
    EXPECT_EQ(text(sets[3]), "right in top: thick of Steel");
    EXPECT_EQ(Mset(sets[1]).parent, Mset(sets[0]).key);
    for (const iterator itr : Data().GetPropertyPool().GetItrList()) {
      EXPECT_EQ(Data().GetPropertyPool().GetAtNU(itr)->kind, tagTProperty::Kind::Shell);
    }
    ExpectOwnNumbers();
    // In a new document numbers stay; behind others all of them move on by the last one there was.
    const std::vector<std::uint64_t>& nodes = Mset(sets[0]).mesh->nodeIds;
    if (time == 0) first = nodes;
    for (std::size_t i = 0; i < nodes.size(); ++i) EXPECT_EQ(nodes[i], first[i] + (time == 0 ? 0U : 5004U));
  }
}

/// The way out again: parts as they came, names as solvers tell them apart, which see neither blanks nor case.
TEST_F(StoredResults, WhatIsCollectedForAFileIsAllThatIsKnown) {
  const auto repeated = [](const std::string& before, const std::string& letter, int count) {
    std::string text = before;
    for (int i = 0; i < count; ++i) text += letter;
    return text;
  };
  const std::pair<std::string, std::string> kNames[] = {{"A b", "A b"},
                                                        {"Ab", "Ab-2"},
                                                        {"a B", "a B-3"},
                                                        {"a,b", "a_b"},
                                                        {"", "Set"},
                                                        {repeated("", "座", 60), repeated("", "座", 26)},
                                                        {repeated("x", "座", 60), repeated("x", "座", 25)},
                                                        {repeated("", "座", 61), repeated("", "座", 25) + "-2"}};
  for (const auto& [name, written] : kNames) AddMset(FromUtf8(name));
  const ExportModel model = CollectExport(Data(), Pool().GetItrList());
  ASSERT_EQ(model.sets.size(), std::size(kNames));
  for (std::size_t i = 0; i < std::size(kNames); ++i) EXPECT_EQ(model.sets[i].name, kNames[i].second) << i;

  ChangePart(m_parts[0], [](tagTGeom& part) {
    PartOrigin origin;
    origin.product = L"Bolt";
    origin.instance = L"left";
    origin.use = 2;
    origin.import = 5;
    origin.assemblies = {{L"Pump", L"", 0}, {L"Lid", L"Upper", 3}};
    part.origin = std::make_shared<const PartOrigin>(origin);
  });
  ChangePart(m_parts[1], [](tagTGeom& part) { part.origin = nullptr; });
  ExportModel parts;
  CollectParts(Data(), m_parts, parts);
  ASSERT_EQ(parts.parts.size(), 2U);
  const ExportedPart& bolt = parts.parts[0];
  EXPECT_EQ(bolt.name + " " + bolt.product + " " + bolt.instance, "a Bolt left");
  EXPECT_EQ(bolt.use, 2U);
  EXPECT_EQ(bolt.import, 5U);
  EXPECT_EQ(bolt.colour, Part(m_parts[0]).colour);
  EXPECT_EQ(bolt.kind, TopologyKind::Surface);
  EXPECT_EQ(bolt.shape, Part(m_parts[0]).shape);
  ASSERT_EQ(bolt.assemblies.size(), 2U);
  EXPECT_EQ(bolt.assemblies[1].product + " " + bolt.assemblies[1].instance, "Lid Upper");
  EXPECT_EQ(bolt.assemblies[1].use, 3U);
  EXPECT_EQ(parts.parts[1].name + parts.parts[1].product, "b");
  EXPECT_EQ(parts.partMaterials, std::vector<std::string>{"Steel"});
  EXPECT_EQ(parts.partSets, std::vector<std::string>{"first"});
}

/// What stands in no set of a deck is kept in one of ours, and the deck knows which.
TEST_F(StoredResults, ADeckKnowsWhereItsElementsAreThatStandInNoSet) {
  ASSERT_EQ(StoreImport(Data(),
                        ReadInpText("*NODE\n1,0,0,0\n2,1,0,0\n3,2,0,0\n*ELEMENT, TYPE=B31, ELSET=BEAM\n1,1,2\n"
                                    "*ELEMENT, TYPE=B31\n2,2,3\n*STEP\n*STATIC\n*END STEP\n",
                                    "beam.inp"),
                        L"import"),
            1);
  Settle();
  const tagTDeck& deck = *Data().GetDeckPool().GetAtNU(Data().GetDeckPool().GetItrList().front());
  const iterator rest = Pool().GetItrByKey(deck.rest);
  ASSERT_NE(rest, 0U);
  EXPECT_EQ(Mset(rest).mesh->blocks.at(0).elementIds, std::vector<std::uint64_t>{2});
}

/// A file whose numbers begin right behind the last ones keeps them; one that begins at the last one does not.
TEST_F(StoredResults, NumbersStayWhereNoneIsTaken) {
  AddMset(L"there", 0, 2);
  const std::uint64_t lastNode = Mset(Pool().GetItrList().back()).mesh->nodeIds.back();
  const std::uint64_t lastElement = Elements().back();
  for (const auto& [node, element] : {std::pair(lastNode, lastElement + 1), std::pair(lastNode + 1, lastElement),
                                      std::pair(lastNode + 1, lastElement + 1)}) {
    ImportedModel model;
    ImportedMeshSet& set = model.meshSets.emplace_back();
    set.mesh.nodeIds = {node, node + 1};
    set.mesh.coordinates = {0, 0, 0, 1, 0, 0};
    set.mesh.blocks = {{1, 2, {element}, {node, node + 1}}};
    ASSERT_EQ(StoreImport(Data(), model, L"import"), 1);
    Settle();
    ExpectOwnNumbers();
    const MeshData& mesh = *Mset(Pool().GetItrList().back()).mesh;
    EXPECT_EQ(mesh.nodeIds.front() == node, node > lastNode);
    EXPECT_EQ(mesh.blocks.front().elementIds.front() == element, element > lastElement);
    Undo();
  }
}

/// Files may name things by what cannot be seen.
TEST_F(StoredResults, BlankNamesOfFilesAreNamedByRule) {
  ImportedModel model;
  model.parts.emplace_back().name = "\xC2\xA0\xE3\x80\x80";
  model.meshSets.emplace_back().name = "\xF3\xA0\x80\xA0";
  ASSERT_EQ(StoreImport(Data(), std::move(model), L"import"), 1);
  EXPECT_EQ(Part(Data().GetGeomPool().GetItrList().back()).name, L"IDS_WB_UNNAMED");
  EXPECT_EQ(Data().GetMsetPool().GetAtNU(Data().GetMsetPool().GetItrList().back())->name, L"IDS_WB_UNNAMED");
}

}  // namespace
}  // namespace qd::test

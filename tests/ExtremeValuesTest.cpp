// Random acts with extreme values: what an act may write is sound, is in the document, and opens again; what it
// may not write does not happen.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <random>

#include "host/MessageOutput.h"
#include "support/DocumentScript.h"
#include "support/EnglishTexts.h"
#include "support/ScratchFolder.h"
#include "workbench/exchange/store/StoreImport.h"
#include "workbench/model/MeshActs.h"
#include "workbench/model/Values.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/store/RecordCheck.h"
#include "workbench/text/Utf8.h"

namespace qd::test {
namespace {

using namespace workbench;
using ::testing::IsEmpty;

class ExtremeValues : public ::testing::TestWithParam<int> {
 protected:
  ExtremeValues() {
    DocumentError error;
    m_file = DocumentFile::Create((m_folder / "a.qdw").string(), m_data, error);
    m_data.SetStore(m_file.get());
  }
  ~ExtremeValues() override {
    m_data.SetStore(nullptr);
    m_file.reset();
  }

  std::size_t Roll(std::size_t sides) { return m_random() % sides; }
  template <typename T>
  T AnyOf(std::initializer_list<T> values) {
    return *(values.begin() + Roll(values.size()));
  }
  double Number() {
    using Limits = std::numeric_limits<double>;
    return AnyOf({0.0, -0.0, 1.0, -1.0, 1e200, -1e308, Limits::max(), Limits::min(), Limits::denorm_min(),
                  Roll(4) == 0 ? Limits::quiet_NaN() : 2.0, Roll(4) == 0 ? Limits::infinity() : 3.0});
  }
  std::uint64_t Count() {
    constexpr std::uint64_t kMost63 = std::numeric_limits<std::int64_t>::max();
    return AnyOf<std::uint64_t>({0, 1, 2, 1000, 0xFFFFFFFF, kMostNumber / 2, kMostNumber, kMostNumber + 1, kMost63,
                                 kMost63 + 1, ~std::uint64_t{0}});
  }
  CString Name() {
    if (Roll(60) == 0) return CString(AnyOf({kMostName, kMostName + 1}), L'x');
    return AnyOf<CString>({L"", L"a", L"座標", CString(L"a\0b", 3), L"\xD800", L"\xFFFFFF", CString(64, L'q')});
  }
  template <typename PoolType>
  iterator Any(PoolType& pool) {
    const auto all = pool.GetItrList();
    return all.empty() ? 0 : all[Roll(all.size())];
  }
  iterator Reference() {
    switch (Roll(8)) {
      case 0:
        return AnyOf<iterator>({0, 1, ~iterator{0}, std::numeric_limits<std::int64_t>::max()});
      case 1:
        return Any(m_data.GetCordPool()) + AnyOf<iterator>({0, 1, 1000});
      case 2:
        return Any(m_data.GetGsetPool());
      case 3:
        return Any(m_data.GetMaterialPool());
      case 4:
        return Any(m_data.GetPropertyPool());
      case 5:
        return Any(m_data.GetMGInfoPool());
      case 6:
        return Any(m_data.GetMsetPool());
      default:
        return Any(m_data.GetGeomPool());
    }
  }
  /// Mostly one that is allowed.
  iterator Reference(iterator good) { return Roll(6) == 0 ? Reference() : Roll(3) == 0 ? 0 : good; }

  MeshData Mesh() {
    MeshData mesh;
    const std::uint64_t base = Roll(3) == 0 ? Count() : Roll(1000);
    mesh.nodeIds = {base, base + 1, base + 2};
    for (int i = 0; i < 9; ++i) mesh.coordinates.push_back(Roll(9) == 0 ? Number() : static_cast<double>(i));
    mesh.blocks = {{2, 3, {Roll(3) == 0 ? Count() : Roll(1000)}, mesh.nodeIds}};
    if (Roll(20) == 0) mesh.blocks[0].nodeIds.pop_back();
    if (Roll(20) == 0) mesh.blocks[0].elementType = 77;
    return mesh;
  }
  ImportedModel Model() {
    ImportedModel model;
    model.materials.push_back({"m", Number(), Number(), Number()});
    model.properties.push_back({"p", tagTProperty::Kind::Beam, Number(), AnyOf({-1, 0, 1, 77})});
    for (std::size_t i = Roll(3); i > 0; --i) {
      ImportedMeshSet& set = model.meshSets.emplace_back();
      set.name = "s";
      set.parent = AnyOf({-1, 0, 5});
      set.property = AnyOf({-1, 0, 5});
      set.mesh = Mesh();
    }
    return model;
  }

  tagTCord System() {
    tagTCord system;
    system.SetName(Name());
    system.kind = static_cast<CordKind>(AnyOf({0, 1, 2, Roll(5) == 0 ? 200 : 0}));
    system.parent = Reference(Any(m_data.GetCordPool()));
    for (double& value : system.origin) value = Roll(3) == 0 ? Number() : 1;
    for (double& value : system.xAxis) value = Roll(6) == 0 ? Number() : value;
    return system;
  }
  tagTMset Set() {
    tagTMset set;
    set.name = Name();
    set.key = Roll(4) == 0 ? static_cast<std::uint32_t>(Count()) : 0;
    const tagTMset* above = m_data.GetMsetPool().GetAtNU(Any(m_data.GetMsetPool()));
    set.parent = Roll(5) == 0 ? static_cast<std::uint32_t>(Count()) : above != nullptr ? above->key : 0;
    set.geom = Reference(Any(m_data.GetGeomPool()));
    set.property = Reference(Any(m_data.GetPropertyPool()));
    set.mgInfo = static_cast<std::uint32_t>(Reference(Any(m_data.GetMGInfoPool())));
    if (Roll(2) == 0) PutMesh(set, std::make_shared<const MeshData>(Mesh()));
    if (Roll(20) == 0) set.nodeCount = Count();
    return set;
  }
  tagTGeom Part() {
    tagTGeom part;
    part.name = Name();
    part.kind = static_cast<TopologyKind>(AnyOf({0, 3, 4, Roll(5) == 0 ? 200 : 3}));
    part.material = Reference(Any(m_data.GetMaterialPool()));
    part.gset = Reference(Any(m_data.GetGsetPool()));
    if (Roll(2) == 0) {
      auto shape = std::make_shared<PartShape>();
      shape->facets.points = {0, 0, static_cast<float>(Roll(4) == 0 ? Number() : 1)};
      shape->volume = Roll(4) == 0 ? Number() : 1;
      shape->geometry = {{"K", Roll(4) == 0 ? Number() : 1}};
      part.shape = shape;
    }
    return part;
  }

  /// One write, or a few, inside the open transaction.
  void Write() {
    switch (Roll(9)) {
      case 0:
        Roll(2) == 0 ? m_data.GetCordPool().Add(System())
                     : m_data.GetCordPool().Modify(Any(m_data.GetCordPool()), System());
        break;
      case 1:
        m_data.GetMaterialPool().Add([&] {
          tagTMaterial material;
          material.name = Name();
          material.density = Number();
          return material;
        }());
        break;
      case 2:
        m_data.GetPropertyPool().Add([&] {
          tagTProperty property;
          property.material = Reference(Any(m_data.GetMaterialPool()));
          property.size = Number();
          return property;
        }());
        break;
      case 3:
        m_data.GetGsetPool().Add([&] {
          tagTGset set;
          set.name = Name();
          return set;
        }());
        if (Roll(3) == 0) m_data.GetGsetPool().SetCurrentSet(Reference(Any(m_data.GetGsetPool())));
        break;
      case 4:
        Roll(2) == 0 ? m_data.GetGeomPool().Add(Part())
                     : m_data.GetGeomPool().Change(Any(m_data.GetGeomPool()), Part());
        break;
      case 5: {
        tagTMset set = Set();
        if (Roll(2) == 0) {
          m_data.GetMsetPool().Add(set);
          break;
        }
        const iterator itr = Any(m_data.GetMsetPool());
        if (Roll(6) != 0 && itr != 0) set.key = m_data.GetMsetPool().GetAtNU(itr)->key;
        m_data.GetMsetPool().Modify(itr, set);
        break;
      }
      case 6: {
        tagMGInfo generation;
        generation.kind = AnyOf({0, 1, std::numeric_limits<int>::max(), Roll(5) == 0 ? -1 : 2});
        for (std::size_t i = Roll(3); i > 0; --i) {
          generation.targets.push_back(Reference(Any(m_data.GetGeomPool())));
        }
        generation.options["number"] = Number();
        generation.options["choice"] = AnyOf({0, 1, Roll(5) == 0 ? std::numeric_limits<int>::min() : 2});
        m_data.GetMGInfoPool().Add(generation);
        break;
      }
      case 7:
        m_data.Delete({Reference()});
        break;
      default:
        if (const iterator itr = Any(m_data.GetMsetPool()); itr != 0) {
          m_data.GetMsetPool().Merge(itr, {Any(m_data.GetMsetPool())});
        }
        break;
    }
  }
  void RunAct() {
    switch (Roll(12)) {
      case 0:
        m_data.Undo();
        break;
      case 1:
        m_data.Redo();
        break;
      case 2:
        StoreImport(m_data, Model(), L"import");
        break;
      case 3:
        AddNode(m_data, Any(m_data.GetMsetPool()), {Number(), Number(), 1}, L"node");
        break;
      case 4:
        TransformMeshes(m_data, m_data.GetMsetPool().GetItrList(),
                        {{{Number(), 0, 0, Number()}, {0, 1, 0, 0}, {0, 0, 1, 0}}}, L"move");
        break;
      case 5:
        SweepMeshes(m_data, {Any(m_data.GetMsetPool())}, {0, 0, Number()}, 2, L"sweep");
        break;
      case 6:
        m_data.Delete({Reference(), Reference()});
        break;
      case 7:
        m_data.GetGsetPool().PutCurrentSet(Reference());
        break;
      case 8:
        Roll(8) == 0 ? m_data.GetMsetPool().TR_Del_All() : m_data.GetMsetPool().TR_Del_EmptyMset();
        break;
      default: {
        CTransaction transaction(&m_data);
        transaction.Begin(L"act");
        for (std::size_t i = 1 + Roll(3); i > 0; --i) Write();
        m_done += transaction.Commit(1);
        break;
      }
    }
  }
  void ExpectSound() {
    RecordCheck check;
    for (const JournalEntry& entry : m_data.AllRecords()) check.Add(entry.itr, entry.after);
    check.Run();
    ASSERT_THAT(check.Faults(), IsEmpty());
    ASSERT_THAT(check.Mended(), IsEmpty());
  }

  std::mt19937 m_random{static_cast<unsigned>(GetParam())};
  ScratchFolder m_folder{ScratchFolder::Place::Memory};
  Database m_data;
  std::unique_ptr<DocumentFile> m_file;
  int m_done = 0;
};

TEST_P(ExtremeValues, AreRefusedOrKept) {
  for (int act = 0; act < 150; ++act) {
    RunAct();
    ASSERT_FALSE(m_data.IsInTransaction()) << "act " << act;
    ExpectSound();
    ASSERT_FALSE(HasFatalFailure()) << "act " << act;
  }
  EXPECT_GT(m_done, 10) << "not everything is refused";
  const std::string last = Contents(m_data);
  const std::string path = m_file->Path();
  m_data.SetStore(nullptr);
  m_file.reset();
  EXPECT_THAT(VerifyDocument(path), IsEmpty());
  Database opened;
  DocumentError error;
  EXPECT_NE(DocumentFile::Open(path, opened, error), nullptr) << error.detail;
  EXPECT_TRUE(Contents(opened) == last) << "what was written is what is read";
}
INSTANTIATE_TEST_SUITE_P(Seeds, ExtremeValues, ::testing::Range(1, 21));

// ---- what was found -------------------------------------------------------------------------------------

class FoundValues : public ExtremeValues {};

TEST_P(FoundValues, LargeNodeNumbersAreNumberedAnewWhenTheyMeetOthers) {
  ImportedModel model;
  for (const std::uint64_t base : {std::uint64_t{5}, std::uint64_t{0x7FFFFFFFFFFFFFFD}}) {
    ImportedMeshSet& set = model.meshSets.emplace_back();
    set.mesh.nodeIds = {3, base + 1, base + 2};  // both hold node 3
    set.mesh.coordinates = {0, 0, 0, 1, 0, 0, 0, 1, static_cast<double>(base)};
    set.mesh.blocks = {{2, 3, {base}, {base + 1, 3, base + 2}}};
  }
  for (int times = 0; times < 3; ++times) {
    std::vector<ImportNote> notes;
    ASSERT_EQ(StoreImport(m_data, model, L"import", &notes), 1);
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0].key, "IDS_WB_IMPORT_NUMBERED_ANEW");
  }
  ExpectSound();
  const auto sets = m_data.GetMsetPool().GetItrList();
  const MeshData& last = *m_data.GetMsetPool().GetAtNU(sets.back())->mesh;
  EXPECT_EQ(last.nodeIds, (std::vector<std::uint64_t>{11, 14, 15}));
  EXPECT_EQ(last.blocks[0].nodeIds, (std::vector<std::uint64_t>{14, 11, 15}));
  EXPECT_EQ(last.blocks[0].elementIds, std::vector<std::uint64_t>{6});
}

TEST_P(FoundValues, AValueThatIsNoNumberIsPutRightAndTold) {
  ImportedModel model;
  model.properties.push_back({"PIPE", tagTProperty::Kind::Beam, std::nan(""), -1});
  std::vector<ImportNote> notes;
  ASSERT_EQ(StoreImport(m_data, model, L"import", &notes), 1);
  ASSERT_EQ(notes.size(), 1U);
  EXPECT_EQ(notes[0].detail, "PIPE");
  EXPECT_EQ(m_data.GetPropertyPool().GetAtNU(m_data.GetPropertyPool().GetItrList()[0])->size, 0);
}

TEST_P(FoundValues, TheLastRecordNumberEndsAPoolAndTakesLittleRoom) {
  const auto last = static_cast<iterator>(kDataGset) << kTypeShift | (kMostRecords - 1);
  m_data.ReserveNumbers(last);
  for (const int expected : {1, 0}) {
    CTransaction transaction(&m_data);
    transaction.Begin(L"add");
    tagTGset set;
    EXPECT_EQ(m_data.GetGsetPool().Add(set) != 0 ? 1 : 0, expected);
    EXPECT_EQ(transaction.Commit(1), expected);
  }
  EXPECT_EQ(m_data.GetGsetPool().Count(), 1U);
  const std::string path = m_file->Path();
  m_data.SetStore(nullptr);
  m_file.reset();
  Database opened;
  DocumentError error;
  EXPECT_NE(DocumentFile::Open(path, opened, error), nullptr) << error.detail;
  EXPECT_EQ(Contents(opened), Contents(m_data));
}
INSTANTIATE_TEST_SUITE_P(Once, FoundValues, ::testing::Values(1));

// ---- what is said ---------------------------------------------------------------------------------------

class Warnings final : public IMessageOutput {
 public:
  void Warn(const CString& text) override { log += ToUtf8(text) + "\n"; }
  std::string log;
};

struct RefusedAct {
  const char* name;
  const char* said;
  void (*act)(Database& data);
};
class RefusedActs : public ::testing::TestWithParam<RefusedAct> {};

/// Also when whoever acts does not look whether a write was refused, and would go on with half of the act.
TEST_P(RefusedActs, HappenInNoPartAndAreTold) {
  const EnglishTexts english;
  Warnings warnings;
  Database data;
  const auto before = data.Snapshot();
  {
    CTransaction transaction(&data);
    ASSERT_EQ(transaction.Begin(L"Act"), 1);
    data.GetMaterialPool().Add({});
    GetParam().act(data);
    EXPECT_EQ(warnings.log, "");
    EXPECT_EQ(transaction.Commit(1), 0);
  }
  EXPECT_EQ(warnings.log, std::string("“Act” was not done: ") + GetParam().said + "\n");
  EXPECT_EQ(data.Snapshot(), before);
  EXPECT_FALSE(data.CanUndo());
  CTransaction next(&data);
  ASSERT_EQ(next.Begin(L"Next"), 1);
  data.GetMaterialPool().Add({});
  EXPECT_EQ(next.Commit(1), 1) << "what was refused is over";
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, RefusedActs,
    ::testing::Values(RefusedAct{"value", "property 1: a value that is no number",
                                 [](Database& data) {
                                   tagTProperty property;
                                   property.size = std::nan("");
                                   data.GetPropertyPool().Add(property);
                                   // The first reason is told; others may follow from it.
                                   tagTMaterial material;
                                   material.density = std::nan("");
                                   data.GetMaterialPool().Add(material);
                                 }},
                      RefusedAct{"mesh", "mesh set 1: a node number beyond all bounds",
                                 [](Database& data) {
                                   MeshData mesh;
                                   mesh.nodeIds = {kMostNumber + 1};
                                   mesh.coordinates = {0, 0, 0};
                                   tagTMset set;
                                   PutMesh(set, std::make_shared<const MeshData>(mesh));
                                   data.GetMsetPool().Add(set);
                                 }},
                      RefusedAct{"number", "geometry set 50000001: all numbers for such entries are used up",
                                 [](Database& data) {
                                   data.ReserveNumbers(static_cast<iterator>(kDataGset) << kTypeShift |
                                                       kMostRecords);
                                   data.GetGsetPool().Add({});
                                 }},
                      RefusedAct{"size", "deck 1: more data than a document can hold of one entry",
                                 [](Database& data) {
                                   tagTDeck deck;
                                   deck.text = std::make_shared<const std::string>(kMostPartBytes + 1, ' ');
                                   data.GetDeckPool().Add(deck);
                                 }},
                      RefusedAct{"reference", "property 1: what it refers to is not there: material",
                                 [](Database& data) {
                                   tagTProperty property;
                                   property.material = static_cast<iterator>(kDataMaterial) << kTypeShift | 7;
                                   data.GetPropertyPool().Add(property);
                                 }}),
    [](const auto& act) { return std::string(act.param.name); });

}  // namespace
}  // namespace qd::test

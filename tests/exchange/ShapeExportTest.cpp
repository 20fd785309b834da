// Parts written as files of shapes by the exchange program, and read back by it: nothing is lost on the way but
// what is said.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "Support.h"
#include "host/CTransaction.h"
#include "support/Places.h"
#include "support/ScratchFolder.h"
#include "workbench/exchange/store/CollectExport.h"
#include "workbench/exchange/store/StoreImport.h"
#include "workbench/exchange/watch/ExchangeRun.h"
#include "workbench/exchange/watch/ExportFile.h"
#include "workbench/model/Database.h"

namespace qd::test {
namespace {

using namespace workbench;

ImportedModel Read(const std::string& path) {
  const ExchangeRun::Result result = RunQuietly(TaskFor(path));
  EXPECT_NE(result.model, nullptr) << path << ": " << result.reason.key << " " << result.reason.detail;
  return result.model != nullptr ? std::move(*result.model) : ImportedModel();
}

/// All that is said of a part but its shape.
std::string TextOf(const ImportedPart& part) {
  std::string text = part.name + "|" + part.product + "|" + part.instance + "|" + std::to_string(part.use);
  for (const ImportedAssembly& at : part.assemblies) {
    text += "/" + at.product + ":" + at.instance + ":" + std::to_string(at.use);
  }
  return text + "|" + std::to_string(part.colour) + "|" + std::to_string(static_cast<int>(part.kind));
}

std::vector<std::string> TextsOf(const ImportedModel& model) {
  std::vector<std::string> texts;
  for (const ImportedPart& part : model.parts) texts.push_back(TextOf(part));
  return texts;
}

void ExpectSameTexts(const ImportedModel& is, const ImportedModel& was) {
  ASSERT_EQ(is.parts.size(), was.parts.size());
  for (std::size_t i = 0; i < is.parts.size(); ++i) {
    const std::string one = TextOf(is.parts[i]);
    const std::string other = TextOf(was.parts[i]);
    const auto at = static_cast<std::size_t>(
        std::mismatch(one.begin(), one.end(), other.begin(), other.end()).first - one.begin());
    const std::size_t from = at - std::min<std::size_t>(at, 20);
    // Names may be long.
    EXPECT_TRUE(one == other) << "part " << i << " at " << at << ": " << one.substr(from, 60) << " instead of "
                              << other.substr(std::min(from, other.size()), 60);
  }
}

void ExpectSameShapes(const ImportedModel& is, const ImportedModel& was) {
  ASSERT_EQ(is.parts.size(), was.parts.size());
  for (std::size_t i = 0; i < is.parts.size(); ++i) {
    const PartShape& one = is.parts[i].shape;
    const PartShape& other = was.parts[i].shape;
    EXPECT_NEAR(one.volume, other.volume, 1e-6 * (1 + other.volume)) << is.parts[i].name;
    EXPECT_NEAR(one.area, other.area, 1e-6 * (1 + other.area)) << is.parts[i].name;
    EXPECT_NEAR(one.length, other.length, 1e-4 * (1 + other.length)) << is.parts[i].name;
    for (int axis = 0; axis < 3; ++axis) {
      const auto range = [axis](const PartShape& shape) {
        std::pair<float, float> ends{1e30F, -1e30F};
        for (std::size_t at = static_cast<std::size_t>(axis); at < shape.facets.points.size(); at += 3) {
          ends.first = std::min(ends.first, shape.facets.points[at]);
          ends.second = std::max(ends.second, shape.facets.points[at]);
        }
        return ends;
      };
      EXPECT_NEAR(range(one).first, range(other).first, 1e-3) << is.parts[i].name;
      EXPECT_NEAR(range(one).second, range(other).second, 1e-3) << is.parts[i].name;
    }
  }
}

std::size_t CountIn(const std::string& text, const std::string& what) {
  std::size_t count = 0;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
  return count;
}

class ShapeExport : public ::testing::Test {
 protected:
  std::string Make(const std::string& what, const std::string& name) {
    std::string path = (m_folder / name).string();
    RunToEnd(Program("qd_make_models"), {what, path});
    return path;
  }
  /// Stores what was read, lets it be changed, and writes the document's parts.
  std::optional<ImportError> Write(const ImportedModel& model, const std::string& name,
                                   const std::function<void(tagTGeom&, std::size_t)>& change = nullptr,
                                   ExportWatch watch = {[](double) { return true; }}) {
    Database database;
    EXPECT_EQ(StoreImport(database, model, L"import"), 1);
    GeomPool& pool = database.GetGeomPool();
    const std::vector<iterator> parts = pool.GetItrList();
    CTransaction transaction(&database);
    EXPECT_EQ(transaction.Begin(L"change"), 1);
    for (std::size_t i = 0; change && i < parts.size(); ++i) {
      tagTGeom record = *pool.GetAtNU(parts[i]);
      change(record, i);
      EXPECT_EQ(pool.Change(parts[i], record), 1);
    }
    EXPECT_EQ(transaction.Commit(1), 1);
    ExportModel out = CollectExport(database, database.GetMsetPool().GetItrList());
    CollectParts(database, parts, out);
    m_report = {};
    return WriteExport((m_folder / name).string(), out, Program("qd_exchange"), watch, m_report);
  }
  std::string Note(const std::string& key) const {
    for (const ImportNote& note : m_report.notes) {
      if (note.key == key) return note.detail;
    }
    return {};
  }

  ScratchFolder m_folder;
  ExportReport m_report;
};

TEST_F(ShapeExport, StepHoldsNamesColoursUsesAndAssemblies) {
  const ImportedModel pump = Read(Make("pump", "pump.step"));
  ASSERT_EQ(pump.parts.size(), 9U);
  ASSERT_FALSE(Write(pump, "out.step"));
  EXPECT_EQ(m_report.parts, 9U);
  EXPECT_TRUE(m_report.notes.empty());
  const ImportedModel back = Read((m_folder / "out.step").string());
  ExpectSameTexts(back, pump);
  ExpectSameShapes(back, pump);
  EXPECT_TRUE(back.notes.empty());
  const std::string file = m_folder.Read("out.step");
  EXPECT_EQ(CountIn(file, " = PRODUCT("), 9U) << "three assemblies and six bodies; four bolts are one product";
  EXPECT_EQ(CountIn(file, " = MANIFOLD_SOLID_BREP("), 6U);
  EXPECT_NE(file.find("Seal ring \\X2\\00D8\\X0\\20"), std::string::npos);
}

TEST_F(ShapeExport, ChangedPartsLeaveAsTheyAre) {
  const ImportedModel pump = Read(Make("pump", "pump.step"));
  ImportedModel expected = pump;
  ASSERT_FALSE(Write(pump, "out.step", [](tagTGeom& part, std::size_t place) {
    if (place == 6) part.name = L"Bolt of another name";
    if (place == 7) part.colour = Rgb(1, 2, 3);
  }));
  expected.parts[6].name = expected.parts[6].product = "Bolt of another name";
  expected.parts[7].colour = Rgb(1, 2, 3);
  const ImportedModel back = Read((m_folder / "out.step").string());
  ExpectSameTexts(back, expected);
  ExpectSameShapes(back, expected);
}

/// Boxes with the names that a test gives.
class NamedBoxes : public ShapeExport {
 protected:
  NamedBoxes() : m_box(Read(Make("box", "box.brep")).parts.at(0)) {}
  ImportedPart Box(const std::string& name, const std::string& instance, std::uint32_t use,
                   std::vector<ImportedAssembly> assemblies) {
    ImportedPart box = m_box;
    box.name = box.product = name;
    box.instance = instance;
    box.use = use;
    box.assemblies = std::move(assemblies);
    return box;
  }
  ImportedPart m_box;
};

TEST_F(NamedBoxes, AnyNameComesBackWhole) {
  std::string letters;
  for (int i = 0; i < 200; ++i) letters += "Aé\xE2\x82\xAC'\xF0\x9F\x94\xA9";
  ImportedModel model;
  std::uint32_t use = 0;
  for (const std::string& name :
       {std::string("it's"), std::string("''"), std::string("back\\slash \\X2\\00D8\\X0\\ \\\\"),
        std::string("ÄÖ\xF0\x9F\x94\xA9ß"), std::string("日本語"), std::string("a;b#1=(,)$*/*"),
        std::string("\"quoted\""), std::string("two\nlines"), std::string(14'000, 'x'), letters}) {
    model.parts.push_back(Box(name, "use of " + name, ++use, {{"all", "", 0}}));
  }
  ASSERT_FALSE(Write(model, "out.step"));
  EXPECT_TRUE(m_report.notes.empty());
  const ImportedModel back = Read((m_folder / "out.step").string());
  ExpectSameTexts(back, model);
  const std::string file = m_folder.Read("out.step");
  EXPECT_TRUE(std::all_of(file.begin(), file.end(), [](unsigned char letter) { return letter < 0x80; }));
}

TEST_F(NamedBoxes, NamesThatNoReaderTakesAreCutWhichIsSaid) {
  std::string name;
  for (int i = 0; i < 25'000; ++i) name += "Aé\xE2\x82\xAC'";
  ImportedModel model;
  model.parts.push_back(Box(name, "use", 1, {{"all", "", 0}}));
  ASSERT_FALSE(Write(model, "out.step"));
  EXPECT_NE(Note("IDS_WB_EXPORT_RENAMED"), "");
  const ImportedModel back = Read((m_folder / "out.step").string());
  ASSERT_EQ(back.parts.size(), 1U);
  EXPECT_GT(back.parts[0].name.size(), 2000U);
  EXPECT_TRUE(name.starts_with(back.parts[0].name));
}

TEST_F(NamedBoxes, AssembliesOfManyDepthsAreWrittenOnceForAllUses) {
  ImportedModel model;
  std::vector<ImportedAssembly> above{{"top", "", 0}};
  for (std::uint32_t depth = 1; depth <= 12; ++depth) {
    model.parts.push_back(Box("box", "box " + std::to_string(depth), 1, above));
    above.push_back({"level " + std::to_string(depth), "down " + std::to_string(depth), 2});
  }
  // Four uses of an assembly with two boxes.
  for (std::uint32_t use = 1; use <= 4; ++use) {
    for (std::uint32_t box = 1; box <= 2; ++box) {
      model.parts.push_back(Box("box", "of pair " + std::to_string(box), box, above));
      model.parts.back().assemblies.push_back({"pair", "pair " + std::to_string(use), use});
    }
  }
  ASSERT_FALSE(Write(model, "out.step"));
  const ImportedModel back = Read((m_folder / "out.step").string());
  ExpectSameTexts(back, model);
  ExpectSameShapes(back, model);
  EXPECT_EQ(CountIn(m_folder.Read("out.step"), " = PRODUCT("), 15U) << "top, twelve levels, the pair, the box";
}

TEST_F(NamedBoxes, ImportsOfOneFileAndBodiesOfOneProductStayApart) {
  ImportedModel model;
  for (const char* name : {"twin [1]", "other"}) {
    model.parts.push_back(Box(name, "both", 1, {{"top", "", 0}}));
    model.parts.back().product = "twin";
    model.parts.back().colour = Rgb(10, 20, model.parts.size());
  }
  ASSERT_FALSE(Write(model, "out.step"));
  const ImportedModel back = Read((m_folder / "out.step").string());
  ExpectSameTexts(back, model);

  Database database;
  ASSERT_EQ(StoreImport(database, back, L"one"), 1);
  ASSERT_EQ(StoreImport(database, back, L"two"), 1);
  ExportModel out;
  CollectParts(database, database.GetGeomPool().GetItrList(), out);
  ASSERT_FALSE(WriteExport((m_folder / "twice.step").string(), out, Program("qd_exchange"),
                           {[](double) { return true; }}, m_report));
  std::vector<std::string> twice = TextsOf(back);
  for (const std::string& text : TextsOf(back)) twice.push_back(text);
  EXPECT_EQ(TextsOf(Read((m_folder / "twice.step").string())), twice);
}

TEST_F(ShapeExport, FacesOfAFileThatCloseComeInAsSolids) {
  const ImportedModel model = Read(Make("loose", "loose.igs"));
  ASSERT_EQ(model.parts.size(), 6U);
  EXPECT_EQ(model.parts[0].kind, TopologyKind::Solid);
  EXPECT_NEAR(model.parts[0].shape.volume, 6000, 1e-6);
  EXPECT_EQ(std::count_if(model.parts.begin(), model.parts.end(),
                          [](const ImportedPart& part) { return part.kind == TopologyKind::Surface; }),
            5);
  ASSERT_EQ(model.notes.size(), 1U);
  EXPECT_EQ(model.notes[0].key, "IDS_WB_NOTE_OPEN");
  EXPECT_TRUE(model.notes[0].detail.starts_with("5"));
}

TEST_F(ShapeExport, PartsOutsideOfAssembliesKeepTheirPlaces) {
  const ImportedModel pump = Read(Make("pump", "pump.step"));
  ImportedModel loose = pump;
  for (ImportedPart& part : loose.parts) {
    part.product.clear();
    part.instance.clear();
    part.use = 0;
    part.assemblies.clear();
  }
  ASSERT_FALSE(Write(loose, "out.step"));
  const ImportedModel back = Read((m_folder / "out.step").string());
  ExpectSameShapes(back, loose);
  for (std::size_t i = 0; i < back.parts.size(); ++i) {
    EXPECT_EQ(back.parts[i].name, loose.parts[i].name);
    EXPECT_EQ(back.parts[i].colour, loose.parts[i].colour);
    EXPECT_TRUE(back.parts[i].assemblies.empty());
  }
}

TEST_F(ShapeExport, ShapesOfEveryKindLeave) {
  ImportedModel mixed = Read(Make("mixed", "mixed.brep"));
  std::set<TopologyKind> kinds;
  for (ImportedPart& part : mixed.parts) {
    kinds.insert(part.kind);
    part.colour = Rgb(200, 100, static_cast<unsigned>(kinds.size()));
  }
  ASSERT_GE(kinds.size(), 3U);
  ASSERT_FALSE(Write(mixed, "out.step"));
  const ImportedModel back = Read((m_folder / "out.step").string());
  ExpectSameShapes(back, mixed);
  for (std::size_t i = 0; i < back.parts.size(); ++i) {
    EXPECT_EQ(back.parts[i].name, mixed.parts[i].name);
    EXPECT_EQ(back.parts[i].kind, mixed.parts[i].kind) << back.parts[i].name;
    EXPECT_EQ(back.parts[i].colour, mixed.parts[i].colour) << back.parts[i].name;
  }
}

TEST_F(ShapeExport, BrepHoldsShapesAloneWhichIsSaid) {
  const ImportedModel pump = Read(Make("pump", "pump.step"));
  ASSERT_FALSE(Write(pump, "out.brep"));
  EXPECT_EQ(m_report.parts, 9U);
  EXPECT_NE(Note("IDS_WB_EXPORT_SHAPES_ALONE").find("Housing, Shaft"), std::string::npos);
  ExpectSameShapes(Read((m_folder / "out.brep").string()), pump);
}

TEST_F(ShapeExport, WhatIsLeftOutIsSaid) {
  ImportedModel model = Read(Make("pump", "pump.step"));
  model.parts[1].shape.brep.clear();
  model.parts[2].shape.brep = "no shape";
  ImportedMeshSet& set = model.meshSets.emplace_back();
  set.name = "plate";
  set.mesh = {{1, 2, 3}, {0, 0, 0, 1, 0, 0, 0, 1, 0}, {{2, 3, {1}, {1, 2, 3}}}};
  ASSERT_FALSE(Write(model, "out.step"));
  EXPECT_EQ(m_report.parts, 7U);
  EXPECT_EQ(Note("IDS_WB_EXPORT_LEFT_MESHES"), "plate (1)");
  std::string left;
  for (const ImportNote& note : m_report.notes) {
    if (note.key == "IDS_WB_EXPORT_LEFT_SHAPE") left += note.detail + ";";
  }
  EXPECT_NE(left.find("Shaft"), std::string::npos);
  EXPECT_NE(left.find("Impeller"), std::string::npos);
  EXPECT_EQ(Read((m_folder / "out.step").string()).parts.size(), 7U);
}

TEST_F(ShapeExport, AFailureOrACancelLeavesTheOldFile) {
  const ImportedModel pump = Read(Make("pump", "pump.step"));
  ImportedModel bad = pump;
  for (ImportedPart& part : bad.parts) part.shape.brep = "no shape";
  for (const char* name : {"old.step", "old.brep"}) {
    m_folder.Write(name, "old");
    const auto failed = Write(bad, name);
    ASSERT_TRUE(failed);
    EXPECT_EQ(failed->key, "IDS_WB_EXPORT_NOTHING");
    const auto cancelled = Write(pump, name, nullptr, {[](double) { return false; }});
    ASSERT_TRUE(cancelled);
    EXPECT_EQ(cancelled->key, "");
    EXPECT_EQ(m_folder.Read(name), "old");
  }
  EXPECT_EQ(m_folder.Names(), (std::set<std::string>{"old.step", "old.brep", "pump.step"}));
}

}  // namespace
}  // namespace qd::test

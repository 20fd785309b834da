// What goes over the pipe of the exchange program, and how it is stored.

#include <gtest/gtest.h>

#include <tuple>

#include "support/EnglishTexts.h"
#include "support/KeptDocument.h"
#include "workbench/exchange/pipe/Protocol.h"
#include "workbench/exchange/store/StoreImport.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/model/Values.h"
#include "workbench/text/Ascii.h"
#include "workbench/text/Shown.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {
namespace {

ImportedPart SamplePart() {
  ImportedPart part;
  part.name = "Bolt Ø6";
  part.product = "Bolt Ø6";
  part.instance = "Bolt 2";
  part.use = 2;
  part.assemblies = {{"Pump", "", 0}, {"Lid", "Upper lid", 3}};
  part.colour = Rgb(1, 2, 3);
  part.shape.brep = std::string("brep\0text", 9);
  part.shape.facets.points = {0, 0, 0, 1, 0, 0, 0, 1, 0};
  part.shape.facets.triangles = {0, 1, 2};
  part.shape.facets.lineSizes = {2};
  part.shape.facets.lines = {0, 2};
  return part;
}

ImportedMeshSet SampleMesh() {
  ImportedMeshSet set;
  set.name = "Group";
  set.mesh.nodeIds = {7, 8, 9};
  set.mesh.coordinates.assign(9, 0.5);
  set.mesh.blocks.push_back({2, 3, {1}, {7, 8, 9}});
  return set;
}

TEST(Frames, ArriveInPiecesOfAnySize) {
  const std::string stream = FrameOf(FrameType::Progress, EncodeProgress(250)) +
                             FrameOf(FrameType::Part, Encode(SamplePart())) +
                             FrameOf(FrameType::MeshSet, Encode(SampleMesh())) + FrameOf(FrameType::Done, "");
  for (const std::size_t piece : std::initializer_list<std::size_t>{1, 7, 100, stream.size()}) {
    FrameReader reader;
    std::vector<FrameReader::Frame> frames;
    for (std::size_t at = 0; at < stream.size(); at += piece) {
      reader.Feed(std::string_view(stream).substr(at, piece));
      while (auto frame = reader.Next()) frames.push_back(std::move(*frame));
    }
    ASSERT_EQ(frames.size(), 4U);
    EXPECT_FALSE(reader.HasRest());
    EXPECT_EQ(frames[0].payload, EncodeProgress(250));
    EXPECT_EQ(frames[1].payload, Encode(SamplePart()));
    EXPECT_EQ(frames[2].payload, Encode(SampleMesh()));
    EXPECT_EQ(frames[3].type, FrameType::Done);
  }
}

/// Written down field by field, so that none is forgotten or taken for another one.
TEST(Frames, EveryFieldOfEveryRecordArrives) {
  ImportedPart part = SamplePart();
  part.kind = TopologyKind::Surface;
  part.shape.volume = 1;
  part.shape.area = 2;
  part.shape.length = 3;
  part.shape.geometry = {{"IDS_QD_WRT_PROP_RADIUS", 4}};
  const auto got = DecodePart(Encode(part));
  ASSERT_TRUE(got);
  EXPECT_EQ(std::tie(got->name, got->product, got->instance, got->use, got->colour, got->kind),
            std::tie(part.name, part.product, part.instance, part.use, part.colour, part.kind));
  ASSERT_EQ(got->assemblies.size(), 2U);
  for (std::size_t i = 0; i < 2; ++i) {
    const ImportedAssembly& is = got->assemblies[i];
    const ImportedAssembly& was = part.assemblies[i];
    EXPECT_EQ(std::tie(is.product, is.instance, is.use), std::tie(was.product, was.instance, was.use));
  }
  EXPECT_EQ(std::tie(got->shape.brep, got->shape.volume, got->shape.area, got->shape.length, got->shape.geometry),
            std::tie(part.shape.brep, part.shape.volume, part.shape.area, part.shape.length, part.shape.geometry));
  EXPECT_EQ(got->shape.facets.points, part.shape.facets.points);

  ImportedMeshSet set = SampleMesh();
  set.parent = 3;
  set.property = 5;
  const auto gotSet = DecodeMeshSet(Encode(set));
  ASSERT_TRUE(gotSet);
  EXPECT_EQ(std::tie(gotSet->name, gotSet->parent, gotSet->property, gotSet->mesh.nodeIds),
            std::tie(set.name, set.parent, set.property, set.mesh.nodeIds));

  const ImportedMaterial material{"Steel", 1, 2, 3};
  const auto gotMaterial = DecodeMaterial(Encode(material));
  ASSERT_TRUE(gotMaterial);
  EXPECT_EQ(
      std::tie(gotMaterial->name, gotMaterial->youngsModulus, gotMaterial->poissonsRatio, gotMaterial->density),
      std::tie(material.name, material.youngsModulus, material.poissonsRatio, material.density));
  const ImportedProperty property{"plate", tagTProperty::Kind::Shell, 4, 6};
  const auto gotProperty = DecodeProperty(Encode(property));
  ASSERT_TRUE(gotProperty);
  EXPECT_EQ(std::tie(gotProperty->name, gotProperty->kind, gotProperty->size, gotProperty->material),
            std::tie(property.name, property.kind, property.size, property.material));
  EXPECT_EQ(DecodeNote(Encode(ImportNote{"KEY", "detail"}))->key, "KEY");
  EXPECT_EQ(DecodeNote(Encode(ImportNote{"KEY", "detail"}))->detail, "detail");
  EXPECT_EQ(DecodeError(Encode(ImportError{"KEY", "detail"}))->key, "KEY");

  const ImportedDeck deck{"a.inp", "*STEP\n", {{"A", 7, true}, {"B", 8, false}}, {{"M", 9, false}}, {10, 11}, 12};
  const auto gotDeck = DecodeDeck(Encode(deck));
  ASSERT_TRUE(gotDeck);
  EXPECT_EQ(std::tie(gotDeck->name, gotDeck->text, gotDeck->sections, gotDeck->rest),
            std::tie(deck.name, deck.text, deck.sections, deck.rest));
  const auto names = [](const std::vector<ImportedDeck::Name>& all) {
    std::string text;
    for (const auto& one : all) text += one.name + std::to_string(one.place) + (one.shared ? " shared " : " ");
    return text;
  };
  EXPECT_EQ(names(gotDeck->sets), "A7 shared B8 ");
  EXPECT_EQ(names(gotDeck->materials), "M9 ");

  ShapeOperation operation;
  operation.kind = ShapeOperationKind::Mesh;
  std::copy_n(std::vector<double>{1, 2, 3}.begin(), 3, operation.point);
  std::copy_n(std::vector<double>{4, 5, 6}.begin(), 3, operation.vector);
  operation.amount = 7;
  operation.dimension = 2;
  for (const bool mapped : {true, false}) {
    operation.mapped = mapped;
    operation.secondOrder = !mapped;
    operation.target = "target";
    operation.operands = {{"a", "brep a", TopologyKind::Curve}, {"b", "brep b", TopologyKind::Solid}};
    const auto is = DecodeOperation(Encode(operation));
    ASSERT_TRUE(is);
    EXPECT_EQ(std::tie(is->kind, is->amount, is->dimension, is->mapped, is->secondOrder, is->target),
              std::tie(operation.kind, operation.amount, operation.dimension, operation.mapped,
                       operation.secondOrder, operation.target));
    EXPECT_EQ(is->point[0] + 10 * is->point[1] + 100 * is->point[2], 321);
    EXPECT_EQ(is->vector[0] + 10 * is->vector[1] + 100 * is->vector[2], 654);
    ASSERT_EQ(is->operands.size(), 2U);
    EXPECT_EQ(is->operands[0].name + is->operands[0].brep + is->operands[1].name, "abrep ab");
    EXPECT_EQ(is->operands[0].kind, TopologyKind::Curve);
  }
  for (const std::uint32_t thousandths : {0U, 1U, 999U, 1000U}) {
    EXPECT_EQ(DecodeProgress(EncodeProgress(thousandths)), thousandths);
  }
  EXPECT_EQ(DecodeBeat(EncodeBeat(1ULL << 40U)), 1ULL << 40U);
  EXPECT_EQ(DecodeWritten(EncodeWritten(77)), 77U);
}

/// However small the frames are, they end where all of them together take what is allowed.
TEST(Frames, AreTakenUpToTheirBounds) {
  const std::string small = FrameOf(FrameType::Note, "x");
  FrameReader reader({.frame = 1000, .total = 10'000});
  int taken = 0;
  while (taken < 1000 && reader.Feed(small)) ++taken;
  EXPECT_GT(taken, 5);
  EXPECT_LT(taken, 30) << "each costs what it takes to keep it";
  EXPECT_FALSE(reader.Feed(small));
  FrameReader large({.frame = 1000, .total = 10'000});
  EXPECT_TRUE(large.Feed(FrameOf(FrameType::Note, std::string(1000, 'x'))));
  EXPECT_FALSE(large.Feed(FrameOf(FrameType::Note, std::string(1001, 'x'))));
  // Signs of life are not kept.
  FrameReader beats({.frame = 1000, .total = 10'000});
  for (int i = 0; i < 1000; ++i) ASSERT_TRUE(beats.Feed(FrameOf(FrameType::Beat, EncodeBeat(1))));
}

TEST(Frames, PayloadsThatAreCutOrTooLongAreNone) {
  const std::string part = Encode(SamplePart());
  const std::string mesh = Encode(SampleMesh());
  const std::string deck =
      Encode(ImportedDeck{"a.inp", "*STEP\n", {{"A", 7, true}}, {{"M", 9, false}}, {10, 11}, 12});
  const std::string error = Encode(ImportError{"KEY", "detail"});
  for (std::size_t length = 0; length < part.size(); ++length) EXPECT_FALSE(DecodePart(part.substr(0, length)));
  for (std::size_t length = 0; length < mesh.size(); ++length) EXPECT_FALSE(DecodeMeshSet(mesh.substr(0, length)));
  for (std::size_t length = 0; length < error.size(); ++length) EXPECT_FALSE(DecodeError(error.substr(0, length)));
  for (std::size_t length = 0; length < deck.size(); ++length) EXPECT_FALSE(DecodeDeck(deck.substr(0, length)));
  EXPECT_FALSE(DecodeDeck(deck + "x"));
  EXPECT_FALSE(DecodePart(part + "x"));
  EXPECT_FALSE(DecodeMeshSet(mesh + "x"));
  EXPECT_FALSE(DecodeProgress(EncodeProgress(1001)));
  EXPECT_EQ(DecodeError(error)->detail, "detail");
}

TEST(Frames, NumbersThatPointNowhereAreRefused) {
  ImportedPart triangle = SamplePart();
  triangle.shape.facets.triangles[1] = 3;
  EXPECT_FALSE(DecodePart(Encode(triangle)));
  ImportedPart line = SamplePart();
  line.shape.facets.lineSizes[0] = 3;
  EXPECT_FALSE(DecodePart(Encode(line)));
  ImportedPart kind = SamplePart();
  kind.kind = static_cast<TopologyKind>(9);
  EXPECT_FALSE(DecodePart(Encode(kind)));
  ImportedMeshSet block = SampleMesh();
  block.mesh.blocks[0].nodesPerElement = 0;
  EXPECT_FALSE(DecodeMeshSet(Encode(block)));
  // A count that no memory could hold is refused before anything is made.
  std::string huge = Encode(SamplePart());
  huge.replace(0, 8, std::string(8, '\xFF'));
  EXPECT_FALSE(DecodePart(huge));
}

TEST(Storing, NamesOfEveryKindAreOnOneLineAndNotEmpty) {
  const test::EnglishTexts texts;
  Database data;
  test::KeptDocument kept(data);
  ImportedModel model;
  const std::string odd = "a\r\nb\x1B[31m\xC2\x85\xE2\x80\xA8\x7F" + std::string("\0", 1) + "c";
  for (const std::string& name : {odd, std::string(" \t"), std::string(200, 'x')}) {
    model.parts.push_back(SamplePart());
    model.parts.back().name = name;
    model.parts.back().assemblies = {{name, "", 0}};
    model.meshSets.push_back(SampleMesh());
    model.meshSets.back().name = name;
    model.meshSets.back().mesh.blocks[0].elementIds[0] = model.meshSets.size();
    model.materials.push_back({name, 1, 0, 0});
    model.properties.push_back({name, tagTProperty::Kind::Solid, 0, -1});
    model.decks.push_back({name, "", {}, {}, {}, -1});
  }
  ASSERT_EQ(StoreImport(data, std::move(model), L"Import"), 1);
  kept.Check(true);
  const auto namesOf = [](const auto& pool) {
    std::vector<CString> names;
    for (const iterator itr : pool.GetItrList()) names.push_back(pool.GetAtNU(itr)->name);
    return names;
  };
  const std::vector<CString> clean{L"a  b [31m    c", L"unnamed", CString(kMaxNameLength, L'x')};
  EXPECT_EQ(namesOf(data.GetGeomPool()), clean);
  EXPECT_EQ(namesOf(data.GetGsetPool()), clean);
  EXPECT_EQ(namesOf(data.GetMsetPool()), clean);
  EXPECT_EQ(namesOf(data.GetMaterialPool()), clean);
  EXPECT_EQ(namesOf(data.GetPropertyPool()), clean);
  EXPECT_EQ(namesOf(data.GetDeckPool()), clean);
}

TEST(Storing, MakesPartsSetsAndMeshesInOneAct) {
  Database data;
  test::KeptDocument kept(data);
  ImportedModel model;
  const auto before = data.Snapshot();
  model.parts = {SamplePart(), SamplePart(), ImportedPart{}};
  model.meshSets = {SampleMesh()};
  ASSERT_EQ(StoreImport(data, std::move(model), L"Import"), 1);
  kept.Check(true);
  const auto parts = data.GetGeomPool().GetItrList();
  ASSERT_EQ(parts.size(), 3U);
  const tagTGeom* first = data.GetGeomPool().GetAtNU(parts[0]);
  EXPECT_EQ(first->name, L"Bolt Ø6");
  EXPECT_EQ(data.GetGsetPool().GetAtNU(first->gset)->name, L"Pump/Lid");
  EXPECT_EQ(data.GetGsetPool().Count(), 1U);
  EXPECT_EQ(first->gset, data.GetGeomPool().GetAtNU(parts[1])->gset);
  EXPECT_NE(first->cadItem, data.GetGeomPool().GetAtNU(parts[1])->cadItem);
  const tagTMset* mesh = data.GetMsetPool().GetAtNU(data.GetMsetPool().GetItrList()[0]);
  EXPECT_EQ(mesh->nodeCount, 3U);
  EXPECT_EQ(mesh->elementCount, 1U);
  EXPECT_EQ(data.Undo(), 1);
  EXPECT_EQ(data.Snapshot(), before);
}

TEST(Storing, NumbersAFileWithLargeNumbersAnewTheSecondTime) {
  Database data;
  test::KeptDocument kept(data);
  for (int time = 0; time < 2; ++time) {
    ImportedModel model;
    model.meshSets = {SampleMesh()};
    model.meshSets[0].mesh = *Renumber(model.meshSets[0].mesh, kMostKeptNumber / 2, kMostKeptNumber / 2);
    ASSERT_EQ(StoreImport(data, std::move(model), L"Import"), 1);
  }
  kept.Check(true);
  for (const iterator itr : data.GetMsetPool().GetItrList()) {
    const MeshData& mesh = *data.GetMsetPool().GetAtNU(itr)->mesh;
    EXPECT_LE(std::max(LastNode(mesh), LastElement(mesh)), kMostKeptNumber);
  }
}

TEST(Storing, ChangesNothingWhileATransactionIsOpen) {
  Database data;
  const auto before = data.Snapshot();
  data.BeginTransaction(L"other");
  ImportedModel model;
  model.parts = {SamplePart()};
  EXPECT_EQ(StoreImport(data, std::move(model), L"Import"), 0);
  data.RollbackTransaction();
  EXPECT_EQ(data.Snapshot(), before);
}

struct TextCase {
  const char* bytes;
  const wchar_t* text;
};
class Utf8 : public ::testing::TestWithParam<TextCase> {};
TEST_P(Utf8, ReadsAnything) {
  EXPECT_EQ(FromUtf8(GetParam().bytes), GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(
    Texts, Utf8,
    ::testing::Values(TextCase{"plain", L"plain"}, TextCase{"\xC3\x98", L"Ø"}, TextCase{"\xF0\x9F\x98\x80", L"😀"},
                      TextCase{"\xFF\x41", L"\xFFFD\x41"}, TextCase{"\xC3", L"\xFFFD"},
                      TextCase{"\xC0\x80", L"\xFFFD\xFFFD"}, TextCase{"\xF5\x80\x80", L"\xFFFD\xFFFD\xFFFD"},
                      TextCase{"\xED\xA0\x80", L"\xFFFD\xFFFD\xFFFD"},
                      TextCase{"\xE0\x9F\xBF", L"\xFFFD\xFFFD\xFFFD"}, TextCase{"\xE0\xA0\x80", L"\x0800"},
                      TextCase{"\xF0\x8F\xBF\xBF", L"\xFFFD\xFFFD\xFFFD\xFFFD"},
                      TextCase{"\xF4\x90\x80\x80", L"\xFFFD\xFFFD\xFFFD\xFFFD"}, TextCase{"\xE4\xB8\xAD", L"中"}));

TEST(Utf8RoundTrip, KeepsWhatIsTextAndReplacesWhatIsNot) {
  const std::wstring text = L"aØ中😀\n";
  EXPECT_EQ(FromUtf8(ToUtf8(text)), text);
  EXPECT_EQ(ToUtf8(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
}

TEST(ShownNames, EscapeWhatSteersTheTextAroundThemAndTellThatTheyWereCut) {
  for (const int code :
       {0x0A, 0x1F, 0x7F, 0x9F, 0x61C, 0x200E, 0x200F, 0x2028, 0x2029, 0x202A, 0x202E, 0x2066, 0x2068, 0x2069}) {
    const std::string shown = ShownText(ToUtf8({L'a', static_cast<wchar_t>(code), L'b'}), 3);
    EXPECT_TRUE(shown.starts_with("a\\u") && shown.ends_with("b")) << shown;
  }
  for (const int code : {0x20, 0x7E, 0xA0, 0x61B, 0x61D, 0x200D, 0x2010, 0x2027, 0x202F, 0x2065, 0x206A}) {
    const std::string plain = ToUtf8(std::wstring(3, static_cast<wchar_t>(code)));
    EXPECT_EQ(ShownText(plain, 3), plain);
    EXPECT_EQ(ShownText(plain, 2), plain.substr(0, plain.size() / 3 * 2) + "…");
    EXPECT_EQ(ShownText(plain, 0), "…");
  }
}

TEST(Letters, ChangeTheirCaseAndNothingElseDoes) {
  const std::string small = "abcdefghijklmnopqrstuvwxyz";
  const std::string large = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  const std::string others = "@[`{09\xC4\xE4";
  EXPECT_EQ(UpperCase(small + others + large), large + others + large);
  EXPECT_EQ(LowerCase(small + others + large), small + others + small);
}

}  // namespace
}  // namespace qd::workbench

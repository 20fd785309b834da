// Real files through the exchange program: what they hold, and what is said of bad ones.

#include <QEventLoop>

#include <QDirIterator>
#include <QRegularExpression>
#include <algorithm>
#include <random>

#include "Files.h"
#include "workbench/app/ExchangeJob.h"
#include "workbench/app/MessageTables.h"

namespace qd::test {
namespace {

using namespace workbench;

struct Outcome {
  ImportedModel model;
  QString failure;
  bool finished = false;
};

Outcome Run(ExchangeJob& job, const std::function<void(ExchangeJob&)>& meanwhile = nullptr) {
  Outcome outcome;
  QEventLoop loop;
  QObject::connect(&job, &ExchangeJob::Finished, &loop, [&](ImportedModel& model) {
    outcome.model = std::move(model);
    outcome.finished = true;
    loop.quit();
  });
  QObject::connect(&job, &ExchangeJob::Failed, &loop, [&](const QString& reason) {
    outcome.failure = reason;
    loop.quit();
  });
  QMetaObject::invokeMethod(
      &job,
      [&] {
        job.Start();
        if (meanwhile) meanwhile(job);
      },
      Qt::QueuedConnection);
  loop.exec();
  return outcome;
}

Outcome Import(const QString& path, const std::function<void(ExchangeJob&)>& meanwhile = nullptr) {
  ExchangeJob job(path);
  return Run(job, meanwhile);
}

Outcome Work(const ShapeOperation& operation) {
  ExchangeJob job(operation);
  return Run(job);
}

class ImportFile : public ::testing::Test {
 protected:
  MessageTables m_messages;
  Files m_files;
};

TEST_F(ImportFile, StepKeepsNamesColoursUsesAndAssembliesAtAnyDepth) {
  const Outcome pump = Import(m_files.Make({"pump"}, "pump.step"));
  ASSERT_TRUE(pump.finished) << pump.failure.toStdString();
  ASSERT_EQ(pump.model.parts.size(), 9U);
  const ImportedPart& seal = pump.model.parts[3];
  EXPECT_EQ(seal.name, "Seal ring Ø20");
  EXPECT_EQ(seal.product, "Seal ring Ø20");
  EXPECT_EQ(seal.instance, "Upper seal");
  EXPECT_EQ(seal.use, 3U);
  ASSERT_EQ(seal.assemblies.size(), 2U);
  EXPECT_EQ(AssemblyPath(seal), "Pump/Rotor");
  EXPECT_EQ(seal.assemblies[0].instance, "");
  EXPECT_EQ(seal.assemblies[1].instance, "Rotor 1");
  EXPECT_EQ(seal.assemblies[1].use, 2U);
  EXPECT_EQ(pump.model.parts[8].instance, "Bolt 4");
  EXPECT_TRUE(pump.model.notes.empty());
  EXPECT_EQ(seal.colour, Rgb(0x33, 0x33, 0x38));
  EXPECT_EQ(AssemblyPath(pump.model.parts[0]), "Pump");
  for (const ImportedPart& part : pump.model.parts) {
    EXPECT_EQ(part.kind, TopologyKind::Solid);
    EXPECT_FALSE(part.shape.facets.triangles.empty());
    EXPECT_FALSE(part.shape.facets.lines.empty());
    EXPECT_FALSE(part.shape.brep.empty());
  }
  // Uses of one product stand at their own places.
  EXPECT_NE(pump.model.parts[5].shape.facets.points, pump.model.parts[6].shape.facets.points);
}

TEST_F(ImportFile, IgesAndBrepGiveTheirBodies) {
  for (const char* name : {"box.igs", "box.brep"}) {
    const Outcome box = Import(m_files.Make({"box"}, name));
    ASSERT_TRUE(box.finished) << box.failure.toStdString();
    ASSERT_EQ(box.model.parts.size(), 1U);
    EXPECT_EQ(box.model.parts[0].shape.facets.triangles.size(), 36U);
    EXPECT_FALSE(box.model.parts[0].name.empty());
  }
}

bool HasNote(const ImportedModel& model, const std::string& key, const std::string& part) {
  return std::any_of(model.notes.begin(), model.notes.end(), [&](const ImportNote& note) {
    return note.key == key && note.detail.find(part) != std::string::npos;
  });
}

TEST_F(ImportFile, WhatCannotBeDrawnComesInAndIsNamed) {
  for (const char* name : {"specks.brep", "specks.step"}) {
    const Outcome specks = Import(m_files.Make({"specks"}, name));
    ASSERT_TRUE(specks.finished) << specks.failure.toStdString();
    ASSERT_EQ(specks.model.parts.size(), 3U) << name;
    EXPECT_EQ(specks.model.parts[0].shape.facets.triangles.size(), 36U);
    const ImportedPart& ball = specks.model.parts[1];
    const ImportedPart& point = specks.model.parts[2];
    EXPECT_FALSE(ball.shape.facets.triangles.empty());
    EXPECT_GT(ball.shape.area, 0);
    EXPECT_EQ(point.kind, TopologyKind::Point);
    EXPECT_EQ(point.shape.facets.points, (std::vector<float>{1, 2, 50}));
    EXPECT_FALSE(HasNote(specks.model, "IDS_WB_NOTE_NOT_DRAWN", ball.name));
    EXPECT_TRUE(HasNote(specks.model, "IDS_WB_NOTE_NOT_DRAWN", point.name));
  }
}

TEST_F(ImportFile, UsesOfOneProductAreMovedNotMadeAgain) {
  const Outcome uses = Import(m_files.Make({"groups", "250"}, "groups.step"));
  ASSERT_TRUE(uses.finished) << uses.failure.toStdString();
  ASSERT_EQ(uses.model.parts.size(), 250U);
  const ImportedPart& part = uses.model.parts[204];  // the second block of the third group
  EXPECT_EQ(AssemblyPath(part), "All/Group 3");
  EXPECT_EQ(part.name, "Block");
  EXPECT_EQ(part.instance, "Use 205");
  EXPECT_EQ(part.colour, Rgb(0xCC, 0x4C, 0x4C));
  EXPECT_NEAR(part.shape.volume, 216, 1e-6);
  const std::vector<float>& points = part.shape.facets.points;
  EXPECT_FLOAT_EQ(*std::min_element(points.begin(), points.end()), 0);
  EXPECT_FLOAT_EQ(points[0], 40);
  // The shape goes with the facets: moved once more it is where it should be.
  ShapeOperation move;
  move.vector[2] = 100;
  move.operands.push_back({part.name, part.shape.brep, part.kind});
  const Outcome moved = Work(move);
  ASSERT_EQ(moved.model.parts.size(), 1U) << moved.failure.toStdString();
  EXPECT_FLOAT_EQ(moved.model.parts[0].shape.facets.points[0], 40);
  EXPECT_FLOAT_EQ(moved.model.parts[0].shape.facets.points[1], 20);
}

/// Damages some characters of one line, or takes lines out; the same for the same number.
QByteArray Damaged(const QByteArray& sound, int first, int last, unsigned number) {
  std::mt19937 random(number);
  QList<QByteArray> lines = sound.split('\n');
  const auto below = [&random](qsizetype limit) {
    return static_cast<qsizetype>(random() % static_cast<unsigned>(limit));
  };
  const qsizetype at = first + below(last - first);
  if (number % 3 == 0) {
    lines.remove(at, 1 + below(3));
    return lines.join('\n');
  }
  QByteArray& line = lines[at];
  const qsizetype columns = std::min<qsizetype>(line.size(), 64);
  for (int tries = 0; tries < 100 && columns > 0; ++tries) {
    char& character = line[below(columns)];
    const bool digit = character >= '0' && character <= '9';
    if (number % 3 == 1 && !digit) continue;
    character = number % 3 == 1 ? static_cast<char>('0' + below(10)) : static_cast<char>('!' + below(90));
    if (tries > 3) break;
  }
  return lines.join('\n');
}

std::size_t Facets(const ImportedModel& model) {
  std::size_t facets = 0;
  for (const ImportedPart& part : model.parts) facets += part.shape.facets.triangles.size();
  return facets;
}

std::string Notes(const ImportedModel& model) {
  std::string notes;
  for (const ImportNote& note : model.notes) notes += note.key + " " + note.detail + "\n";
  return notes;
}

TEST_F(ImportFile, NothingOfADamagedFileIsLostWithoutAWord) {
  const struct {
    const char* model;
    const char* name;
    int first;  // lines that may be damaged, the last ones counted from the end
    int last;
  } files[] = {{"pump", "pump.step", 12, -4}, {"mixed", "mixed.igs", 5, -2}};
  for (const auto& file : files) {
    const QByteArray bytes = Files::Read(m_files.Make({file.model}, file.name));
    const Outcome sound = Import(m_files.Folder() + "/" + file.name);
    ASSERT_TRUE(sound.finished);
    for (const ImportNote& note : sound.model.notes) EXPECT_EQ(note.key, "IDS_WB_NOTE_OPEN") << note.detail;
    const int last = static_cast<int>(bytes.count('\n')) + file.last;
    int less = 0;
    int silent = 0;
    for (unsigned number = 0; number < 45; ++number) {
      const QByteArray bad = Damaged(bytes, file.first, last, number);
      const Outcome damaged = Import(m_files.Write(QString("damaged_") + file.name, bad));
      if (!damaged.finished) continue;  // refused with a reason
      const ImportedModel& model = damaged.model;
      if (model.parts.size() >= sound.model.parts.size() && Facets(model) >= Facets(sound.model)) continue;
      ++less;
      if (Notes(model) == Notes(sound.model)) ++silent;
    }
    // A number that becomes another one of the same kind makes another sound file: a smaller ball, a nearer arc.
    EXPECT_LE(silent, 1) << file.name;
    EXPECT_GT(less, 0);
  }
}

TEST_F(ImportFile, BadFilesAreNamedByTheirFault) {
  const QByteArray step = Files::Read(m_files.Make({"pump"}, "pump.step"));
  const QByteArray igs = Files::Read(m_files.Make({"box"}, "box.igs"));
  const QByteArray brep = Files::Read(m_files.Make({"box"}, "box.brep"));
  const struct {
    QString path;
    QString reason;
  } cases[] = {
      {m_files.Folder() + "/none.step", Text("IDS_WB_IMPORT_MISSING")},
      {m_files.Folder(), Text("IDS_WB_IMPORT_DIRECTORY")},
      {m_files.Write("empty.step", ""), Text("IDS_WB_IMPORT_EMPTY")},
      {m_files.Write("cut.step", step.left(step.size() / 2)), Text("IDS_WB_IMPORT_TRUNCATED")},
      {m_files.Write("cut.igs", igs.left(igs.size() / 2)), Text("IDS_WB_IMPORT_TRUNCATED")},
      {m_files.Write("cut.brep", brep.left(brep.size() / 2)), Text("IDS_WB_IMPORT_TRUNCATED")},
      {m_files.Write("foreign.step", "hello"), Text("IDS_WB_IMPORT_FOREIGN", {".step"})},
      {m_files.Write("other.txt", "hello"), Text("IDS_WB_IMPORT_FORMAT", {".txt"})},
      {m_files.Write("bare.step", "ISO-10303-21;\nHEADER;\nENDSEC;\nDATA;\nENDSEC;\nEND-ISO-10303-21;\n"),
       QString()},
      {m_files.Write("bare.msh", "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n"), Text("IDS_WB_IMPORT_NOTHING")},
  };
  for (const auto& bad : cases) {
    const Outcome outcome = Import(bad.path);
    EXPECT_FALSE(outcome.finished) << bad.path.toStdString();
    EXPECT_FALSE(outcome.failure.isEmpty()) << bad.path.toStdString();
    if (!bad.reason.isEmpty()) {
      EXPECT_EQ(outcome.failure, bad.reason) << bad.path.toStdString();
    }
  }
}

TEST_F(ImportFile, ACancelledOneLeavesNothing) {
  const Outcome outcome =
      Import(m_files.Make({"grid", "60"}, "grid.step"), [](ExchangeJob& job) { job.Cancel(); });
  EXPECT_FALSE(outcome.finished);
  EXPECT_TRUE(outcome.failure.isEmpty());
}

}  // namespace
}  // namespace qd::test

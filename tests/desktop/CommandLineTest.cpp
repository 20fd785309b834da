// The workbench as a program, started from a command line, mostly where there is no display.

#include <gmock/gmock.h>

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <filesystem>
#include <fstream>

#include "Files.h"
#include "platform/Version.h"
#include "workbench/app/ExchangeJob.h"
#include "workbench/batch/BatchDocument.h"

namespace qd::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct Ended {
  int status = -1;  // -1 for a program that crashed
  std::string out;
  std::string errors;
};

/// Runs the workbench where nothing leads to a display.
Ended Start(const std::vector<std::string>& arguments) {
  // A shell hands over names as bytes, which no text of the toolkit can hold.
  std::string command = "exec '" + QCoreApplication::applicationDirPath().toStdString() + "/workbench'";
  for (const std::string& argument : arguments) {
    EXPECT_EQ(argument.find('\''), std::string::npos);
    command += " '" + argument + "'";
  }
  QTemporaryDir folder;
  QFile script(folder.filePath("start"));
  EXPECT_TRUE(script.open(QIODevice::WriteOnly));
  script.write(command.c_str());
  script.close();
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) environment.remove(name);
  environment.insert("XDG_STATE_HOME", folder.path());
  QProcess program;
  program.setProcessEnvironment(environment);
  program.start("/bin/sh", {script.fileName()});
  EXPECT_TRUE(program.waitForFinished(60'000));
  Ended run;
  if (program.exitStatus() == QProcess::NormalExit) run.status = program.exitCode();
  run.out = program.readAllStandardOutput().toStdString();
  run.errors = program.readAllStandardError().toStdString();
  return run;
}

const std::string kTriangle =
    "*NODE\n1, 0, 0, 0\n2, 1, 0, 0\n3, 0, 1, 0\n*ELEMENT, TYPE=S3, ELSET=PLATE\n1, 1, 2, 3\n";

class CommandLine : public ::testing::Test {
 protected:
  std::string Path(const std::string& name) const { return m_files.Folder().toStdString() + "/" + name; }
  Files m_files;
};

/// Triangles can take longer than all the rest.
TEST_F(CommandLine, NothingIsMadeToBeDrawnWithoutAWindow) {
  workbench::Windowless surroundings(workbench::ExchangeProgram());
  workbench::BatchDocument doc(surroundings);
  const std::string file = m_files.Make({"pump"}, "pump.step").toStdString();
  ASSERT_TRUE(doc.Import(file, [](double) { return true; }).IsGood());
  const auto& parts = doc.Data().GetGeomPool();
  ASSERT_GT(parts.Count(), 0U);
  for (const iterator itr : parts.GetItrList()) {
    const PartShape& shape = *parts.GetAtNU(itr)->shape;
    EXPECT_TRUE(shape.facets.points.empty() && shape.facets.triangles.empty());
    EXPECT_FALSE(shape.brep.empty());
    EXPECT_GT(shape.area, 0);
  }
}

TEST_F(CommandLine, HelpAndVersionNeedNoDisplay) {
  const Ended help = Start({"--help"});
  EXPECT_EQ(help.status, 0) << help.errors;
  for (const char* option : {"--help", "--version", "--print-tree", "--verify", "--repair", "--screenshot"}) {
    EXPECT_THAT(help.out, HasSubstr(option));
  }
  const Ended version = Start({"--version"});
  EXPECT_EQ(version.status, 0) << version.errors;
  EXPECT_THAT(version.out, HasSubstr(QD_WRT_VERSION));
}

TEST_F(CommandLine, WrongUseIsSaidInASentence) {
  const struct {
    std::vector<std::string> arguments;
    const char* said;
  } cases[] = {{{"--nonsense"}, "--nonsense"},
               {{"-x"}, "-x"},
               {{"--verify"}, "--verify"},
               {{"--verify", ""}, "--verify"},
               {{"--verify", "a.qdw", "b.qdw"}, "b.qdw"},
               {{"--repair", "a.qdw"}, "--repair"},
               {{"--repair", "a.qdw", "b.qdw", "c.qdw"}, "--repair"},
               {{"--print-tree=yes"}, "--print-tree"},
               {{"--print-tree", "--print-tree"}, "--print-tree"},
               {{"--print-tree", "--verify", "a.qdw"}, "--verify"},
               {{"--print-tree", "a.qdw", "b.qdw"}, "b.qdw"},
               {{"--export", "out.msh"}, "--export"},
               {{"--export", "out.xyz", "a.inp"}, "xyz"},
               {{"--export", "out", "a.inp"}, "out"},
               {{"--print-tree", ""}, "name"},
               {{"--print-tree", "--language", "xx"}, "xx"},
               {{"--variant=none"}, "none"},
               {{"--screenshot", "model.qdw"}, "model.qdw"},
               {{"--screenshot", "a.png", "--size", "8x8"}, "8x8"},
               {{"--screenshot", "a.png", "--view", "up"}, "up"},
               {{"--screenshot", "a.png", "--section", "x,x=2"}, "x,x=2"},
               {{"--hide", "wing", "a.inp"}, "--screenshot"},
               {{"--print-tree", "--mesh", "5"}, "--export and --info"},
               {{"--info", "--mesh", "0", "a.inp"}, "0"},
               {{"--info", "--units", "ft", "a.inp"}, "ft"},
               {{"--export", "a.step", "--units", "m", "a.inp"}, "--units"},
               {{"--export", "a.qdw", "--select", "x", "a.inp"}, "--select"},
               {{"--window"}, "--window"},
               {{"--window", "a.inp"}, "--window"},
               {{"--window", "--print-tree"}, "--window"},
               {{"--window", "--script"}, "--script"},
               {{"--window", "--info", "--script", "a.py"}, "--script"},
               {{"--print-tree", "--script", "a.py"}, "--script"},
               {{"--screenshot", "a.png", "--hide", "type:nonsense"}, "type:nonsense"},
               {{"--info", "--select", "/x", "a.inp"}, "--select /x"},
               {{"--completion", "fish"}, "fish"}};
  for (const auto& wrong : cases) {
    const Ended run = Start(wrong.arguments);
    EXPECT_EQ(run.status, 2) << ::testing::PrintToString(wrong.arguments);
    EXPECT_THAT(run.errors, HasSubstr(wrong.said)) << ::testing::PrintToString(wrong.arguments);
    EXPECT_THAT(run.out, IsEmpty());
  }
}

TEST_F(CommandLine, AWindowWithoutADisplayIsRefusedInASentence) {
  const Ended run = Start({});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.errors, HasSubstr("display"));
}

TEST_F(CommandLine, TheExampleStandsForTheFileThatIsNotNamed) {
  for (const char* name : {"example", "named"}) {
    std::ofstream(Path(std::string(name) + ".inp")) << kTriangle.substr(0, kTriangle.find("PLATE")) << name << "\n"
                                                    << "1, 1, 2, 3\n";
  }
  const std::vector<std::string> alone{"--example", Path("example.inp"), "--print-tree", "--language", "de"};
  EXPECT_THAT(Start(alone).out, HasSubstr("example"));
  std::vector<std::string> beside = alone;
  beside.push_back(Path("named.inp"));
  const Ended run = Start(beside);
  EXPECT_THAT(run.out, HasSubstr("named"));
  EXPECT_THAT(run.out, Not(HasSubstr("example")));
}

TEST_F(CommandLine, AnyBytesAreAFileName) {
  const std::string odd[] = {"plain.inp", "-dash.inp", "\xFF\xFE r\xE9sum\xE9.inp", "file:x.inp", "r\xC3\xA9.inp"};
  for (const std::string& name : odd) {
    std::ofstream(Path(name)) << kTriangle;
    const Ended run = Start({"--print-tree", "--", Path(name)});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.out, HasSubstr("PLATE")) << name;
    std::filesystem::remove(Path(name));  // the toolkit's folder does not see all of them
  }
}

TEST_F(CommandLine, FilesAreExportedWithWhatTheFormatCannotHoldSaidByName) {
  std::ofstream(Path("plate.inp")) << kTriangle << "*ELSET, ELSET=ALL\nPLATE,\n";
  const Ended run = Start({"--export", Path("out.msh"), Path("plate.inp")});
  EXPECT_EQ(run.status, 0) << run.errors;
  EXPECT_THAT(run.errors, HasSubstr("nodes: 3, elements: 1, groups: 1"));
  EXPECT_THAT(run.errors, HasSubstr("ALL/PLATE"));
  EXPECT_THAT(Files::Read(QString::fromStdString(Path("out.msh"))).toStdString(), HasSubstr("2 2 \"PLATE\""));
}

TEST_F(CommandLine, AFailedExportHarmsNothing) {
  std::ofstream(Path("good.inp")) << kTriangle;
  std::ofstream(Path("bad.inp")) << "*NODE\nx\n";
  std::ofstream(Path("old.msh")) << "old";
  std::filesystem::create_hard_link(Path("good.inp"), Path("same.inp"));
  std::filesystem::create_symlink("good.inp", Path("link.inp"));
  std::filesystem::create_symlink("/dev/full", Path("full.msh"));
  std::filesystem::create_directory(Path("folder.msh"));
  const struct {
    std::vector<std::string> arguments;
    int status;
  } cases[] = {
      {{Path("old.msh"), Path("bad.inp")}, 1},         {{Path("old.msh"), Path("good.inp"), Path("bad.inp")}, 1},
      {{Path("old.msh"), Path("none.qdw")}, 1},        {{Path("good.inp"), Path("good.inp")}, 2},
      {{Path("same.inp"), Path("good.inp")}, 2},       {{Path("link.inp"), Path("good.inp")}, 2},
      {{Path("full.msh"), Path("good.inp")}, 1},       {{Path("folder.msh"), Path("good.inp")}, 1},
      {{Path("none") + "/a.msh", Path("good.inp")}, 1}};
  for (const auto& wrong : cases) {
    std::vector<std::string> arguments{"--export"};
    arguments.insert(arguments.end(), wrong.arguments.begin(), wrong.arguments.end());
    const Ended run = Start(arguments);
    EXPECT_EQ(run.status, wrong.status) << wrong.arguments[0] << ": " << run.errors;
    EXPECT_FALSE(run.errors.empty());
  }
  EXPECT_EQ(Files::Read(QString::fromStdString(Path("old.msh"))), "old");
  EXPECT_EQ(Files::Read(QString::fromStdString(Path("good.inp"))).toStdString(), kTriangle);
  EXPECT_TRUE(std::filesystem::is_symlink(Path("full.msh")));
}

TEST_F(CommandLine, ABadFileKeepsNoOtherFromBeingRead) {
  const Ended alone = Start({"--print-tree", Path("none.inp")});
  EXPECT_EQ(alone.status, 1);
  EXPECT_THAT(alone.errors, HasSubstr("none.inp"));
  EXPECT_THAT(alone.out, IsEmpty());
  std::ofstream(Path("good.inp")) << kTriangle;
  const std::string pump = m_files.Make({"pump"}, "pump.step").toStdString();
  const Ended trees = Start({"--print-tree", Path("none.inp"), Path("good.inp"), pump});
  EXPECT_EQ(trees.status, 1);
  // The second tree has the parts by their sets.
  const std::size_t part = trees.out.find("Shaft");
  EXPECT_THAT(trees.out, HasSubstr("PLATE"));
  EXPECT_NE(trees.out.find("Shaft", part + 1), std::string::npos) << trees.out;
  const Ended info = Start({"--info", "--json", Path("none.inp"), Path("good.inp")});
  EXPECT_EQ(info.status, 1);
  const QJsonArray files = QJsonDocument::fromJson(QByteArray::fromStdString(info.out)).array();
  ASSERT_EQ(files.size(), 2) << info.out;
  EXPECT_TRUE(files[0]["failed"].toBool());
  EXPECT_EQ(files[1]["elements"].toInt(), 1);
}

TEST_F(CommandLine, WhatIsChosenIsMeshedMeasuredAndWrittenInUnits) {
  const std::string pump = m_files.Make({"pump"}, "pump.step").toStdString();
  const auto look = [](const Ended& run) {
    return QJsonDocument::fromJson(QByteArray::fromStdString(run.out)).array()[0].toObject();
  };
  const QJsonObject whole = look(Start({"--info", "--json", pump}));
  EXPECT_EQ(whole["parts"]["solid"].toInt(), 9);
  EXPECT_NEAR(whole["box"][1][2].toDouble(), 100, 1);
  const QJsonObject shaft = look(Start({"--info", "--json", "--select", "Shaft", "--units", "m", pump}));
  EXPECT_EQ(shaft["parts"]["solid"].toInt(), 1);
  EXPECT_LT(shaft["volume"].toDouble(), whole["volume"].toDouble() * 1e-9);
  EXPECT_EQ(Start({"--info", "--select", "no such part", pump}).status, 1);

  const std::vector<std::string> wanted{"--export", Path("shaft.inp"), "--select", "Shaft", "--mesh", "3mm"};
  for (const bool metres : {false, true}) {
    std::vector<std::string> arguments = wanted;
    if (metres) arguments.insert(arguments.end(), {"--units", "m"});
    arguments.push_back(pump);
    const Ended run = Start(arguments);
    EXPECT_EQ(run.status, 0) << run.errors;
    const QJsonObject mesh = look(Start({"--info", "--json", wanted[1]}));
    EXPECT_GT(mesh["elements"].toInt(), 50);
    const double factor = metres ? 1 : 1e-9;
    EXPECT_NEAR(mesh["volume"].toDouble() * factor / shaft["volume"].toDouble(), 1, 0.1);
  }
  // So small a size would take all memory; the size that it names is the least.
  const Ended fine = Start({"--export", Path("fine.inp"), "--mesh", "1e-9", pump});
  EXPECT_EQ(fine.status, 1);
  EXPECT_NE(fine.errors.find("too small; from 0."), std::string::npos) << fine.errors;
  EXPECT_FALSE(std::filesystem::exists(Path("fine.inp")));
  const Ended kept = Start({"--export", Path("kept.qdw"), "--mesh", "9", pump});
  EXPECT_EQ(kept.status, 0) << kept.errors;
  EXPECT_EQ(look(Start({"--info", "--json", Path("kept.qdw")}))["mesh_sets"].toInt(), 9);
}

/// The program makes a display of its own where there is none.
TEST_F(CommandLine, PicturesNeedNoDisplay) {
  const std::string pump = m_files.Make({"pump"}, "pump.step").toStdString();
  const auto picture = [&](const std::vector<std::string>& wishes) {
    std::vector<std::string> arguments{"--screenshot", Path("p.png"), "--size", "320x200"};
    arguments.insert(arguments.end(), wishes.begin(), wishes.end());
    arguments.push_back(pump);
    const Ended run = Start(arguments);
    EXPECT_EQ(run.status, 0) << run.errors;
    return QImage(QString::fromStdString(Path("p.png")));
  };
  const QImage front = picture({"--view", "front"});
  EXPECT_EQ(front.size(), QSize(320, 200));
  EXPECT_NE(front, picture({"--view", "top"}));
  EXPECT_NE(front, picture({"--view", "front", "--hide", "type:part -Shaft"}));
  EXPECT_NE(front, picture({"--view", "front", "--section", "y"}));
  EXPECT_EQ(front, picture({"--view", "front", "--hide", "no such part"}));
  EXPECT_EQ(Start({"--screenshot", Path("q.png"), "--hide", "nothing:1", pump}).status, 2);
}

TEST_F(CommandLine, ShellsCompleteEveryOption) {
  const std::string script = Path("completion");
  std::ofstream(script) << Start({"--completion", "bash"}).out;
  QProcess bash;
  const auto completed = [&](const QString& before, const QString& now) {
    const QString line = QString(
                             ". '%1'; COMP_WORDS=(workbench %2 '%3'); COMP_CWORD=$((${#COMP_WORDS[@]}-1)); "
                             "_workbench; echo \"${COMPREPLY[*]}\"")
                             .arg(QString::fromStdString(script), before, now);
    bash.start("bash", {"-c", line});
    EXPECT_TRUE(bash.waitForFinished());
    return bash.readAllStandardOutput().trimmed().toStdString();
  };
  EXPECT_EQ(completed("", "--sec"), "--section");
  EXPECT_EQ(completed("--view", "b"), "back bottom");
}

}  // namespace
}  // namespace qd::test

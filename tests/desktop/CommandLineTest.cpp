// The workbench as a program, started from a command line, mostly where there is no display.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "Files.h"
#include "platform/Version.h"

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
               {{"--variant=none"}, "none"}};
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

TEST_F(CommandLine, AFileThatCannotBeImportedEndsWithOne) {
  const Ended run = Start({"--print-tree", Path("none.inp")});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.errors, HasSubstr("none.inp"));
  EXPECT_THAT(run.out, IsEmpty());
}

}  // namespace
}  // namespace qd::test

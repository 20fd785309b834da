// Who may include whom, read from the sources. The build enforces most of it; this also covers what stands in
// one folder with something else.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>

#include "support/Places.h"

namespace qd::test {
namespace {

namespace fs = std::filesystem;

const std::string kBranch = "qd_wrt/(branch)";

using LayerRules = std::map<std::string, std::set<std::string>>;
const LayerRules& WrittenRules() {
  static const std::set<std::string> kModuleBase{"platform", "host"};
  static const LayerRules kRules{
      {"platform", {"platform/text"}},
      {"platform/text", {"platform"}},
      {"platform/tree", {"platform"}},
      {"platform/headless", {"platform"}},
      {"platform/generic", {"platform"}},
      {"platform/win32", {"platform"}},
      {"platform/qt", {"platform"}},
      {"host", {"platform"}},
      {"qd_wrt/find", {"platform"}},
      {"qd_wrt/treelist", {"platform", "platform/tree", "qd_wrt/find"}},
      {"qd_wrt/core", {"platform", "host", "qd_wrt/find", "qd_wrt/treelist"}},
      {"qd_wrt/panel", {"platform", "host", "qd_wrt/find", "qd_wrt/treelist", "qd_wrt/core"}},
      {"qd_wrt/properties", {"platform", "host"}},
      {kBranch, {"platform", "host", "qd_wrt/find", "qd_wrt/treelist", "qd_wrt/core", "qd_wrt/properties"}},
      {"qd_wrt/c",
       {"platform", "platform/tree", "host", "qd_wrt/find", "qd_wrt/treelist", "qd_wrt/core", "qd_wrt/panel",
        "qd_wrt/nodes"}},
      {"qd_wrt/c/win32", {"platform", "platform/win32", "qd_wrt/c"}},
      {"widgets",
       {"platform", "platform/qt", "platform/tree", "host", "qd_wrt/find", "qd_wrt/treelist", "qd_wrt/core",
        "qd_wrt/panel", "qd_wrt/nodes", "qd_wrt/c"}},
      {"widgets/headless", {"platform", "platform/headless", "platform/tree", "qd_wrt/c"}},
      {"workbench/text", {}},
      {"workbench/files", {}},
      {"workbench/mesh", {"platform", "host"}},
      {"workbench/model", {"platform", "host", "workbench/mesh"}},
      {"workbench/display", {"platform", "host", "workbench/mesh", "workbench/model"}},
      {"workbench/exchange/pipe", {"platform", "host", "workbench/mesh", "workbench/text"}},
      {"workbench/exchange/formats",
       {"platform", "host", "workbench/mesh", "workbench/text", "workbench/files", "workbench/exchange/pipe"}},
      {"workbench/exchange/store",
       {"platform", "host", "workbench/mesh", "workbench/model", "workbench/text", "workbench/exchange/pipe",
        "workbench/exchange/formats"}},
      {"workbench/exchange/watch",
       {"platform", "host", "workbench/mesh", "workbench/files", "workbench/exchange/pipe",
        "workbench/exchange/formats"}},
      {"workbench/exchange/child",
       {"platform", "host", "workbench/mesh", "workbench/text", "workbench/exchange/pipe",
        "workbench/exchange/formats"}},
      {"workbench/store",
       {"platform", "host", "workbench/mesh", "workbench/model", "workbench/text", "workbench/files"}},
      {"workbench/tree",
       {"platform", "platform/tree", "host", "qd_wrt/find", "qd_wrt/treelist", "qd_wrt/core", "qd_wrt/geometry",
        "qd_wrt/mesh", "qd_wrt/coords", "workbench/text"}},
      {"workbench/session",
       {"workbench/text", "platform", "host", "qd_wrt/find", "qd_wrt/treelist", "qd_wrt/core", "qd_wrt/panel",
        "workbench/mesh", "workbench/model", "workbench/display", "workbench/tree"}},
      {"workbench/batch",
       {"platform", "platform/headless", "host", "qd_wrt/find", "qd_wrt/treelist", "qd_wrt/core", "qd_wrt/panel",
        "qd_wrt/properties", "workbench/text", "workbench/mesh", "workbench/model", "workbench/display",
        "workbench/store", "workbench/exchange/pipe", "workbench/exchange/formats", "workbench/exchange/store",
        "workbench/exchange/watch", "workbench/tree", "workbench/session"}},
      {"workbench/native",
       {"platform", "platform/win32", "host", "qd_wrt/find", "qd_wrt/treelist", "qd_wrt/core", "qd_wrt/panel",
        "workbench/text", "workbench/mesh", "workbench/model", "workbench/display", "workbench/exchange/pipe",
        "workbench/exchange/formats", "workbench/exchange/store", "workbench/tree", "workbench/session"}},
      {"workbench/view",
       {"platform", "platform/qt", "host", "workbench/mesh", "workbench/model", "workbench/display"}}};
  return kRules;
}

/// The layer that a path from the top belongs to: the longest of these that it begins with. Folders of the module
/// without a rule of their own are branches.
const LayerRules& Rules() {
  static const LayerRules kRules = [] {
    LayerRules rules = WrittenRules();
    for (const auto& entry : fs::directory_iterator(fs::path(SourceFolder()) / "qd_wrt")) {
      rules.try_emplace("qd_wrt/" + entry.path().filename().string(), rules.at(kBranch));
    }
    return rules;
  }();
  return kRules;
}

/// Whether a layer may include another. The texts come with `platform`, of which they are a part.
bool MaySee(const std::string& layer, const std::string& other) {
  const std::set<std::string>& seen = Rules().at(layer);
  return other == layer || seen.contains(other) || (other == "platform/text" && seen.contains("platform"));
}

std::string LayerOf(const std::string& path) {
  std::string layer;
  for (const auto& [candidate, allowed] : Rules()) {
    if (path.starts_with(candidate + "/") && candidate.size() > layer.size()) layer = candidate;
  }
  return layer;
}

/// Libraries by the form of their headers, and the layers that may know them.
struct Library {
  const char* form;
  std::set<std::string> layers;
};
const std::vector<Library>& Libraries() {
  static const std::vector<Library> kLibraries{
      {"^Q[A-Z].*", {"platform/qt", "widgets", "workbench/view"}},
      {"^vtk.*", {"workbench/view"}},
      {"^gmsh.*", {"workbench/exchange/child"}},
      {"^[A-Z][A-Za-z0-9]*_?[A-Za-z0-9]*\\.hxx$", {"workbench/exchange/child"}},
      {"^sqlite3.*", {"workbench/store"}},
      {"^(windows|commctrl|commdlg|oleacc|oleauto)\\.h$", {"platform/win32", "workbench/native"}}};
  return kLibraries;
}

TEST(Includes, FollowTheArchitecture) {
  const fs::path top = SourceFolder();
  const std::regex include(R"(^\s*#include\s*([<"])([^>"]+)[>"])");
  int seen = 0;
  for (const char* folder : {"platform", "host", "qd_wrt", "widgets", "workbench"}) {
    for (const auto& entry : fs::recursive_directory_iterator(top / folder)) {
      const std::string extension = entry.path().extension().string();
      if (extension != ".h" && extension != ".cpp") continue;
      const std::string path = fs::relative(entry.path(), top).generic_string();
      const std::string layer = LayerOf(path);
      if (layer.empty()) continue;  // the desktop program may know everything
      ++seen;
      std::ifstream in(entry.path());
      for (std::string line; std::getline(in, line);) {
        std::smatch match;
        if (!std::regex_search(line, match, include)) continue;
        const std::string header = match[2];
        EXPECT_EQ(header.find(".."), std::string::npos) << path << ": " << line;
        if (match[1] == "\"") {
          const std::string other = LayerOf(header);
          EXPECT_TRUE(MaySee(layer, other)) << path << ": " << line;
          continue;
        }
        for (const Library& library : Libraries()) {
          if (!std::regex_match(header, std::regex(library.form))) continue;
          EXPECT_TRUE(library.layers.contains(layer)) << path << ": " << line;
        }
      }
    }
  }
  EXPECT_GT(seen, 100);
}

/// What the core had to know of a kind of records a new branch would have to tell it.
TEST(Includes, TheCoreNamesNoBranch) {
  const std::regex named(R"(\b(kData|kLabel)[A-Z]\w*|Get(Geom|Gset|Mset|Cord|Material)Pool)");
  for (const auto& entry : fs::directory_iterator(fs::path(SourceFolder()) / "qd_wrt/core")) {
    std::ifstream in(entry.path());
    for (std::string line; std::getline(in, line);) {
      EXPECT_FALSE(std::regex_search(line, named)) << entry.path().filename() << ": " << line;
    }
  }
}

}  // namespace
}  // namespace qd::test

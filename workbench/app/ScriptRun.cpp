#include "workbench/app/ScriptRun.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

/// Where the module lies: where this build or installation puts it from here. Empty where there is none.
fs::path ModuleFolder() {
  std::error_code failed;
  const fs::path here = fs::read_symlink("/proc/self/exe", failed).parent_path();
  for (const char* folder : {"../python", QD_MODULE_FROM_PROGRAMS}) {
    fs::path place = fs::weakly_canonical(here / folder, failed);
    for (const fs::directory_entry& entry : fs::directory_iterator(place, failed)) {
      const std::string name = entry.path().filename().string();
      if (name.starts_with("qd.") && name.ends_with(".so")) return place;
    }
  }
  return {};
}

}  // namespace

std::string RunScript(const std::string& script, const std::vector<std::string>& arguments) {
  if (access(script.c_str(), R_OK) != 0) return script + ": " + std::strerror(errno);
  const fs::path module = ModuleFolder();
  if (module.empty()) return "there are no scripts here: the module qd for Python is not installed";
  const char* before = std::getenv("PYTHONPATH");
  const std::string path = module.string() + (before != nullptr && *before != 0 ? ":" + std::string(before) : "");
  setenv("PYTHONPATH", path.c_str(), 1);
  std::vector<std::string> words{QD_PYTHON, "--", script};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  execv(QD_PYTHON, pointers.data());
  return words.front().append(": ").append(std::strerror(errno));
}

}  // namespace qd::workbench

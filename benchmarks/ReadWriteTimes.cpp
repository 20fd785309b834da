// How long reading a mesh file and writing it in another format takes in one process, beside which
// benchmarks/python/times.py puts the command line. Usage: qd_read_write make COUNT FILE, which makes a file of
// about so many bricks, or qd_read_write FILE OUT, which prints seconds.

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/MeshExport.h"

namespace {

using namespace qd::workbench;
namespace fs = std::filesystem;

constexpr int kBrick = 5;  // the number of the kind

bool Write(const fs::path& path, const ExportModel& model) {
  ExportReport report;
  return !WriteMeshFile(
             path, model, [](double) { return true; }, report) &&
         report.elements > 0;
}

/// Bricks in rows, layers and columns, in one set.
bool Make(std::uint64_t count, const fs::path& path) {
  const auto side = static_cast<std::uint64_t>(std::cbrt(static_cast<double>(count)) + 0.5);
  auto mesh = std::make_shared<qd::MeshData>();
  const std::uint64_t row = side + 1;
  for (std::uint64_t i = 0; i < row * row * row; ++i) {
    mesh->nodeIds.push_back(i + 1);
    for (const std::uint64_t at : {i % row, i / row % row, i / row / row}) {
      mesh->coordinates.push_back(static_cast<double>(at) * 0.37);
    }
  }
  qd::MeshData::Block block{kBrick, 8, {}, {}};
  for (std::uint64_t i = 0; i < side * side * side; ++i) {
    const std::uint64_t first = 1 + i % side + i / side % side * row + i / side / side * row * row;
    block.elementIds.push_back(i + 1);
    for (const std::uint64_t above : {std::uint64_t{0}, row * row}) {
      for (const std::uint64_t corner : {std::uint64_t{0}, std::uint64_t{1}, row + 1, row}) {
        block.nodeIds.push_back(first + above + corner);
      }
    }
  }
  mesh->blocks.push_back(std::move(block));
  ExportModel model;
  model.sets.push_back({"BRICKS", -1, -1, mesh});
  return Write(path, model);
}

bool Convert(const fs::path& path, const fs::path& out) {
  const auto start = std::chrono::steady_clock::now();
  std::vector<ImportNote> notes;
  ImportedModel read = CheckFile(path, notes).Read(path, [](double) {});
  ExportModel model;
  for (ImportedMeshSet& set : read.meshSets) {
    model.sets.push_back({set.name, set.parent, -1, std::make_shared<qd::MeshData>(std::move(set.mesh))});
  }
  if (!Write(out, model)) return false;
  std::printf("%.3f\n", std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc == 4 && std::string(argv[1]) == "make") {
      return Make(std::strtoull(argv[2], nullptr, 10), argv[3]) ? 0 : 1;
    }
    return argc == 3 && Convert(argv[1], argv[2]) ? 0 : 1;
  } catch (const ImportError& error) {
    std::fprintf(stderr, "qd_read_write: %s %s\n", error.key.c_str(), error.detail.c_str());
    return 1;
  }
}

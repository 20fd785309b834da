// Documents of 1,000,000 records on disk: opening one up to the first usable tree, keeping one changed record, and
// undoing an act on many.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>

#include "benchmarks/OpenModel.h"
#include "benchmarks/Proof.h"
#include "qd_wrt/geometry/CQDTreeItemGeom.h"
#include "workbench/store/DocumentFile.h"

namespace qd::workbench {
namespace {

using bench::OpenModel;
using bench::Prove;

const int kRecords = bench::RowsOf(1'000'000);

/// A file with a million parts, made once and taken away at the end.
class File {
 public:
  File() : m_path((std::filesystem::temp_directory_path() / "qd_bench.qdw").string()) {
    Database data;
    data.BeginTransaction(L"fill");
    for (int i = 0; i < kRecords; ++i) {
      tagTGeom part;
      part.name = L"Part " + std::to_wstring(i);
      part.colour = static_cast<COLORREF>(i);
      data.GetGeomPool().Add(part);
    }
    data.CommitTransaction(1);
    DocumentError error;
    std::filesystem::remove(m_path);
    DocumentFile::Create(m_path, data, error);
  }
  ~File() { std::filesystem::remove(m_path); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  const std::string& Path() const { return m_path; }

 private:
  std::string m_path;
};

const std::string& TheFile() {
  static const File file;
  return file.Path();
}

bool HasAllParts(const Database& data) {
  const GeomPool& parts = data.GetGeomPool();
  return parts.Count() == static_cast<std::size_t>(kRecords) &&
         parts.GetAtNU(parts.ItrOfNumber(kRecords))->name == L"Part " + std::to_wstring(kRecords - 1);
}

/// The document open in a works tree.
struct OpenDocument {
  std::unique_ptr<DocumentFile> file;
  OpenModel model{nullptr, {kModelTree}, [this](Database& data) {
                    DocumentError error;
                    file = DocumentFile::Open(TheFile(), data, error);
                    data.SetStore(file.get());
                  }};
  ~OpenDocument() { model.Data().SetStore(nullptr); }
};

void DocumentOpenWithTree(benchmark::State& state) {
  TheFile();
  bool right = true;
  for (auto _ : state) {
    auto open = std::make_unique<OpenDocument>();
    open->model.Settle();
    state.PauseTiming();  // taking it down is not opening it
    right = right && HasAllParts(open->model.Data()) &&
            bench::BranchOf<CQDTreeItemGeom>(open->model.Tree()).GetChildCount() == kRecords;
    open.reset();
    state.ResumeTiming();
  }
  Prove(state, right, "the document was not opened");
}
BENCHMARK(DocumentOpenWithTree)->Unit(benchmark::kMillisecond)->UseRealTime();

void DocumentReadOnly(benchmark::State& state) {
  const std::string& path = TheFile();
  bool right = true;
  for (auto _ : state) {
    auto data = std::make_unique<Database>();
    DocumentError error;
    auto file = DocumentFile::Open(path, *data, error);
    state.PauseTiming();
    right = right && file != nullptr && HasAllParts(*data);
    file.reset();
    data.reset();
    state.ResumeTiming();
  }
  Prove(state, right, "the document was not read");
}
BENCHMARK(DocumentReadOnly)->Unit(benchmark::kMillisecond)->UseRealTime();

/// What the file says of one part, read anew.
tagTGeom InFile(int number) {
  Database data;
  DocumentError error;
  const auto file = DocumentFile::Open(TheFile(), data, error);
  const tagTGeom* part = data.GetGeomPool().GetAtNU(data.GetGeomPool().ItrOfNumber(number));
  return part != nullptr ? *part : tagTGeom();
}

void DocumentKeepOne(benchmark::State& state) {
  const int number = kRecords / 2;
  COLORREF colour = 0;
  {
    Database data;
    DocumentError error;
    const auto file = DocumentFile::Open(TheFile(), data, error);
    data.SetStore(file.get());
    GeomPool& parts = data.GetGeomPool();
    const iterator itr = parts.ItrOfNumber(number);
    for (auto _ : state) {
      CTransaction transaction(&data);
      transaction.Begin(L"one");
      tagTGeom part = *parts.GetAtNU(itr);
      part.colour = ++colour;
      parts.Change(itr, part);
      transaction.Commit(1);
    }
    data.SetStore(nullptr);
  }
  Prove(state, colour != 0 && InFile(number).colour == colour, "the change is not in the file");
}
BENCHMARK(DocumentKeepOne)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Undo and redo of an act on 100,000 parts: kept in the file, announced, rows followed.
void DocumentUndoManyParts(benchmark::State& state) {
  const int changed = kRecords / 10;
  CString name;
  {
    OpenDocument open;
    Database& data = open.model.Data();
    GeomPool& parts = data.GetGeomPool();
    open.model.Act([&] {
      for (int i = 1; i <= changed; ++i) {
        tagTGeom part = *parts.GetAtNU(parts.ItrOfNumber(i));
        part.colour ^= 0xFF;
        part.name += L"'";
        parts.Change(parts.ItrOfNumber(i), part);
      }
    });
    const auto names = [&](int i) { return parts.GetAtNU(parts.ItrOfNumber(i))->name; };
    name = names(changed);
    bool undo = true;
    bool right = true;
    for (auto _ : state) {
      right = (undo ? data.Undo() : data.Redo()) != 0 && right;
      open.model.Settle();
      right = right && names(changed).ends_with(L"'") != undo;
      undo = !undo;
    }
    for (int i = 1; i <= changed; ++i) {
      const CQDTreeItem* node = open.model.Tree().FindGeomNode(parts.ItrOfNumber(i));
      right = right && node->GetTitle() == names(i) && names(i).ends_with(L"'") == undo;
    }
    Prove(state, right, "the parts have not got their former names");
    name = names(changed);
  }
  Prove(state, InFile(changed).name == name, "the names are not in the file");
}
BENCHMARK(DocumentUndoManyParts)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace qd::workbench

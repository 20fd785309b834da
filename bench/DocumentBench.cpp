// Documents of 1,000,000 records on disk: opening one up to the first usable tree, and keeping one changed record.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include "host/CTransaction.h"
#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/store/DocumentFile.h"
#include "workbench/tree/DocumentNode.h"

namespace qd::workbench {
namespace {

constexpr int kRecords = 1'000'000;

/// A file with a million parts, made once and taken away at the end.
class File {
 public:
  File() : m_path((std::filesystem::temp_directory_path() / "qd_bench.qdw").string()) {
    Database data;
    data.BeginTransaction(L"fill");
    for (int i = 0; i < kRecords; ++i) {
      tagTGeom part;
      part.name = L"Part " + std::to_wstring(i);
      part.cadItem = i + 1;
      part.colour = static_cast<COLORREF>(i);
      data.GetGeomPool().Add(part);
    }
    data.CommitTransaction();
    DocumentError error;
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

void DocumentOpenWithTree(benchmark::State& state) {
  const std::string& path = TheFile();
  HeadlessToolkit toolkit;
  for (auto _ : state) {
    auto doc = std::make_unique<WorkDocument>();
    DocumentError error;
    const auto file = DocumentFile::Open(path, doc->GetDatabase(), error);
    TreeFactory factory;
    CWorksTreeBar bar;
    bar.SetDocument(doc.get());
    bar.Create(nullptr, 0, {0, 0, 400, 800});
    bar.CreateTreeItems(kModelTree, &factory, 1);
    toolkit.Pump();
    state.PauseTiming();  // taking it down is not opening it
    bar.DestroyTreeItems();
    bar.DestroyWindow();
    doc.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(DocumentOpenWithTree)->Unit(benchmark::kMillisecond)->UseRealTime();

void DocumentReadOnly(benchmark::State& state) {
  const std::string& path = TheFile();
  for (auto _ : state) {
    auto data = std::make_unique<Database>();
    DocumentError error;
    benchmark::DoNotOptimize(DocumentFile::Open(path, *data, error));
    state.PauseTiming();
    data.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(DocumentReadOnly)->Unit(benchmark::kMillisecond)->UseRealTime();

void DocumentKeepOne(benchmark::State& state) {
  Database data;
  DocumentError error;
  const auto file = DocumentFile::Open(TheFile(), data, error);
  data.SetStore(file.get());
  GeomPool& parts = data.GetGeomPool();
  const iterator itr = parts.ItrOfNumber(kRecords / 2);
  COLORREF colour = 0;
  for (auto _ : state) {
    CTransaction transaction(&data);
    transaction.Begin(L"one");
    tagTGeom part = *parts.GetAtNU(itr);
    part.colour = ++colour;
    parts.Change(itr, part);
    transaction.Commit(1);
  }
}
/// Undo and redo of an act on 100,000 parts: kept in the file, announced, rows followed.
class OpenDocument final : private IDatabaseListener {
 public:
  OpenDocument() {
    DocumentError error;
    m_file = DocumentFile::Open(TheFile(), m_doc.GetDatabase(), error);
    m_doc.GetDatabase().SetStore(m_file.get());
    m_doc.GetDatabase().SetListener(this);
    m_bar.SetDocument(&m_doc);
    m_bar.Create(nullptr, 0, {0, 0, 400, 800});
    m_bar.CreateTreeItems(kModelTree, &m_factory, 1);
    m_toolkit.Pump();
  }
  ~OpenDocument() {
    m_bar.DestroyTreeItems();
    m_doc.GetDatabase().SetStore(nullptr);
    m_doc.GetDatabase().SetListener(nullptr);
  }
  OpenDocument(const OpenDocument&) = delete;
  OpenDocument& operator=(const OpenDocument&) = delete;
  void ChangeParts(int count) {
    CTransaction transaction(&m_doc.GetDatabase());
    transaction.Begin(L"many");
    GeomPool& parts = m_doc.GetDatabase().GetGeomPool();
    for (int i = 1; i <= count; ++i) {
      tagTGeom part = *parts.GetAtNU(parts.ItrOfNumber(i));
      part.colour ^= 0xFF;
      part.name += L"'";
      parts.Change(parts.ItrOfNumber(i), part);
    }
    transaction.Commit(1);
  }

  HeadlessToolkit m_toolkit;
  WorkDocument m_doc;
  TreeFactory m_factory;
  CWorksTreeBar m_bar;
  std::unique_ptr<DocumentFile> m_file;

 private:
  void OnDatabaseChanged(const CQDUpdateRecord& record) override { m_bar.UpdateDB(&m_doc, HintOf(record)); }
};

void DocumentUndoManyParts(benchmark::State& state) {
  constexpr int kParts = 100'000;
  OpenDocument open;
  open.ChangeParts(kParts);
  bool undo = true;
  for (auto _ : state) {
    benchmark::DoNotOptimize(undo ? open.m_doc.GetDatabase().Undo() : open.m_doc.GetDatabase().Redo());
    open.m_toolkit.Pump();
    undo = !undo;
  }
}
BENCHMARK(DocumentUndoManyParts)->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK(DocumentKeepOne)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace qd::workbench

// The exchange program: reads one CAD or mesh file, or works on shapes, and sends the results over its standard
// output. It runs as a child of the workbench, because the libraries may crash or hang on bad input.
//
// Usage: qd_exchange FILE, qd_exchange --file with the file's name on standard input, which may be any bytes, or
// qd_exchange --operation with the request there

#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <iterator>

#include "workbench/exchange/InpFile.h"
#include "workbench/exchange/child/CadFile.h"
#include "workbench/exchange/child/FileCheck.h"
#include "workbench/exchange/child/MeshFile.h"
#include "workbench/exchange/child/Operation.h"
#include "workbench/exchange/child/Sink.h"

namespace {

using namespace qd::workbench;

void Import(const std::string& path, Sink& sink) {
  const FileFormat format = CheckFile(path);
  if (format == FileFormat::Inp) {
    const ImportedModel model = ReadInpFile(path, [&sink](double done) { sink.Progress(done); });
    for (const ImportNote& note : model.notes) sink.Note(note);
    for (const ImportedMaterial& material : model.materials) sink.Material(material);
    for (const ImportedProperty& property : model.properties) sink.Property(property);
    for (const ImportedMeshSet& set : model.meshSets) sink.MeshSet(set);
  } else if (IsMeshFormat(format)) {
    ReadMeshFile(path, format, sink);
  } else {
    ReadCadFile(path, format, sink);
  }
}

std::string ReadRequest() {
  return {std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
}

void Operate(Sink& sink) {
  const auto operation = DecodeOperation(ReadRequest());
  if (!operation || operation->operands.empty()) throw ImportError{"IDS_WB_IMPORT_DAMAGED", ""};
  RunOperation(*operation, sink);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: qd_exchange FILE\n";
    return 2;
  }
  // The libraries print on standard output, which is the pipe: give them the error output instead.
  const int pipe = dup(STDOUT_FILENO);
  dup2(STDERR_FILENO, STDOUT_FILENO);
  Sink sink(pipe);
  try {
    const std::string what = argv[1];
    if (what == "--operation") {
      Operate(sink);
    } else {
      Import(what == "--file" ? ReadRequest() : what, sink);
    }
    sink.Finish();
    return 0;
  } catch (const ImportError& error) {
    sink.Fail(error);
  } catch (const std::exception& error) {
    sink.Fail({"IDS_WB_IMPORT_READER", error.what()});
  } catch (...) {
    sink.Fail({"IDS_WB_IMPORT_READER", ""});
  }
  return 1;
}

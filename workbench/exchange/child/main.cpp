// The exchange program: reads one CAD or mesh file and sends what it holds over its standard output. It runs as a
// child of the workbench, because the libraries that read files may crash or hang on a bad one.
//
// Usage: qd_exchange FILE

#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "workbench/exchange/child/CadFile.h"
#include "workbench/exchange/child/FileCheck.h"
#include "workbench/exchange/child/MeshFile.h"
#include "workbench/exchange/child/Sink.h"

namespace {

using namespace qd::workbench;

void Import(const std::string& path, Sink& sink) {
  const FileFormat format = CheckFile(path);
  if (IsMeshFormat(format)) {
    ReadMeshFile(path, sink);
  } else {
    ReadCadFile(path, format, sink);
  }
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
    Import(argv[1], sink);
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

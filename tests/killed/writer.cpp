// Works on a document without end and says after each act that it was committed, until it is killed. Usage: FILE

#include <unistd.h>

#include <cstdio>
#include <memory>

#include "support/DocumentScript.h"
#include "workbench/store/DocumentFile.h"

int main(int argc, char** argv) {
  using namespace qd::workbench;
  if (argc != 2) return 2;
  const std::string path = argv[1];
  Database data;
  DocumentError error;
  std::unique_ptr<DocumentFile> file = access(path.c_str(), F_OK) == 0 ? DocumentFile::Open(path, data, error)
                                                                       : DocumentFile::Create(path, data, error);
  if (file == nullptr) {
    std::fprintf(stderr, "%s %s\n", error.key, error.detail.c_str());
    return 1;
  }
  data.SetStore(file.get());
  qd::test::DocumentScript script(data);
  for (int act = qd::test::DocumentScript::LastAct(data) + 1;; ++act) {
    if (!script.Run(act)) return 3;
    if (write(STDOUT_FILENO, &act, sizeof(act)) != sizeof(act)) return 4;
  }
}

// What the library says to the user, in the language of the program.

#include "host/MessageFile.h"
#include "platform/Toolkit.h"
#include "qd_wrt/c/Tree.h"

using namespace qd::c;

qd_status qd_texts_set(const char* table) {
  return Guarded([table]() -> qd_status {
    if (qd::IToolkit::Exists() && !qd::IToolkit::IsOnItsThread()) return Fail(QD_ERROR_THREAD);
    if (table == nullptr) {
      KeepTexts(nullptr);
      return QD_OK;
    }
    const std::string_view bytes(table);
    if (bytes.size() > qd::MessageFile::kMostBytes)
      return Fail(QD_ERROR_VALUE, "It is too long for a table of texts.");
    qd::MessageFile file = qd::ParseMessages(bytes);
    qd::DropMisformatted(file);
    if (!file.texts.empty()) {
      KeepTexts(std::make_unique<qd::MessageTable>(std::move(file.texts)));
      return QD_OK;
    }
    return Fail(QD_ERROR_VALUE, file.faults.empty() ? "It is a table without a text." : file.faults.front());
  });
}

#pragma once

#include <string>
#include <vector>

#include "platform/headless/HeadlessToolkit.h"
#include "workbench/app/CommandLine.h"
#include "workbench/app/MessageTables.h"
#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// A document that is worked on without a window.
class HeadlessSession {
 public:
  /// Opens the document among some files.
  bool Open(const std::vector<std::string>& files);
  /// Imports the files that are no documents. False when any could not be; why, and what else is to be known of
  /// them, is said on standard error.
  bool Import(const std::vector<std::string>& files);
  WorkDocument& Document() { return m_doc; }

 private:
  bool ImportOne(const std::string& file);

  HeadlessToolkit m_toolkit;
  WorkDocument m_doc;
};

/// Does what a command line asks for without a window. Returns the exit status: 1 when something failed; what that
/// was is said on standard error.
int RunWithoutWindow(const CommandLine& line);

}  // namespace qd::workbench

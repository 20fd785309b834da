#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "workbench/display/WorkDocument.h"
#include "workbench/session/ShownLines.h"

namespace qd::workbench {

/// Writes acts as the lines of Python that do them, whoever did them: it looks at what an act has changed, not at
/// how that came about. Records go by their kind and number, which stay when names change and are the same when
/// the lines run again on the same input. What an act changed that no line can do yet is said in a comment.
class ActRecorder final {
 public:
  /// Gets whole lines, each ended, when the next act begins or Flush is called.
  using Write = std::function<void(const std::string& lines)>;

  ActRecorder(WorkDocument& doc, Write write);
  ~ActRecorder();
  ActRecorder(const ActRecorder&) = delete;
  ActRecorder& operator=(const ActRecorder&) = delete;

  /// The next act is what a line does, such as reading a file; until it comes, or is given up with an empty line.
  void Expect(std::string line) { m_expected = std::move(line); }
  /// Something that is no act is what a line does.
  void Say(const std::string& line);
  /// While this answers true acts are not written.
  void SetIsSilent(std::function<bool()> isSilent) { m_isSilent = std::move(isSilent); }
  /// Writes the last act now.
  void Flush();

 private:
  using Kept = std::shared_ptr<const tagTRecord>;
  struct Pending;
  struct Changes;

  void Follow(const CQDUpdateRecord& record);
  void Follow(const DisplayNotice& notice);
  void Keep();
  std::vector<std::string> LinesOf(const Changes& changes, bool& all) const;

  WorkDocument& m_doc;
  Write m_write;
  std::function<bool()> m_isSilent;
  std::string m_expected;
  std::unordered_map<iterator, Kept> m_kept;  // records as they were after the last act
  ShownLines m_shown;
  std::uint64_t m_acts;
  std::unique_ptr<Pending> m_pending;
  Subscription m_onRecords;
  Subscription m_onDisplay;
  Subscription m_onSetting;
};

}  // namespace qd::workbench

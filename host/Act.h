#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "host/CQDDBSession.h"
#include "platform/Export.h"

namespace qd {

/// Runs writes as one act that undo takes back: all of them or, when they answer 0, none. `titleKey` is the
/// message key of what undo shows; for `redraw` see CTransaction::Commit. Returns 1, or 0 with nothing changed;
/// without a session nothing is run. An act that the writes of another one of this session run is a part of that
/// one: when it answers 0, nothing of either happens.
QD_EXPORT int RunAct(CQDDBSession* session, std::string_view titleKey, const std::function<int()>& writes,
                     int redraw = 1);

/// Likewise under a title that is no message key.
QD_EXPORT int RunAct(CQDDBSession* session, const CString& title, const std::function<int()>& writes,
                     int redraw = 1);

/// An act whose writes come one after another until it is committed, as from a script. What RunAct runs for its
/// session on its thread meanwhile is a part of it. One that is not committed is rolled back with its object.
class QD_EXPORT OpenAct {
 public:
  /// Begins it; `title` is what undo shows. Null for no session, and then it is not open.
  OpenAct(CQDDBSession* session, const CString& title);
  ~OpenAct();
  OpenAct(const OpenAct&) = delete;
  OpenAct& operator=(const OpenAct&) = delete;

  /// False when the act could not begin, since another one is going on, and when it is over.
  bool IsOpen() const;
  /// Keeps the writes. Returns 1; 0 with nothing changed, also when a part of the act has failed.
  int Commit(int redraw = 1);
  /// Takes the writes back.
  void Rollback();

 private:
  struct Body;
  std::unique_ptr<Body> m_body;  // while it is open
};

/// Whether the user is told why a name is refused, or just sees the old one come back.
enum class NameRefusal { Told, Silent };

/// The name that a record called `old` gets when the user wants it to be called `wanted`: cut to what names can
/// hold. None when there is nothing to write: it is the old name, it is empty, or another record has it, as it
/// stands or cut, for names are found by what is stored. `isTaken` says whether any record has a name; null where
/// records may share one. That a name is taken is looked for before it is found empty.
QD_EXPORT std::optional<CString> NewName(const CString& old, const CString& wanted,
                                         const std::function<bool(const CString&)>& isTaken,
                                         NameRefusal refusal = NameRefusal::Told);

}  // namespace qd

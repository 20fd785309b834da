#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "host/CQDDBSession.h"
#include "platform/Export.h"

namespace qd {

/// Runs writes as one act that undo takes back: all of them or, when they answer 0, none. `titleKey` is the
/// message key of what undo shows; for `redraw` see CTransaction::Commit. Returns 1, or 0 with nothing changed;
/// without a session nothing is run.
QD_EXPORT int RunAct(CQDDBSession* session, std::string_view titleKey, const std::function<int()>& writes,
                     int redraw = 1);

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

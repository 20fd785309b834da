#pragma once

#include <vector>

#include "host/CQDDBSession.h"
#include "platform/Export.h"

namespace qd {

/// Changes of parts by the user, each one undoable act. Results are 1, or 0 with nothing changed and not as asked.

/// An empty name is refused with a warning; a longer one than names can be is cut.
QD_EXPORT int RenamePart(CQDDBSession* session, iterator part, const CString& wanted);
/// The low 24 bits of the colour count.
QD_EXPORT int RecolourPart(CQDDBSession* session, iterator part, COLORREF colour);
/// Makes the solids among the parts flexible (1) or rigid (0) bodies; without solids nothing is done.
QD_EXPORT int SetPartsBodyType(CQDDBSession* session, const std::vector<iterator>& parts, int flexible);

}  // namespace qd

#pragma once

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

/// A run of colours that stay easy to tell apart: neighbours in the run lie far apart on the colour wheel.
class QD_EXPORT CQDColorGenerator {
 public:
  COLORREF GetNextColor();  ///< the next one; after some dozens they come near to earlier ones

 private:
  unsigned m_next = 0;
};

}  // namespace qd

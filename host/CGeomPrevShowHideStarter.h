#pragma once

#include "host/Display.h"

namespace qd {

/// A scope around changes of visibility that belong together. Scopes nest; the outermost one keeps the state
/// before it, so that the user can go back.
class CGeomPrevShowHideStarter {
 public:
  /// Null for a host without parts: nothing happens then.
  explicit CGeomPrevShowHideStarter(CCADSession* session) : m_session(session) {
    if (m_session != nullptr) m_session->GetRenderObjects().BeginShowHide();
  }
  ~CGeomPrevShowHideStarter() {
    if (m_session != nullptr) m_session->GetRenderObjects().EndShowHide();
  }
  CGeomPrevShowHideStarter(const CGeomPrevShowHideStarter&) = delete;
  CGeomPrevShowHideStarter& operator=(const CGeomPrevShowHideStarter&) = delete;

 private:
  CCADSession* m_session;
};

}  // namespace qd

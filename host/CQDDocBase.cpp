#include "host/CQDDocBase.h"

namespace qd {

CQDDocBase::~CQDDocBase() {
  while (!m_followers.empty()) {
    IDocumentFollower* follower = m_followers.back();
    m_followers.pop_back();
    follower->OnDocumentGone();
  }
}

}  // namespace qd

#include "qd_wrt/core/IAppWrt.h"

namespace qd {

IAppWrt* IAppWrt::m_pInstance = nullptr;

IAppWrt::IAppWrt() {
  m_pInstance = this;
}

IAppWrt::~IAppWrt() {
  m_pInstance = nullptr;
}

IAppWrt* IAppWrt::Instance() {
  return m_pInstance;
}

}  // namespace qd

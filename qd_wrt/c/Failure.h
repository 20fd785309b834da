#pragma once

#include <exception>
#include <new>
#include <string_view>
#include <utility>

#include "platform/Export.h"
#include "qd_wrt/c/qd_wrt.h"

namespace qd::c {

/// Notes for this thread why a call fails: what its status means, and the particulars, if any. Returns the status.
QD_EXPORT qd_status Fail(qd_status status, std::string_view particulars = {}) noexcept;

/// Runs what a call does; what it throws becomes a status.
template <typename Work>
qd_status Guarded(const Work& work) noexcept {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return Fail(QD_ERROR_MEMORY);
  } catch (const std::exception& thrown) {
    return Fail(QD_ERROR_INTERNAL, thrown.what());
  } catch (...) {
    return Fail(QD_ERROR_INTERNAL);
  }
}

}  // namespace qd::c

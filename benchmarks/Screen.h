#pragma once

#include <cstddef>
#include <memory>

#include "platform/CWnd.h"

namespace qd::bench {

/// Where the benchmarks have their windows: without a screen, or in the system's own windows.
class Screen {
 public:
  Screen();
  ~Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  /// Puts a window without parent where it can be seen.
  void Show(CWnd& pane);
  /// Handles everything that is queued.
  void Settle();
  /// Lets a little time pass and handles what is due then.
  void Wait();
  /// Paints a whole window now. Returns whether it drew texts, as far as that can be told.
  bool Paint(CWnd& window);
  /// Types characters into a window and handles them.
  void Type(CWnd& window, const CString& text);
  /// Pop-up menus shown so far; not known of the system's own ones.
  std::size_t MenusShown() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> m_parts;
};

/// Bytes that the program holds.
std::size_t HeapInUse();

}  // namespace qd::bench

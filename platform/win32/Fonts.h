#pragma once

#include <map>
#include <string_view>
#include <tuple>
#include <vector>

#include "platform/Toolkit.h"
#include "platform/win32/Handles.h"
#include "platform/win32/Scale.h"

namespace qd {

/// The system's fonts in the sizes that were asked for.
class Fonts {
 public:
  /// Valid until Forget.
  HFONT Get(const Font& font, Scale scale);
  /// The user's settings have changed. No font of ours may be selected anywhere.
  void Forget() { m_fonts.clear(); }

  // In device-independent pixels.
  int Height(const Font& font, Scale scale);
  void PrefixWidths(const Font& font, Scale scale, std::wstring_view text, std::vector<int>& widths);

 private:
  using Key = std::tuple<CString, int, bool, int>;  // face, height, bold, resolution
  std::map<Key, GdiObject<HFONT>> m_fonts;
  MemoryDc m_dc;
};

}  // namespace qd

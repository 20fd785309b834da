#pragma once

#include <QFont>
#include <QTextLayout>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "platform/Toolkit.h"

namespace qd {

/// Texts that were measured or drawn lately, shaped once for both: shaping is most of what drawing a row costs.
class QtTexts {
 public:
  /// A line of text. Drawn at its left end, whichever way it reads.
  struct Shaped {
    QTextLayout layout;
    double width = 0;   // pixels
    double height = 0;  // likewise
  };
  /// Stays as it is until the next call; null for texts that are not kept: long ones, and such with other than
  /// letters in it, which lines treat in their own way.
  const Shaped* Of(const Font& font, std::wstring_view text);

 private:
  using Kept = std::unordered_map<std::wstring, std::unique_ptr<const Shaped>>;
  std::unique_ptr<const Shaped> Shape(const Font& font, std::wstring_view text) const;

  QFont m_base;  // of the program, when they were shaped
  Kept m_young;
  Kept m_old;  // goes when there are as many young ones
};

}  // namespace qd

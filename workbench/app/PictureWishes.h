#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbench/display/Sections.h"
#include "workbench/display/ViewCamera.h"

namespace qd::workbench {

/// What a command line says of a picture, as it was typed; empty for what it leaves open.
struct PictureTexts {
  std::string view;     ///< from where one looks
  std::string size;     ///< of a picture of the view alone; the window otherwise
  std::string section;  ///< axes, each with a place on it or not
  std::string hide;     ///< a query
};

/// Likewise, understood.
struct PictureWishes {
  struct Size {
    int width = 0;
    int height = 0;
  };
  struct Cut {
    unsigned axis = 0;
    std::optional<double> at;  ///< the middle of what is shown without
  };
  std::optional<StandardView> view;
  std::optional<Size> size;
  std::vector<Cut> cuts;
};

/// Reads the texts; the fault in a sentence when they are wrong.
std::optional<std::string> ReadPictureWishes(const PictureTexts& texts, PictureWishes& wishes);

/// The words for views, divided by blanks.
std::string ViewWords();

}  // namespace qd::workbench

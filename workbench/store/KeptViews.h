#pragma once

namespace qd::workbench {

// What a document keeps beside its model, by the names of DocumentFile::View.
inline constexpr const char* kViewName = "window";      ///< places of panes, widths of columns
inline constexpr const char* kDisplayName = "display";  ///< what is shown and how
inline constexpr const char* kLookingName = "looking";  ///< the camera, sections, what is searched for
inline constexpr const char* kUnitsName = "units";      ///< the unit of length that numbers are meant in

}  // namespace qd::workbench

#pragma once

#include <memory>

namespace qd {

/// The two choices for all geometry that a geometry root keeps.
class IGeomDisplayModes {
 public:
  virtual int GetColourMode() const = 0;  ///< 0 the part's colour, 1 its material's
  virtual int GetTitleMode() const = 0;   ///< 0 name, 1 name and material
  /// @{
  /// Numbers as above.
  virtual void SetColourMode(int mode) = 0;
  virtual void SetTitleMode(int mode) = 0;
  /// @}
  /// Gone once the root is.
  virtual std::weak_ptr<void> GetLife() const = 0;

 protected:
  ~IGeomDisplayModes() = default;
};

}  // namespace qd

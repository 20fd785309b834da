#pragma once

#include <optional>
#include <type_traits>

#include "workbench/model/Placement.h"

namespace qd::workbench {

inline Vector3 operator+(const Vector3& a, const Vector3& b) {
  return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
inline Vector3 operator-(const Vector3& a, const Vector3& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
inline Vector3 operator*(const Vector3& a, double factor) {
  return {a[0] * factor, a[1] * factor, a[2] * factor};
}
inline double Dot(const Vector3& a, const Vector3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Vector3 Cross(const Vector3& a, const Vector3& b);
double Length(const Vector3& a);

/// The box around something: its least and greatest x, y and z.
struct ViewBox {
  Vector3 least{};
  Vector3 greatest{};

  void Add(const Vector3& point);
  void Add(const ViewBox& box);
};
/// Widens a box, or begins one.
template <typename What>
void Widen(std::optional<ViewBox>& box, const What& what) {
  if constexpr (std::is_same_v<What, Vector3>) {
    if (!box) box = ViewBox{what, what};
  } else {
    if (!box) box = what;
  }
  box->Add(what);
}

enum class StandardView { Front, Back, Left, Right, Top, Bottom, Isometric };

/// From where a model is looked at: mathematics only. Places in the picture are counted in half heights from its
/// middle, to the right and upwards, so its upper edge is at 1 and its right one at its aspect ratio.
class ViewCamera {
 public:
  static constexpr double kAngle = 30;  ///< degrees between the lower and the upper edge, in perspective

  /// The middle of the picture, at the depth where both projections show the same size.
  const Vector3& Focus() const { return m_focus; }
  const Vector3& Ahead() const { return m_ahead; }
  const Vector3& Up() const { return m_up; }
  Vector3 Right() const { return Cross(m_ahead, m_up); }
  /// From the eye to the focus.
  double Distance() const { return m_distance; }
  Vector3 Eye() const { return m_focus - m_ahead * m_distance; }
  bool IsParallel() const { return m_parallel; }
  /// Half the height of the picture in the model, at a depth before the eye.
  double HalfHeight(double depth) const;
  double HalfHeight() const { return HalfHeight(m_distance); }
  /// The point of the model at a place of the picture and a depth before the eye.
  Vector3 PointAt(double x, double y, double depth) const;

  void SetParallel(bool parallel) { m_parallel = parallel; }
  /// Takes a place that a camera had before; false, with nothing changed, for what is no such place.
  bool Place(const Vector3& focus, const Vector3& ahead, const Vector3& up, double distance);
  void LookFrom(StandardView view);
  /// Looks along a direction, with another one upwards as far as that can be.
  void LookAlong(const Vector3& ahead, const Vector3& up);
  /// Looks at a box, which fills a picture of an aspect ratio, width to height. A box without size is only brought
  /// to the middle.
  void Fit(const ViewBox& box, double aspect);
  /// Turns the model about a point as a hand would that moves to the right and upwards; angles in radians.
  void Turn(const Vector3& pivot, double right, double up);
  /// Turns the picture about its middle, counter-clockwise.
  void Roll(double angle);
  /// Moves the model along with the hand, at a depth before the eye.
  void Pan(double right, double up, double depth);
  /// Brings the focus to a depth before the eye; the picture stays as it is.
  void FocusAt(double depth);
  /// Makes everything larger by a factor; what is at a place of the picture, at the depth of the focus, stays
  /// there.
  void Zoom(double factor, double x = 0, double y = 0);
  /// Lets a rectangle of the picture, from its middle to half its width and height, fill the whole.
  void ZoomTo(double x, double y, double halfWidth, double halfHeight, double aspect);

  bool operator==(const ViewCamera&) const = default;
  /// Whether the pictures of both are the same but for rounding.
  bool LooksAs(const ViewCamera& other) const;

 private:
  void TurnAbout(const Vector3& pivot, const Vector3& axis, double angle);

  Vector3 m_focus{};
  Vector3 m_ahead{0, 1, 0};
  Vector3 m_up{0, 0, 1};
  double m_distance = 1;
  bool m_parallel = false;
};

}  // namespace qd::workbench

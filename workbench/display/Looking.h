#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "workbench/display/Notice.h"
#include "workbench/display/ViewCamera.h"

namespace qd::workbench {

/// How a document is looked at: the camera, and where it stood before. It is no part of the model and not undone.
class Looking {
 public:
  /// What can be said of the picture by whoever draws it.
  struct Picture {
    double aspect = 1;  ///< width to height
    std::function<std::optional<ViewBox>()> shown;
    std::function<std::optional<ViewBox>()> selected;
  };
  void SetPicture(std::function<Picture()> picture) { m_picture = std::move(picture); }
  /// Whether somebody shows what the camera sees.
  bool HasPicture() const { return m_picture != nullptr; }

  Looking() { m_camera.LookFrom(StandardView::Isometric); }

  const ViewCamera& Camera() const { return m_camera; }
  /// The box around what is shown.
  std::optional<ViewBox> Shown() const { return m_picture ? m_picture().shown() : std::nullopt; }
  /// A step of a movement.
  void Move(const ViewCamera& camera);
  /// What is seen now can be gone back to: a movement begins.
  void Keep();
  /// The movement is over; one that came back to where it began is no step.
  void Settle();
  /// Looks from somewhere else, at everything that is shown.
  void LookFrom(StandardView view);
  /// Turns about the middle of the picture.
  void LookAlong(const Vector3& ahead, const Vector3& up);
  void FitAll();
  /// Shows everything that has come, as long as nobody has looked elsewhere.
  void Begin();
  /// Looks from where somebody did before this began.
  void Resume(const ViewCamera& camera);
  void FitSelection();
  void SetParallel(bool parallel);
  bool CanGoBack() const { return !m_before.empty(); }
  bool CanGoForward() const { return !m_after.empty(); }
  void GoBack();
  void GoForward();

  /// Follows where the camera stands.
  [[nodiscard]] Subscription Subscribe(Notice<ViewCamera>::Call call) {
    return m_notice.Subscribe(std::move(call));
  }

 private:
  void Go(const ViewCamera& camera);
  void Return(std::vector<ViewCamera>& from, std::vector<ViewCamera>& to);
  ViewCamera Fitted(const std::function<std::optional<ViewBox>()> Picture::*what, ViewCamera camera) const;

  ViewCamera m_camera;
  std::vector<ViewCamera> m_before;
  std::vector<ViewCamera> m_after;
  std::function<Picture()> m_picture;
  Notice<ViewCamera> m_notice;
  bool m_touched = false;  // by the user: from then on the camera stays where it is
};

}  // namespace qd::workbench

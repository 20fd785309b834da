#include "workbench/display/Looking.h"

namespace qd::workbench {

namespace {

constexpr std::size_t kMostKept = 100;

void KeepIn(std::vector<ViewCamera>& cameras, const ViewCamera& camera) {
  if (!cameras.empty() && cameras.back() == camera) return;
  if (cameras.size() == kMostKept) cameras.erase(cameras.begin());
  cameras.push_back(camera);
}

}  // namespace

void Looking::Move(const ViewCamera& camera) {
  if (camera == m_camera) return;
  m_camera = camera;
  m_notice.Tell(m_camera);
}

void Looking::Keep() {
  m_touched = m_touched || Shown();  // who moves the camera before anything has come looks at nothing
  KeepIn(m_before, m_camera);
  m_after.clear();
}

void Looking::Settle() {
  if (!m_before.empty() && m_before.back().LooksAs(m_camera)) m_before.pop_back();
}

void Looking::Go(const ViewCamera& camera) {
  if (camera == m_camera) return;
  Keep();
  Move(camera);
}

ViewCamera Looking::Fitted(const std::function<std::optional<ViewBox>()> Picture::*what, ViewCamera camera) const {
  const Picture picture = m_picture ? m_picture() : Picture{};
  const auto box = picture.*what ? (picture.*what)() : std::nullopt;
  if (box) camera.Fit(*box, picture.aspect);
  return camera;
}

void Looking::LookFrom(StandardView view) {
  ViewCamera camera = m_camera;
  camera.LookFrom(view);
  Go(Fitted(&Picture::shown, camera));
}

void Looking::LookAlong(const Vector3& ahead, const Vector3& up) {
  ViewCamera camera = m_camera;
  camera.LookAlong(ahead, up);
  Go(camera);
}

void Looking::FitAll() {
  Go(Fitted(&Picture::shown, m_camera));
}

void Looking::Begin() {
  if (!m_touched) Move(Fitted(&Picture::shown, m_camera));
}

void Looking::Resume(const ViewCamera& camera) {
  m_touched = true;
  Move(camera);
}

void Looking::FitSelection() {
  Go(Fitted(&Picture::selected, m_camera));
}

void Looking::SetParallel(bool parallel) {
  ViewCamera camera = m_camera;
  camera.SetParallel(parallel);
  Go(camera);
}

void Looking::GoBack() {
  Return(m_before, m_after);
}

void Looking::GoForward() {
  Return(m_after, m_before);
}

void Looking::Return(std::vector<ViewCamera>& from, std::vector<ViewCamera>& to) {
  if (from.empty()) return;
  const ViewCamera camera = from.back();
  from.pop_back();
  KeepIn(to, m_camera);
  Move(camera);
}

}  // namespace qd::workbench

#include "workbench/app/KeptLooking.h"

#include <cmath>
#include <optional>

namespace qd::workbench {

namespace {

QJsonArray JsonOf(const Vector3& vector) {
  return {vector[0], vector[1], vector[2]};
}

std::optional<Vector3> VectorOf(const QJsonValue& value) {
  const QJsonArray numbers = value.toArray();
  if (numbers.size() != 3) return std::nullopt;
  constexpr double kGreatest = 1e15;
  Vector3 vector{};
  for (int i = 0; i < 3; ++i) {
    if (!numbers[i].isDouble() || std::abs(numbers[i].toDouble()) > kGreatest) return std::nullopt;
    vector[static_cast<std::size_t>(i)] = numbers[i].toDouble();
  }
  return vector;
}

bool IsUnit(const Vector3& vector) {
  constexpr double kRounded = 1e-6;
  return std::abs(Length(vector) - 1) < kRounded;
}

}  // namespace

QJsonObject JsonOf(const ViewCamera& camera) {
  return {{"focus", JsonOf(camera.Focus())},
          {"ahead", JsonOf(camera.Ahead())},
          {"up", JsonOf(camera.Up())},
          {"distance", camera.Distance()},
          {"parallel", camera.IsParallel()}};
}

void TakeUpCamera(const QJsonObject& json, Looking& looking) {
  const auto focus = VectorOf(json["focus"]);
  const auto ahead = VectorOf(json["ahead"]);
  const auto up = VectorOf(json["up"]);
  ViewCamera camera;
  if (!focus || !ahead || !up || !camera.Place(*focus, *ahead, *up, json["distance"].toDouble())) return;
  camera.SetParallel(json["parallel"].toBool());
  looking.Resume(camera);
}

QJsonArray JsonOf(const Sections& sections) {
  QJsonArray planes;
  for (const SectionPlane& plane : sections.Planes()) {
    QJsonObject json{{"point", JsonOf(plane.point)}, {"normal", JsonOf(plane.normal)}};
    if (plane.axis) json["axis"] = static_cast<int>(*plane.axis);
    planes.append(json);
  }
  return planes;
}

void TakeUpSections(const QJsonArray& json, Sections& sections) {
  for (const QJsonValue value : json) {
    const auto point = VectorOf(value["point"]);
    const auto normal = VectorOf(value["normal"]);
    if (!point || !normal || !IsUnit(*normal)) continue;
    SectionPlane plane{*point, *normal, std::nullopt};
    const int axis = value["axis"].toInt(-1);
    if (axis >= 0 && axis < 3 && !sections.HasAxis(static_cast<unsigned>(axis))) {
      plane.axis = static_cast<unsigned>(axis);
    }
    sections.Add(plane);
  }
}

}  // namespace qd::workbench

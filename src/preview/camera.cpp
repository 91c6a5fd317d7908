// SPDX-License-Identifier: MIT
#include "preview/camera.h"

#include <numbers>

namespace preview {
namespace {

constexpr double kDistance = 4.0;  ///< in radii of the model
constexpr double kMargin = 0.04;   ///< of the picture's side, on each side

}  // namespace

Camera::Camera(const Stand& stand, const View& view, const base::Box& bounds) : centre_(bounds.Centre()) {
  const double turn = view.turn * std::numbers::pi / 180.0;
  const double raise = view.raise * std::numbers::pi / 180.0;
  const Vector level = stand.front * std::cos(turn) + stand.side * std::sin(turn);
  // From straight above this leaves the model's front at the lower edge.
  toViewer_ = level * std::cos(raise) + stand.up * std::sin(raise);
  up_ = stand.up * std::cos(raise) - level * std::sin(raise);
  right_ = Cross(up_, toViewer_);
  distance_ = std::max(kDistance * 0.5 * Length(bounds.Extent()), 1e-6);
}

Seen Camera::Look(const Vector& point) const {
  const Vector offset = point - centre_;
  const double distance = std::max(distance_ - Dot(offset, toViewer_), 1e-3 * distance_);
  const double shrink = distance_ / distance;
  return {offsetX_ + scale_ * shrink * Dot(offset, right_), offsetY_ - scale_ * shrink * Dot(offset, up_),
          1.0 / distance};
}

void Camera::Fit(std::vector<Camera>& cameras, const std::vector<Vector>& points, int size) {
  base::Box plane;
  for (const Camera& camera : cameras) {
    for (const Vector& point : points) {
      const Seen seen = camera.Look(point);
      plane.Add({seen.x, seen.y, 0.0});
    }
  }
  if (plane.IsEmpty()) return;
  const double extent = std::max(std::max(plane.Extent()[0], plane.Extent()[1]), 1e-30);
  for (Camera& camera : cameras) {
    camera.scale_ = size * (1.0 - 2.0 * kMargin) / extent;
    camera.offsetX_ = 0.5 * size - camera.scale_ * plane.Centre()[0];
    camera.offsetY_ = 0.5 * size - camera.scale_ * plane.Centre()[1];
  }
}

}  // namespace preview

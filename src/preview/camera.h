// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "preview/stand.h"

namespace preview {

/// Where the viewer stands, in degrees: `turn` to the model's left, `raise` above the ground.
struct View {
  double turn = 0.0;
  double raise = 0.0;
};

/// A point as the camera sees it.
struct Seen {
  double x = 0.0, y = 0.0;  ///< to the right and downwards
  double nearness = 0.0;    ///< 1 / distance along the line of sight
};

/// A viewer who looks at the middle of a model from outside its bounds, slightly in perspective.
class Camera {
 public:
  Camera(const Stand& stand, const View& view, const base::Box& bounds);

  /// `point` in units of the picture plane, before `Fit`; in pixels after it.
  Seen Look(const Vector& point) const;

  /// Moves and scales the picture so that it fits `size` x `size` pixels with a margin. All `cameras` get the
  /// same scale, those of a turntable are together in the frame. Nothing happens without points.
  static void Fit(std::vector<Camera>& cameras, const std::vector<Vector>& points, int size);

  const Vector& Right() const { return right_; }
  const Vector& Up() const { return up_; }
  const Vector& ToViewer() const { return toViewer_; }

 private:
  Vector right_{}, up_{}, toViewer_{}, centre_{};
  double distance_ = 1.0;
  double scale_ = 1.0, offsetX_ = 0.0, offsetY_ = 0.0;
};

}  // namespace preview

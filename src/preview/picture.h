// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "actor/actor.h"
#include "preview/camera.h"
#include "preview/canvas.h"
#include "preview/texture.h"

namespace preview {

inline constexpr int kSmallestPicture = 16, kLargestPicture = 4096;  ///< pixels

struct PictureOptions {
  int size = 512;  ///< pixels of each side, from kSmallestPicture to kLargestPicture
  bool bones = false;
  std::optional<Vector> up;            ///< as FindStand takes it
  std::vector<View> views = {View{}};  ///< a picture for each, in one scale
};

/// Takes the finished picture of the view `index`.
using TakePicture = std::function<void(size_t index, const Image& image)>;

/// Draws an actor, whatever it holds, standing upright on a light ground: one picture for each view, in their
/// order. The same actor gives the same pictures.
void DrawPictures(const actor::Actor& source, const PictureOptions& options, const PictureDecoder& decode,
                  const TakePicture& take);

}  // namespace preview

// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "scene/gltf/document.h"

namespace scene::gltf {

/// Counts steps up the trees of a document: long chains of nodes with very many skins would be climbed for minutes.
class ClimbLimit {
 public:
  /// One step from a node to the one above it.
  /// @throws Fault when that is one too many
  void Step() {
    constexpr uint64_t kMost = 20'000'000;
    if (++steps_ > kMost) throw Fault("its skins have too many joints in chains that are too long");
  }

 private:
  uint64_t steps_ = 0;
};

}  // namespace scene::gltf

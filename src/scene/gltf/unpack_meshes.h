// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "scene/gltf/bytes.h"

namespace scene::gltf {

/// Unpacks the primitives that are compressed with KHR_draco_mesh_compression, by a process of its own, since the
/// library was not made for hostile files. They are plain triangles then.
/// @param modelSize  bytes of the model's files, which limit what the process may take
/// @param budget     what they unpack to is taken from it before there is room for it
/// @param wait       called several times a second; may throw
/// @throws Fault when one is damaged or not what its accessors say, or the library is not there
void UnpackMeshes(Document& document, BufferBytes& bytes, uint64_t modelSize, Budget& budget,
                  const std::function<void()>& wait);

}  // namespace scene::gltf

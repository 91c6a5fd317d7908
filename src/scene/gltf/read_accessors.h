// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/document.h"

namespace scene::gltf {

class JsonValue;

/// What a file says of its data: buffers, views of them, and accessors, which say what the views hold.
/// @throws Fault for what does not exist or cannot be
std::vector<Buffer> ReadBuffers(JsonValue buffers);
std::vector<BufferView> ReadViews(JsonValue views, size_t bufferCount);
std::vector<Accessor> ReadAccessors(JsonValue accessors, size_t viewCount);

}  // namespace scene::gltf

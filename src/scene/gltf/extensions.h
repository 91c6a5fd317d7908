// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace scene::gltf {

class JsonValue;

/// Extensions whose data replaces what the file has without them.
inline constexpr const char* kViewCompressions[] = {"EXT_meshopt_compression", "KHR_meshopt_compression"};
inline constexpr const char* kMeshCompression = "KHR_draco_mesh_compression";

/// Whether the file says that it cannot be shown without the extension.
bool RequiresExtension(JsonValue root, std::string_view extension);

/// Extensions that shape the model and are not read, as "A, B": somebody who does without them would not see the model
/// as it is.
std::string ListUnreadExtensions(JsonValue root);

}  // namespace scene::gltf

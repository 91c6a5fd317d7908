// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace translator {

/// Unpacks meshes that are compressed with Draco.
/// @param request  as scene/readers/stream_words.h says, which tells what the answer is as well
/// @throws std::runtime_error when one is damaged, or not what the request says of it
std::string UnpackMeshes(std::string_view request);

}  // namespace translator

// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace scene::gltf {

/// Whether `uri` holds its data itself.
bool IsDataUri(std::string_view uri);

/// The bytes of a data URI, in base64 or as text.
/// @throws Fault for damaged ones
std::string DecodeDataUri(std::string_view uri);

/// The path below the model's folder that `uri` means, with backslashes; empty when it does not lead to a place
/// there: URIs with a scheme, absolute paths, drives and paths that climb out by "..".
std::string PathBelowModel(std::string_view uri);

}  // namespace scene::gltf

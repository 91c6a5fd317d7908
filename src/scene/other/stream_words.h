// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace scene::other {

/// The stream that a translated model comes in: kStreamStart, then a line for each other file that was read, then
/// kDataWord and a GLB file; or kStreamStart and one line with the reason why there is none.
inline constexpr const char* kStreamStart = "translated model 1";
inline const std::string kFileWord = "file ";
inline const std::string kErrorWord = "error ";
inline constexpr const char* kDataWord = "data";

}  // namespace scene::other

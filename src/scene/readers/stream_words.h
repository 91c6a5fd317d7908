// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace scene::translation {

/// The stream that translate_model answers with: kStreamStart, then a line for each other file that was read and, with the
/// number of its points, for each joint that has weights and is nowhere, then kDataWord and the data behind it; or kStreamStart and one line with the reason why there is none.
inline constexpr const char* kStreamStart = "translated model 1";
inline const std::string kFileWord = "file ";
inline const std::string kLostWord = "lost ";
inline const std::string kErrorWord = "error ";
inline constexpr const char* kDataWord = "data";

/// In place of a format: meshes that are compressed with Draco come, each as a PackedMesh, its PackedNumbers and
/// its compressed bytes. The answer's data is for each of them the numbers of its points and of its corners, the corners,
/// all as uint32_t, and the numbers of every point, list by list, each list filled up to a multiple of kPadding bytes.
inline constexpr const char* kMeshesWord = "draco";
inline constexpr uint32_t kPadding = 4;

struct PackedMesh {
  uint32_t bytes;  ///< compressed
  uint32_t lists;  ///< of PackedNumbers that follow
};

/// An attribute that is asked for.
struct PackedNumbers {
  uint32_t id;                              ///< within the compressed mesh
  uint32_t component, width, isNormalized;  ///< as accessors of glTF say it
};

}  // namespace scene::translation

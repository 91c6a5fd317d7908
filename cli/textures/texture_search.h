// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// Where the picture of a texture is.
struct TextureSearch {
  std::filesystem::path found;      ///< empty when it is nowhere
  std::vector<std::string> places;  ///< the paths tried, in their order; `found` is the last of them
};

/// Looks for the picture of a texture, as the model names it: by its path as given, by its name relative to
/// the model, then by its bare name beside the model and in the folders "textures", "tex", "images" and
/// "<model>.fbm" there. Slashes of either kind and letter case do not matter; a name of the exact letters is
/// preferred. Finds regular files only.
/// @param model absolute path of the model
/// @param fileName,relativeFileName either may be empty
TextureSearch FindTexture(const std::filesystem::path& model, std::string_view fileName,
                          std::string_view relativeFileName);

}  // namespace cli

// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace textures {

/// Where the picture of a texture is.
struct TextureSearch {
  std::filesystem::path found;      ///< empty when it is nowhere
  std::vector<std::string> places;  ///< the paths tried, in their order; `found` is the last of them
};

/// Looks for the pictures of one model. Folders are read once, so it is not to live longer than the model's
/// conversion.
class TextureFinder {
 public:
  /// @param model absolute path of the model
  explicit TextureFinder(const std::filesystem::path& model);

  /// Looks for the picture of a texture, as the model names it: by its path as given, by its name relative to
  /// the model, then by its bare name beside the model and in the folders "textures", "tex", "images" and
  /// "<model>.fbm" there. Slashes of either kind and letter case do not matter; a name of the exact letters
  /// is preferred. Finds regular files only, and opens no path of another computer.
  /// @param fileName,relativeFileName either may be empty
  TextureSearch Find(std::string_view fileName, std::string_view relativeFileName);

  /// Whether the file `path` lies neither in the model's folder nor below it, behind all links.
  bool IsOutside(const std::filesystem::path& path) const;

 private:
  bool Try(const std::filesystem::path& place);
  bool TryPath(std::string_view path);
  bool TryName(std::string_view path);
  std::filesystem::path AsOnDisk(const std::filesystem::path& path);
  std::filesystem::path EntryIgnoringCase(const std::filesystem::path& folder, const std::string& name);

  std::filesystem::path folder_;
  std::string stem_;
  /// Of each folder that was read: its names, by those in lower case, where the first one stands for all.
  std::map<std::filesystem::path, std::map<std::string, std::string>> namesIn_;
  TextureSearch search_;
};

}  // namespace textures

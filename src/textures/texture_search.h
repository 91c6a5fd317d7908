// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"
#include "textures/picture_index.h"

namespace textures {

/// Where the picture of a texture is.
struct TextureSearch {
  platform::fs::path found;         ///< empty when it is nowhere
  std::vector<std::string> places;  ///< the paths tried, in their order, each once
};

/// Looks for the pictures of one model. Folders are read once,
/// so it is not to live longer than the model's conversion.
class TextureFinder {
 public:
  /// @param model absolute path of the model
  /// @param folders  searched with all folders below them
  explicit TextureFinder(const platform::fs::path& model, const std::vector<std::string>& folders = {});

  /// Looks for the picture of a texture, as the model names it: by its path as given, by its name relative to
  /// the model, then by its bare name in the folders that were given, beside the model, and in the folders
  /// "textures", "texture", "tex", "images", "materials" and "<model>.fbm" there and, but for "tex" and the
  /// last, one level up. Slashes of either kind and letter case do not matter; a name of the exact letters is
  /// preferred. Finds regular files only, and opens no path of another computer.
  /// @param fileName,relativeFileName either may be empty
  TextureSearch Find(std::string_view fileName, std::string_view relativeFileName);

  /// The model's.
  const platform::fs::path& Folder() const { return folder_; }

  /// Whether the file `path` lies neither below the model's folder nor one that was given, behind all links.
  bool IsOutside(const platform::fs::path& path) const;

 private:
  /// By the same in lower case.
  using Names = std::multimap<std::string, std::string>;

  bool IsNewPlace(std::string place);
  bool Try(const platform::fs::path& place);
  bool TryPath(std::string_view path);
  bool TryGivenFolders(const std::string& path);
  bool TryName(std::string_view path);
  const std::vector<platform::fs::path>& UsualFolders();
  const Names& NamesIn(const platform::fs::path& folder);
  platform::fs::path AsOnDisk(const platform::fs::path& path);
  platform::fs::path EntryIgnoringCase(const platform::fs::path& folder, const std::string& name);

  platform::fs::path folder_;
  std::string stem_;
  std::vector<PictureIndex> givenFolders_;
  std::vector<platform::fs::path> usualFolders_;
  std::map<platform::fs::path, Names> namesIn_;  ///< of each folder that was read
  TextureSearch search_;
  std::set<std::string> places_;  ///< of search_, in lower case
};

}  // namespace textures

// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host_paths.h"

namespace cli {

/// A temporary folder that stands in for a model's own: it shows the model and the ".tga" pictures beside it
/// under their names and takes all work files.
class WorkFolder {
 public:
  /// @throws std::filesystem::filesystem_error when it cannot be made
  explicit WorkFolder(const std::filesystem::path& model);

  /// The model as it is named in this folder: as "<stem>.fbx" when its extension has not three letters.
  std::filesystem::path Model() const { return folder_.Path() / modelName_; }

  /// Moves the file `name` into `folder`, over any file of that name. Nothing happens when there is no such
  /// file.
  void MoveTo(const std::filesystem::path& folder, const std::filesystem::path& name) const;

  /// Names of the ".tga" files that were written here.
  std::vector<std::string> NewPictures() const;

 private:
  TemporaryFolder folder_;
  std::filesystem::path modelName_;
};

}  // namespace cli

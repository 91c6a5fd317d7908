// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace cli {

/// A temporary folder that stands in for a model's own: it shows the model and the ".tga" pictures beside it
/// under their names, takes all work files, and goes away with this object.
class WorkFolder {
 public:
  /// @throws std::filesystem::filesystem_error when it cannot be made
  explicit WorkFolder(const std::filesystem::path& model);
  ~WorkFolder();
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  /// The model as it is named in this folder.
  std::filesystem::path Model() const { return path_ / modelName_; }

  /// Moves the file `name` into `folder`, over any file of that name. Nothing happens when there is no such
  /// file.
  void MoveTo(const std::filesystem::path& folder, const std::filesystem::path& name) const;

 private:
  std::filesystem::path path_;
  std::filesystem::path modelName_;
};

}  // namespace cli

// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "platform/file_system.h"

namespace ts3d {

/// `path` as the driver takes it: it splits paths at the backslash.
std::string ConverterPath(const platform::fs::path& path);

/// `path` with `extension`, given without its dot, in place of its own if it has one.
platform::fs::path WithExtension(const platform::fs::path& path, const char* extension);

/// A new, empty temporary folder that goes away with this object.
class TemporaryFolder {
 public:
  /// @throws platform::fs::filesystem_error when it cannot be made
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  platform::fs::path Path() const { return path_; }

 private:
  std::string path_;
};

/// A temporary folder that stands in for a model's own: it shows the model and the ".tga" pictures beside it
/// under their names and takes all work files.
class WorkFolder {
 public:
  /// @throws platform::fs::filesystem_error when it cannot be made
  explicit WorkFolder(const platform::fs::path& model);
  /// The same with another name for the model in this folder.
  WorkFolder(const platform::fs::path& model, const platform::fs::path& pictureFolder,
             const platform::fs::path& modelName);
  /// The same for a model that is not in any folder.
  /// @param pictureFolder  whose ".tga" pictures are shown; none when it is empty
  WorkFolder(const platform::fs::path& pictureFolder, const platform::fs::path& modelName);

  /// The model as it is named in this folder: as "<stem>.fbx", or ".glb", when its
  /// extension has not three letters.
  platform::fs::path Model() const { return folder_.Path() / modelName_; }

  /// Moves the file `name` into `folder`, over any file of that
  /// name. Nothing happens when there is no such file.
  void MoveTo(const platform::fs::path& folder, const platform::fs::path& name) const;

  /// Names of the ".tga" files that were written here.
  std::vector<std::string> NewPictures() const;

 private:
  TemporaryFolder folder_;
  platform::fs::path modelName_;
};

}  // namespace ts3d

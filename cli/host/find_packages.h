// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/file_system.h"

namespace cli {

/// One package of a command line.
struct PackageInput {
  std::string name;               ///< as the user wrote it, or below the folder that was named
  platform::fs::path fromFolder;  ///< its path below the folder that was named; its name without one
};

/// The packages that the command line names: files as they are, and all ".czp" files below folders, sorted. A
/// folder with the files of one package is a package itself.
/// @param alsoModels  whether folders without any package stand for the models below them
/// @throws Failure when `names` are folders without any, or cannot be looked into
std::vector<PackageInput> FindPackages(const std::vector<std::string>& names, bool alsoModels = false);

/// Where files that are made of packages go: into a folder, below which the packages of a folder keep their
/// subfolders, or beside each package. Two never get the same name.
class OutputPaths {
 public:
  /// @param folder  empty: beside each package
  OutputPaths(std::string folder, std::string extension)
      : folder_(std::move(folder)), extension_(std::move(extension)) {}

  /// @throws Failure when the file of another package has that name
  platform::fs::path Of(const PackageInput& input);

 private:
  std::string folder_, extension_;
  std::set<std::string> taken_;  ///< in lower case
};

}  // namespace cli

// SPDX-License-Identifier: MIT
#include "host/find_packages.h"

#include <algorithm>

#include "core/names.h"
#include "host/find_files.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace fs = platform::fs;
namespace {

/// Whether the files of one package lie in the folder itself.
bool IsUnpacked(const fs::path& folder) {
  std::error_code failed;
  for (fs::directory_iterator entry(folder, failed); !failed && entry != fs::directory_iterator();
       entry.increment(failed)) {
    const std::string extension = entry->path().extension().string();
    if (ts3d::EqualsIgnoreCase(extension, ".csf") || ts3d::EqualsIgnoreCase(extension, ".cmf")) return true;
  }
  return false;
}

}  // namespace

std::vector<PackageInput> FindPackages(const std::vector<std::string>& names, bool alsoModels) {
  std::vector<PackageInput> packages;
  for (const std::string& name : names) {
    std::error_code unknown;
    if (!fs::is_directory(name, unknown) || IsUnpacked(name)) {
      const fs::path path = name.ends_with('/') ? fs::path(name).parent_path() : fs::path(name);
      packages.push_back({name, path.filename()});
      continue;
    }
    std::vector<fs::path> found = FilesBelow(name, ".czp");
    if (found.empty() && alsoModels) found = ModelsBelow(name);
    for (const fs::path& path : found)
      packages.push_back({path.lexically_normal().string(), path.lexically_relative(name)});
  }
  if (packages.empty()) {
    throw Failure(kNoInput, std::string("there is no .czp ") + (alsoModels ? "and no model " : "") +
                                "file in the folders given");
  }
  return packages;
}

fs::path OutputPaths::Of(const PackageInput& input) {
  fs::path path = folder_.empty() ? fs::path(input.name) : fs::path(folder_) / input.fromFolder;
  if (!path.has_filename()) path = path.parent_path();
  path.replace_extension(extension_);
  if (!taken_.insert(ts3d::LowerCase(path.string())).second)
    throw Failure(kUsageError, "another package of this command line makes the same file, " + path.string());
  return path;
}

}  // namespace cli

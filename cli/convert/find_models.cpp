// SPDX-License-Identifier: MIT
#include "convert/find_models.h"

#include "host/host_paths.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace fs = platform::fs;
namespace {

void AddFolder(const std::string& name, const std::string& outputFolder, Unread unread,
               std::vector<ModelTask>& tasks) {
  for (const fs::path& path : ModelsBelow(name, unread)) {
    const fs::path model = fs::absolute(path);
    const fs::path folder = outputFolder.empty()
                                ? model.parent_path()
                                : fs::absolute(outputFolder) / path.lexically_relative(name).parent_path();
    tasks.push_back({path.lexically_normal().string(), model, folder});
  }
}

std::vector<ModelTask> Find(const std::vector<std::string>& names, const std::string& outputFolder,
                            Unread unread) {
  std::vector<ModelTask> tasks;
  for (const std::string& name : names) {
    std::error_code unknown;
    if (fs::is_directory(name, unknown)) {
      AddFolder(name, outputFolder, unread, tasks);
      continue;
    }
    const fs::path model = name.empty() ? fs::path() : fs::absolute(name, unknown);
    tasks.push_back({name, model, outputFolder.empty() ? model.parent_path() : fs::absolute(outputFolder)});
  }
  if (tasks.empty())
    throw Failure(kNoInput, "there is no model (" + ModelEndings() + ") in the folders given");
  return tasks;
}

/// Puts the packages of `tasks` from `first` on into the folders of `output` that their models have below `base`.
void KeepFolders(const std::string& base, const std::string& output, size_t first,
                 std::vector<ModelTask>& tasks) {
  const fs::path root = fs::weakly_canonical(base.empty() ? "." : base);
  for (size_t i = first; i < tasks.size(); ++i) {
    const fs::path below = fs::weakly_canonical(tasks[i].model.parent_path()).lexically_relative(root);
    if (below.empty() || *below.begin() == "..") {
      throw Failure(kUsageError, tasks[i].name + " is not below " + root.string() +
                                     ", so its folder cannot be kept; name another folder with --base");
    }
    tasks[i].folder = (fs::absolute(output) / below).lexically_normal();
    if (below == ".") tasks[i].folder = fs::absolute(output);
  }
}

/// Whether `output` is to be a package, and not a folder of packages.
bool IsOnePackage(const std::string& output) {
  std::error_code unknown;
  const fs::path path = output;
  if (fs::is_directory(path, unknown)) return false;
  if (IsModelName(path) || HasExtension(path, ".xfg")) {
    throw Failure(kUsageError,
                  output + ": the output is a folder, or a package with a name that ends in .czp");
  }
  return HasExtension(path, ".czp");
}

/// Makes the only one of `tasks` the package `output`.
void NameThePackage(const fs::path& output, std::vector<ModelTask>& tasks) {
  if (tasks.size() != 1) {
    throw Failure(kUsageError, output.string() + " is one package, but there are " +
                                   std::to_string(tasks.size()) + " models; name a folder");
  }
  tasks.front().folder = fs::absolute(output).parent_path();
  tasks.front().stem = output.stem().string();
}

}  // namespace

std::vector<ModelTask> FindModels(const ConvertOptions& options, Unread unread) {
  const bool isPackage = IsOnePackage(options.outputFolder);
  const std::string folder = isPackage ? "" : options.outputFolder;
  std::vector<ModelTask> tasks;
  if (!options.models.empty()) tasks = Find(options.models, folder, unread);
  const size_t first = options.base.empty() ? tasks.size() : 0;
  for (const std::string& name : options.listed) {
    for (ModelTask& task : Find({name}, "", unread)) tasks.push_back(std::move(task));
  }
  if (isPackage) {
    if (!tasks.empty()) NameThePackage(options.outputFolder, tasks);
  } else if (!folder.empty()) {
    KeepFolders(options.base, folder, first, tasks);
  }
  return tasks;
}

std::vector<ModelTask> FindModels(const std::vector<std::string>& names) {
  return Find(names, "", Unread::Tell);
}

}  // namespace cli

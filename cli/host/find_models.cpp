// SPDX-License-Identifier: MIT
#include "host/find_models.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>

#include "core/names.h"
#include "output/exit_codes.h"
#include "output/terminal.h"
#include "platform/file_system.h"
#include "platform/folder_walk.h"

namespace cli {
namespace fs = platform::fs;
namespace {

bool HasExtension(const fs::path& path, const char* extension) {
  return ts3d::EqualsIgnoreCase(path.extension().string(), extension);
}

/// Place of the model's ending in kModelExtensions; their number when it is none.
size_t RankOf(const fs::path& path) {
  const auto known = std::find_if(kModelExtensions.begin(), kModelExtensions.end(),
                                  [&](const char* extension) { return HasExtension(path, extension); });
  return static_cast<size_t>(known - kModelExtensions.begin());
}

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

std::string ReadList(const std::string& file) {
  if (file == "-") return {std::istreambuf_iterator<char>(std::cin), {}};
  std::error_code unknown;
  std::ifstream stream(platform::ForStream(file), std::ios::binary);
  if (!stream || fs::is_directory(file, unknown)) throw Failure(kNoInput, file + ": the list cannot be read");
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// Whether `output` is to be a package, and not a folder of packages.
bool IsOnePackage(const std::string& output) {
  std::error_code unknown;
  const fs::path path = output;
  if (fs::is_directory(path, unknown)) return false;
  if (IsModelName(path) || HasExtension(path, ".xfg"))
    throw Failure(kUsageError,
                  output + ": the output is a folder, or a package with a name that ends in .czp");
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

bool IsModelName(const fs::path& path) { return RankOf(path) < kModelExtensions.size(); }

std::string ModelEndings() {
  std::string endings;
  for (size_t i = 0; i < kCharacterExtensions; ++i)
    endings += (i == 0 ? "" : ", ") + std::string(kModelExtensions[i]);
  return endings;
}

std::vector<fs::path> ModelsBelow(const std::string& folder, Unread unread) {
  const auto isCharacter = [](const fs::path& path) { return RankOf(path) < kCharacterExtensions; };
  std::vector<fs::path> models = FilesBelow(folder, isCharacter, unread);
  std::map<fs::path, size_t> best;
  for (const fs::path& model : models) {
    const auto [known, isNew] = best.try_emplace(fs::path(model).replace_extension(), RankOf(model));
    if (!isNew) known->second = std::min(known->second, RankOf(model));
  }
  std::erase_if(models, [&](const fs::path& model) {
    return best.at(fs::path(model).replace_extension()) != RankOf(model);
  });
  return models;
}

std::vector<fs::path> FilesBelow(const std::string& folder, const char* extension) {
  return FilesBelow(folder, [&](const fs::path& path) { return HasExtension(path, extension); });
}

std::vector<fs::path> FilesBelow(const std::string& folder,
                                 const std::function<bool(const fs::path&)>& isMeant, Unread unread) {
  constexpr int kDeepest = 1000;
  std::vector<fs::path> found;
  const auto add = [&](const fs::directory_entry& entry) {
    std::error_code unknown;
    if (isMeant(entry.path()) && entry.is_regular_file(unknown)) found.push_back(entry.path());
    return platform::Walk::On;
  };
  // What cannot be looked into is no reason to leave out the rest.
  platform::WalkFolder(folder, kDeepest, add, [&](const fs::path& part, std::error_code reason) {
    const std::string text = "the folder cannot be looked into: " + reason.message();
    if (part == fs::path(folder)) throw Failure(kNoInput, folder + ": " + text);
    if (unread == Unread::Tell) PrintMessage(part.string(), Severity::Warning, text);
  });
  std::sort(found.begin(), found.end());
  return found;
}

std::vector<std::string> ReadFileList(const std::string& file) {
  const std::string text = ReadList(file);
  const char separator = text.find('\0') == std::string::npos ? '\n' : '\0';
  std::vector<std::string> names;
  std::set<std::string> known;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line, separator);) {
    if (separator == '\n' && line.ends_with('\r')) line.pop_back();
    if (!line.empty() && known.insert(line).second) names.push_back(line);
  }
  return names;
}

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

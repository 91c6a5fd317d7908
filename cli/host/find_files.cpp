// SPDX-License-Identifier: MIT
#include "host/find_files.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

#include "host/host_paths.h"
#include "platform/file_system.h"
#include "platform/folder_walk.h"
#include "terminal/exit_codes.h"
#include "terminal/terminal.h"

namespace cli {
namespace fs = platform::fs;
namespace {

/// Place of the model's ending in kModelExtensions; their number when it is none.
size_t RankOf(const fs::path& path) {
  const auto known = std::find_if(kModelExtensions.begin(), kModelExtensions.end(),
                                  [&](const char* extension) { return HasExtension(path, extension); });
  return static_cast<size_t>(known - kModelExtensions.begin());
}

std::string ReadList(const std::string& file) {
  if (file == "-") return {std::istreambuf_iterator<char>(std::cin), {}};
  std::error_code unknown;
  std::ifstream stream(platform::ForStream(file), std::ios::binary);
  if (!stream || fs::is_directory(file, unknown)) throw Failure(kNoInput, file + ": the list cannot be read");
  return {std::istreambuf_iterator<char>(stream), {}};
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

}  // namespace cli

// SPDX-License-Identifier: MIT
#include "textures/texture_search.h"

#include <algorithm>

#include "core/names.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

std::string WithSlashes(std::string_view path) {
  std::string text(path);
  std::replace(text.begin(), text.end(), '\\', '/');
  return text;
}

/// "C:/art/skin.png": a place on another system.
bool HasDrive(std::string_view path) { return path.size() > 1 && path[1] == ':'; }

/// The entry of `folder` that is called `name` but for letter case, the first by name; empty when there is
/// none.
fs::path EntryIgnoringCase(const fs::path& folder, const std::string& name) {
  fs::path best;
  std::error_code failed;
  for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end; entry.increment(failed)) {
    const fs::path candidate = entry->path().filename();
    if (ts3d::EqualsIgnoreCase(candidate.string(), name) && (best.empty() || candidate < best)) {
      best = candidate;
    }
  }
  return best;
}

/// What exists under `path` in any letter case; empty when nothing does.
fs::path AsOnDisk(const fs::path& path) {
  std::error_code failed;
  if (fs::exists(path, failed)) return path;
  fs::path resolved;
  for (const fs::path& part : path) {
    fs::path next = resolved / part;
    if (!fs::exists(next, failed)) {
      const fs::path entry = EntryIgnoringCase(resolved, part.string());
      if (entry.empty()) return {};
      next = resolved / entry;
    }
    resolved = next;
  }
  return resolved;
}

/// One search: tries places until one holds the picture.
class Search {
 public:
  explicit Search(const fs::path& model) : folder_(model.parent_path()), stem_(model.stem().string()) {}

  bool Try(const fs::path& place) {
    const std::string name = place.lexically_normal().string();
    if (std::find(result_.places.begin(), result_.places.end(), name) != result_.places.end()) return false;
    result_.places.push_back(name);
    const fs::path path = AsOnDisk(place);
    std::error_code failed;
    if (path.empty() || !fs::is_regular_file(path, failed)) return false;
    result_.found = path;
    return true;
  }

  /// The path as the model gives it; below the model's folder unless it starts at a root.
  bool TryPath(std::string_view path) {
    if (path.empty()) return false;
    if (!HasDrive(path)) return Try(folder_ / WithSlashes(path));
    result_.places.emplace_back(path);
    return false;
  }

  bool TryName(std::string_view path) {
    const std::string name(path.substr(path.find_last_of("\\/") + 1));
    if (!ts3d::IsPlainFileName(name)) return false;
    for (const std::string& place : {std::string(), std::string("textures"), std::string("tex"),
                                     std::string("images"), stem_ + ".fbm"}) {
      if (Try(folder_ / place / name)) return true;
    }
    return false;
  }

  TextureSearch Result() && { return std::move(result_); }

 private:
  fs::path folder_;
  std::string stem_;
  TextureSearch result_;
};

}  // namespace

TextureSearch FindTexture(const fs::path& model, std::string_view fileName,
                          std::string_view relativeFileName) {
  Search search(model);
  if (!search.TryPath(fileName) && !search.TryPath(relativeFileName) && !search.TryName(fileName)) {
    search.TryName(relativeFileName);
  }
  return std::move(search).Result();
}

}  // namespace cli

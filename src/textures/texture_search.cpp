// SPDX-License-Identifier: MIT
#include "textures/texture_search.h"

#include <algorithm>

#include "core/names.h"

namespace textures {
namespace fs = std::filesystem;
namespace {

std::string WithSlashes(std::string_view path) {
  std::string text(path);
  std::replace(text.begin(), text.end(), '\\', '/');
  return text;
}

/// "C:/art/skin.png": a place on another system.
bool HasDrive(std::string_view path) { return path.size() > 1 && path[1] == ':'; }

/// "//server/share/skin.png", "file:skin.png", or a folder below which a name is enough to be connected.
bool IsOnNetwork(std::string_view path) {
  for (const char* start : {"//", "/net/", "/afs/", "/Network/", "/\?\?/"}) {
    if (path.starts_with(start)) return true;
  }
  const size_t end = path.find_first_of(":/");
  return end != std::string_view::npos && end > 0 && path[end] == ':' && !HasDrive(path);
}

}  // namespace

TextureFinder::TextureFinder(const fs::path& model)
    : folder_(model.parent_path()), stem_(model.stem().string()) {}

/// The entry of `folder` that is called `name` but for letter case, the first by name; empty when there is
/// none.
fs::path TextureFinder::EntryIgnoringCase(const fs::path& folder, const std::string& name) {
  const auto [entries, isNew] = namesIn_.try_emplace(folder);
  std::map<std::string, std::string>& names = entries->second;
  if (isNew) {
    std::error_code failed;
    for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end;
         entry.increment(failed)) {
      const std::string found = entry->path().filename().string();
      std::string& first = names[ts3d::LowerCase(found)];
      if (first.empty() || found < first) first = found;
    }
  }
  const auto found = names.find(ts3d::LowerCase(name));
  return found == names.end() ? fs::path() : fs::path(found->second);
}

/// What exists under `path` in any letter case; empty when nothing does.
fs::path TextureFinder::AsOnDisk(const fs::path& path) {
  std::error_code failed;
  if (fs::exists(path, failed)) return path;
  // The model's folder is there; what lies below it need not be looked for from the root.
  const auto [known, first] = std::mismatch(folder_.begin(), folder_.end(), path.begin(), path.end());
  const bool isBelow = known == folder_.end();
  fs::path resolved = isBelow ? folder_ : fs::path();
  for (auto part = isBelow ? first : path.begin(); part != path.end(); ++part) {
    fs::path next = resolved / *part;
    if (!fs::exists(next, failed)) {
      const fs::path entry = EntryIgnoringCase(resolved, part->string());
      if (entry.empty()) return {};
      next = resolved / entry;
    }
    resolved = next;
  }
  return resolved;
}

bool TextureFinder::IsOutside(const fs::path& path) const {
  std::error_code failed;
  const fs::path folder = fs::weakly_canonical(folder_, failed), real = fs::weakly_canonical(path, failed);
  return std::mismatch(folder.begin(), folder.end(), real.begin(), real.end()).first != folder.end();
}

bool TextureFinder::Try(const fs::path& place) {
  const std::string name = place.lexically_normal().string();
  if (std::find(search_.places.begin(), search_.places.end(), name) != search_.places.end()) return false;
  search_.places.push_back(name);
  const fs::path path = AsOnDisk(place);
  std::error_code failed;
  if (path.empty() || !fs::is_regular_file(path, failed)) return false;
  search_.found = path;
  return true;
}

/// The path as the model gives it; below the model's folder unless it starts at a root.
bool TextureFinder::TryPath(std::string_view path) {
  if (path.empty()) return false;
  if (HasDrive(path)) {
    search_.places.emplace_back(path);
    return false;
  }
  const std::string asText = WithSlashes(path);
  const fs::path place = folder_ / asText;
  // A model that lies on the network itself may name what is beside it.
  const auto isOnNetwork = [](const fs::path& any) {
    return IsOnNetwork(any.lexically_normal().generic_string());
  };
  if (IsOnNetwork(asText) || (isOnNetwork(place) && !isOnNetwork(folder_))) {
    search_.places.push_back(std::string(path) + " (not opened, as it is on the network)");
    return false;
  }
  return Try(place);
}

bool TextureFinder::TryName(std::string_view path) {
  const std::string name(path.substr(path.find_last_of("\\/") + 1));
  if (!ts3d::IsPlainFileName(name)) return false;
  for (const std::string& place :
       {std::string(), std::string("textures"), std::string("tex"), std::string("images"), stem_ + ".fbm"}) {
    if (Try(folder_ / place / name)) return true;
  }
  return false;
}

TextureSearch TextureFinder::Find(std::string_view fileName, std::string_view relativeFileName) {
  search_ = {};
  if (!TryPath(fileName) && !TryPath(relativeFileName) && !TryName(fileName)) TryName(relativeFileName);
  return std::move(search_);
}

}  // namespace textures

// SPDX-License-Identifier: MIT
#include "textures/texture_search.h"

#include <algorithm>

#include "core/names.h"
#include "platform/files.h"
#include "platform/folders.h"

namespace textures {
namespace fs = platform::fs;
namespace {

std::string WithSlashes(std::string_view path) {
  std::string text(path);
  std::replace(text.begin(), text.end(), '\\', '/');
  return text;
}

/// "C:/art/skin.png": a place on Windows.
bool HasDrive(std::string_view path) { return path.size() > 1 && path[1] == ':'; }

/// The same, where it can be opened: not relative to whatever is current there.
bool IsOnKnownDrive(std::string_view path) {
  constexpr bool kHasDrives = platform::fs::path::preferred_separator == '\\';
  return kHasDrives && HasDrive(path) && path.size() > 2 && (path[2] == '\\' || path[2] == '/');
}

/// "//server/share/skin.png", "file:skin.png", or a folder below which a name is enough to be connected.
bool IsOnNetwork(std::string_view path) {
  for (const char* start : {"//", "/net/", "/afs/", "/Network/", "/\?\?/"}) {
    if (path.starts_with(start)) return true;
  }
  const size_t end = path.find_first_of(":/");
  return end != std::string_view::npos && end > 0 && path[end] == ':' && !HasDrive(path);
}

/// The two names of a share, or of what is connected like one: "//server/share/".
std::string ShareOf(const std::string& path) {
  constexpr size_t kStart = 2;
  const size_t server = std::min(path.find('/', kStart), path.size());
  return ts3d::LowerCase(path.substr(0, std::min(path.find('/', server + 1), path.size())));
}

/// Whether a model in `folder` may not name `place`: whoever opens a share of a server shows it the user's name and,
/// on Windows, what proves it. A model that lies on a share may name what is on the same.
bool IsForeignShare(const std::string& place, const std::string& folder) {
  if (IsOnNetwork(place)) return ShareOf(place) != ShareOf(folder);
  return platform::IsOnNetworkDrive(place) &&
         ts3d::LowerCase(place.substr(0, 1)) != ts3d::LowerCase(folder.substr(0, 1));
}

}  // namespace

TextureFinder::TextureFinder(const fs::path& model, const std::vector<std::string>& folders)
    : folder_(model.parent_path()), stem_(model.stem().string()) {
  for (const std::string& folder : folders) givenFolders_.emplace_back(fs::absolute(folder));
}

/// The names of what lies in `folder`.
const TextureFinder::Names& TextureFinder::NamesIn(const fs::path& folder) {
  constexpr size_t kMostNames = 200'000;
  const auto [entries, isNew] = namesIn_.try_emplace(folder);
  Names& names = entries->second;
  if (!isNew) return names;
  auto listed = platform::ListFolder(folder.string(), kMostNames);
  if (!listed) return names;
  for (platform::FolderEntry& entry : *listed) {
    names.emplace(ts3d::LowerCase(entry.name), std::move(entry.name));
  }
  return names;
}

/// The folders that pictures usually are in, as far as they exist: it would be long to name all that do not.
const std::vector<fs::path>& TextureFinder::UsualFolders() {
  if (!usualFolders_.empty()) return usualFolders_;
  const auto add = [this](const fs::path& parent, const std::vector<std::string>& usual) {
    for (const std::string& wanted : usual) {
      std::vector<fs::path> found;
      const auto [first, end] = NamesIn(parent).equal_range(ts3d::LowerCase(wanted));
      for (auto name = first; name != end; ++name) {
        std::error_code failed;
        if (fs::is_directory(parent / name->second, failed)) found.push_back(parent / name->second);
      }
      std::sort(found.begin(), found.end());
      usualFolders_.insert(usualFolders_.end(), found.begin(), found.end());
    }
  };
  add(folder_, {"textures"});
  // Says where to put a picture when there is no such folder.
  if (usualFolders_.empty()) usualFolders_.push_back(folder_ / "textures");
  add(folder_, {"texture", "tex", "images", "materials", stem_ + ".fbm"});
  if (folder_.has_relative_path()) {
    add(folder_.parent_path(), {"textures", "texture", "images", "materials"});
  }
  return usualFolders_;
}

/// The entry of `folder` that is called `name` but for letter
/// case, the first by name; empty when there is none.
fs::path TextureFinder::EntryIgnoringCase(const fs::path& folder, const std::string& name) {
  const auto [first, end] = NamesIn(folder).equal_range(ts3d::LowerCase(name));
  const auto best =
      std::min_element(first, end, [](const auto& a, const auto& b) { return a.second < b.second; });
  return best == end ? fs::path() : fs::path(best->second);
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
  const fs::path real = fs::weakly_canonical(path, failed);
  const auto isBelow = [&](const fs::path& any) {
    const fs::path folder = fs::weakly_canonical(any, failed);
    return std::mismatch(folder.begin(), folder.end(), real.begin(), real.end()).first == folder.end();
  };
  return !isBelow(folder_) &&
         std::none_of(givenFolders_.begin(), givenFolders_.end(),
                      [&](const PictureIndex& index) { return isBelow(index.Folder()); });
}

/// Notes a place. @return false when it is known: each is looked at and told once
bool TextureFinder::IsNewPlace(std::string place) {
  if (!places_.insert(ts3d::LowerCase(place)).second) return false;
  search_.places.push_back(std::move(place));
  return true;
}

bool TextureFinder::Try(const fs::path& place) {
  if (!IsNewPlace(place.lexically_normal().string())) return false;
  const fs::path path = AsOnDisk(place);
  std::error_code failed;
  if (path.empty() || !fs::is_regular_file(path, failed)) return false;
  search_.found = path;
  return true;
}

/// The path as the model gives it; below the model's folder unless it starts at a root.
bool TextureFinder::TryPath(std::string_view path) {
  if (path.empty()) return false;
  if (HasDrive(path) && !IsOnKnownDrive(path)) {
    IsNewPlace(std::string(path));
    return false;
  }
  const std::string asText = WithSlashes(path);
  const fs::path place = folder_ / asText;
  const std::string folder = folder_.lexically_normal().generic_string();
  if (IsForeignShare(asText, folder) || IsForeignShare(place.lexically_normal().generic_string(), folder)) {
    IsNewPlace(std::string(path) + " (not opened, as it is on the network)");
    return false;
  }
  return Try(place);
}

/// Looks in the folders that were given, for the name at the end of `path` (with slashes).
bool TextureFinder::TryGivenFolders(const std::string& path) {
  for (PictureIndex& index : givenFolders_) {
    search_.found = index.Find(path);
    const std::string what = index.IsComplete() ? " and below" : " and below, not all of which was read";
    IsNewPlace(index.Folder().string() + what);
    if (!search_.found.empty()) return true;
  }
  return false;
}

bool TextureFinder::TryName(std::string_view path) {
  const std::string name(path.substr(path.find_last_of("\\/") + 1));
  if (!ts3d::IsPlainFileName(name)) return false;
  if (TryGivenFolders(WithSlashes(path)) || Try(folder_ / name)) return true;
  for (const fs::path& folder : UsualFolders()) {
    if (Try(folder / name)) return true;
  }
  return false;
}

TextureSearch TextureFinder::Find(std::string_view fileName, std::string_view relativeFileName) {
  search_ = {};
  places_.clear();
  if (!TryPath(fileName) && !TryPath(relativeFileName) && !TryName(fileName)) TryName(relativeFileName);
  return std::move(search_);
}

}  // namespace textures

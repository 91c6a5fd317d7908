// SPDX-License-Identifier: MIT
#include "converter/work_folder.h"

#include <algorithm>
#include <cerrno>
#include <string>

#include "core/names.h"
#include "platform/folders.h"
#include "platform/replacement.h"
#include "platform/unfinished.h"

namespace ts3d {
namespace fs = platform::fs;
namespace {

/// Shows `file` under the path `as`: by a link, or by a copy where the system allows this user no links.
void Show(const fs::path& file, const fs::path& as) {
  std::error_code failed;
  fs::create_symlink(file, as, failed);
  if (failed) fs::create_hard_link(file, as, failed);
  if (failed) fs::copy_file(file, as);
}

/// The converter puts other endings in the place of the last three characters of the model's name, so these
/// have to be its extension.
fs::path NameForConverter(const fs::path& model) {
  constexpr size_t kDotAndThree = 4;
  const std::string extension = model.extension().string();
  if (extension.size() == kDotAndThree) return model;
  return WithExtension(model, EqualsIgnoreCase(extension, ".gltf") ? "glb" : "fbx");
}

std::vector<platform::FolderEntry> ListOrThrow(const fs::path& folder) {
  if (auto entries = platform::ListFolder(folder.string())) return std::move(*entries);
  throw fs::filesystem_error("cannot be read", folder, std::error_code(errno, std::generic_category()));
}

bool IsTga(const fs::path& name) { return EqualsIgnoreCase(name.extension().string(), ".tga"); }

}  // namespace

fs::path WithExtension(const fs::path& path, const char* extension) {
  return path.parent_path() / (path.stem().string() + "." + extension);
}

std::string ConverterPath(const fs::path& path) {
  std::string text = path.string();
  std::replace(text.begin(), text.end(), '/', '\\');
  return text;
}

TemporaryFolder::TemporaryFolder() : path_(platform::MakeUnfinished(platform::MakeTemporaryFolder)) {
  if (path_.empty()) {
    throw fs::filesystem_error("cannot make a temporary folder",
                               std::error_code(errno, std::generic_category()));
  }
}

TemporaryFolder::~TemporaryFolder() {
  // Windows keeps what somebody still reads; the tool tries it again when it ends.
  if (platform::RemoveTree(path_)) platform::ForgetUnfinished(path_);
}

WorkFolder::WorkFolder(const fs::path& model) : WorkFolder(model, model.parent_path(), model.filename()) {}

WorkFolder::WorkFolder(const fs::path& model, const fs::path& pictureFolder, const fs::path& modelName)
    : WorkFolder(pictureFolder, modelName) {
  Show(model, Model());
}

WorkFolder::WorkFolder(const fs::path& pictureFolder, const fs::path& modelName)
    : modelName_(NameForConverter(modelName)) {
  if (pictureFolder.empty()) return;
  for (const platform::FolderEntry& entry : ListOrThrow(pictureFolder)) {
    const fs::path picture = pictureFolder / entry.name;
    // Who opened a pipe or a device of that name would wait, or never come to an end.
    std::error_code unknown;
    if (IsTga(entry.name) && entry.name != modelName_ && fs::is_regular_file(picture, unknown)) {
      Show(picture, folder_.Path() / entry.name);
    }
  }
}

std::vector<std::string> WorkFolder::NewPictures() const {
  std::vector<std::string> names;
  for (platform::FolderEntry& entry : ListOrThrow(folder_.Path())) {
    if (IsTga(entry.name) && entry.kind == platform::FolderEntry::Kind::File) {
      names.push_back(std::move(entry.name));
    }
  }
  return names;
}

void WorkFolder::MoveTo(const fs::path& folder, const fs::path& name) const {
  const fs::path from = folder_.Path() / name;
  if (!fs::exists(from)) return;
  if (platform::MoveIntoPlace(from.string(), (folder / name).string())) return;
  throw fs::filesystem_error("cannot be written", folder / name,
                             std::error_code(errno, std::generic_category()));
}

}  // namespace ts3d

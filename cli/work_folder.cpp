// SPDX-License-Identifier: MIT
#include "work_folder.h"

#include <cerrno>
#include <string>

#include "core/names.h"
#include "platform/replacement.h"

namespace cli {
namespace fs = std::filesystem;
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
  const bool fits = model.extension().string().size() == kDotAndThree;
  return fits ? model.filename() : WithExtension(model.filename(), "fbx");
}

bool IsTga(const fs::path& name) { return ts3d::EqualsIgnoreCase(name.extension().string(), ".tga"); }

}  // namespace

WorkFolder::WorkFolder(const fs::path& model) : modelName_(NameForConverter(model)) {
  Show(model, Model());
  for (const fs::directory_entry& entry : fs::directory_iterator(model.parent_path())) {
    const fs::path name = entry.path().filename();
    // Who opened a pipe or a device of that name would wait, or never come to an end.
    std::error_code unknown;
    if (IsTga(name) && name != modelName_ && entry.is_regular_file(unknown)) {
      Show(entry.path(), folder_.Path() / name);
    }
  }
}

std::vector<std::string> WorkFolder::NewPictures() const {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder_.Path())) {
    if (IsTga(entry.path()) && fs::is_regular_file(entry.symlink_status())) {
      names.push_back(entry.path().filename().string());
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

}  // namespace cli

// SPDX-License-Identifier: MIT
#include "work_folder.h"

#include <string>

#include "core/names.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

bool IsTga(const fs::path& name) { return ts3d::EqualsIgnoreCase(name.extension().string(), ".tga"); }

}  // namespace

WorkFolder::WorkFolder(const fs::path& model) : modelName_(model.filename()) {
  fs::create_symlink(model, Model());
  for (const fs::directory_entry& entry : fs::directory_iterator(model.parent_path())) {
    const fs::path name = entry.path().filename();
    if (IsTga(name) && name != modelName_) {
      fs::create_symlink(entry.path(), folder_.Path() / name);
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
  std::error_code failed;
  fs::rename(from, folder / name, failed);
  if (!failed) return;
  // Another file system: copy beside the target, then put it into its place in one step.
  const fs::path unfinished = folder / (name.string() + ".part");
  try {
    fs::copy_file(from, unfinished, fs::copy_options::overwrite_existing);
    fs::rename(unfinished, folder / name);
  } catch (...) {
    fs::remove(unfinished, failed);
    throw;
  }
}

}  // namespace cli

// SPDX-License-Identifier: MIT
#include "work_folder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace cli {
namespace fs = std::filesystem;
namespace {

fs::path MakeTemporaryFolder() {
  std::string pattern = (fs::temp_directory_path() / "fbx2czp-XXXXXX").string();
  if (!mkdtemp(pattern.data())) {
    throw fs::filesystem_error("cannot make a temporary folder", pattern,
                               std::error_code(errno, std::generic_category()));
  }
  return pattern;
}

bool IsTga(const fs::path& file) {
  std::string extension = file.extension().string();
  for (char& c : extension) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  return extension == ".tga";
}

}  // namespace

WorkFolder::WorkFolder(const fs::path& model) : path_(MakeTemporaryFolder()), modelName_(model.filename()) {
  try {
    fs::create_symlink(model, Model());
    for (const fs::directory_entry& entry : fs::directory_iterator(model.parent_path())) {
      if (IsTga(entry.path())) fs::create_symlink(entry.path(), path_ / entry.path().filename());
    }
  } catch (...) {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
    throw;
  }
}

WorkFolder::~WorkFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

void WorkFolder::MoveTo(const fs::path& folder, const fs::path& name) const {
  const fs::path from = path_ / name;
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

// SPDX-License-Identifier: MIT
#include "replace_files.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

#include "core/work_file.h"
#include "platform/files.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

/// Removes its files when it goes.
struct Unfinished {
  ~Unfinished() {
    std::error_code ignored;
    for (const fs::path& path : paths) fs::remove(path, ignored);
  }
  std::vector<fs::path> paths;
};

[[noreturn]] void Fail(const std::string& name) {
  throw std::runtime_error("\"" + name + "\" cannot be written: " + std::strerror(errno));
}

}  // namespace

void ReplaceFiles(const fs::path& folder, const std::vector<actor::ExportedFile>& files) {
  Unfinished unfinished;
  std::error_code unknown;
  for (const actor::ExportedFile& file : files) {
    if (!fs::is_directory(folder / file.name, unknown)) continue;
    errno = EISDIR;
    Fail(file.name);
  }
  for (const actor::ExportedFile& file : files) {
    const fs::path path = folder / (file.name + ".part");
    std::error_code ignored;
    // What is left of an earlier run goes; then "x" makes sure that nothing is written through a link.
    fs::remove(path, ignored);
    platform::FilePtr stream = platform::OpenFile(path.string(), "wbx");
    if (!stream) Fail(file.name);
    unfinished.paths.push_back(path);
    if (!ts3d::WriteAndClose(std::move(stream), file.bytes)) Fail(file.name);
  }
  for (size_t i = 0; i < files.size(); ++i) {
    const fs::path path = folder / files[i].name;
    const bool isNew = fs::symlink_status(path, unknown).type() == fs::file_type::not_found;
    if (!platform::RenameFile(unfinished.paths[i].string(), path.string())) Fail(files[i].name);
    // A part of the files is of no use: until the last is in its place the new ones go together. A name that
    // was taken before never ends up without a file.
    unfinished.paths[i] = isNew ? path : fs::path();
  }
  unfinished.paths.clear();
}

}  // namespace cli

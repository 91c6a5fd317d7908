// SPDX-License-Identifier: MIT
#include "host/replace_files.h"

#include <cerrno>
#include <cstring>
#include <list>
#include <stdexcept>
#include <string>

#include "core/work_files.h"
#include "platform/replacement.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace fs = platform::fs;
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
  throw Failure(kNotWritten, WhyNotWritten("\"" + name + "\"", errno));
}

}  // namespace

std::string WhyNotWritten(const std::string& name, int error) {
  return platform::IsDiskFull(error) ? "the disk is full: " + name + " cannot be written"
                                     : name + " cannot be written: " + std::strerror(error);
}

void ReplaceFiles(const fs::path& folder, const std::vector<actor::ExportedFile>& files) {
  std::error_code unknown;
  for (const actor::ExportedFile& file : files) {
    if (!fs::is_directory(folder / file.name, unknown)) continue;
    errno = EISDIR;
    Fail(file.name);
  }
  std::list<platform::Replacement> written;
  for (const actor::ExportedFile& file : files) {
    platform::FilePtr stream = written.emplace_back((folder / file.name).string()).Create("wb");
    if (!stream || !ts3d::WriteAndClose(std::move(stream), file.bytes)) Fail(file.name);
  }
  // A part of the files is of no use: until the last is in its place the new ones go together. A name that
  // was taken before never ends up without a file.
  Unfinished unfinished;
  auto next = written.begin();
  for (const actor::ExportedFile& file : files) {
    const bool isNew = fs::symlink_status(next->Target(), unknown).type() == fs::file_type::not_found;
    if (!next->TakePlace()) Fail(file.name);
    if (isNew) unfinished.paths.emplace_back(next->Target());
    ++next;
  }
  unfinished.paths.clear();
}

}  // namespace cli

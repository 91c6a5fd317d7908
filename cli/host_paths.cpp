// SPDX-License-Identifier: MIT
#include "host_paths.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "platform/files.h"

namespace cli {
namespace fs = std::filesystem;

bool HasBackslashInName(const fs::path& path) {
  return fs::path::preferred_separator != '\\' && path.string().find('\\') != std::string::npos;
}

std::string ConverterPath(const fs::path& path) {
  std::string text = path.string();
  std::replace(text.begin(), text.end(), '/', '\\');
  return text;
}

std::string JoinList(const std::vector<std::string>& entries) {
  std::string list;
  for (const std::string& entry : entries) list += (list.empty() ? "" : "|") + entry;
  return list;
}

fs::path WithExtension(const fs::path& path, const char* extension) {
  return path.parent_path() / (path.stem().string() + "." + extension);
}

TemporaryFolder::TemporaryFolder() : path_(platform::MakeTemporaryFolder()) {
  if (path_.empty()) {
    throw fs::filesystem_error("cannot make a temporary folder",
                               std::error_code(errno, std::generic_category()));
  }
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

}  // namespace cli

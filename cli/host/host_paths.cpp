// SPDX-License-Identifier: MIT
#include "host/host_paths.h"

#include "core/names.h"

namespace cli {
namespace fs = platform::fs;

bool HasExtension(const fs::path& path, const char* extension) {
  return ts3d::HasExtension(path.filename().string(), extension);
}

bool HasBackslashInName(const fs::path& path) {
  return fs::path::preferred_separator != '\\' && path.string().find('\\') != std::string::npos;
}

bool IgnoresCase(const fs::path& path) {
  std::string other = path.filename().string();
  for (char& c : other) {
    if (c >= 'a' && c <= 'z') {
      c = static_cast<char>(c - 'a' + 'A');
    } else if (c >= 'A' && c <= 'Z') {
      c = static_cast<char>(c - 'A' + 'a');
    }
  }
  std::error_code failed;
  return other != path.filename().string() && fs::equivalent(path, path.parent_path() / other, failed);
}

std::string JoinList(const std::vector<std::string>& entries) {
  std::string list;
  for (const std::string& entry : entries) list += (list.empty() ? "" : "|") + entry;
  return list;
}

}  // namespace cli

// SPDX-License-Identifier: MIT
#include "host/host_paths.h"

namespace cli {
namespace fs = std::filesystem;

bool HasBackslashInName(const fs::path& path) {
  return fs::path::preferred_separator != '\\' && path.string().find('\\') != std::string::npos;
}

std::string JoinList(const std::vector<std::string>& entries) {
  std::string list;
  for (const std::string& entry : entries) list += (list.empty() ? "" : "|") + entry;
  return list;
}

}  // namespace cli

// SPDX-License-Identifier: MIT
#include "core/names.h"

namespace ts3d {
std::string SanitizeMeshName(std::string_view name) {
  std::string clean(name);
  for (const char unwanted : {':', '?', '!', '@', '*', '\\', '/', '|'}) {
    const size_t at = clean.find(unwanted);
    if (at == std::string::npos) continue;
    // The character before the unwanted one goes too: mesh file names depend on it ("Arm:Left" -> "ArLeft").
    const size_t first = at == 0 ? 0 : at - 1;
    clean.erase(first, at + 1 - first);
  }
  return clean;
}

std::string LetterSuffix(int n) {
  if (n <= 25) return std::string(1, static_cast<char>('a' + n));
  const int k = (n - 26) / 26 + 1;
  const int r = n - 26 * k;
  return {static_cast<char>(96 + k), static_cast<char>('a' + r)};
}

std::string SliceName(const std::string& meshName, int number) {
  return number == 0 ? meshName : meshName + "_" + LetterSuffix(number - 1);
}

std::string DirectoryPart(std::string_view path) {
  const size_t separator = path.rfind('\\');
  return std::string(separator == std::string_view::npos ? path : path.substr(0, separator + 1));
}

std::string FileNamePart(std::string_view path) {
  const size_t separator = path.rfind('\\');
  return std::string(separator == std::string_view::npos ? path : path.substr(separator + 1));
}

std::string ReplaceExtension(std::string_view path, std::string_view extension) {
  std::string replaced(path.substr(0, path.size() < 3 ? 0 : path.size() - 3));
  return replaced.append(extension);
}

bool HasRoomForExtension(std::string_view path) {
  const size_t separator = path.find_last_of("\\/");
  return separator == std::string_view::npos || path.size() - separator > 3;
}

std::vector<std::string_view> SplitList(std::string_view list) {
  std::vector<std::string_view> entries;
  if (list.empty()) return entries;
  for (;;) {
    const size_t end = list.find('|');
    entries.push_back(list.substr(0, end));
    if (end == std::string_view::npos) return entries;
    list.remove_prefix(end + 1);
  }
}

bool SplitEntry(std::string_view entry, std::string_view& key, std::string_view& value) {
  const size_t equals = entry.find('=');
  if (equals == std::string_view::npos) return false;
  key = entry.substr(0, equals);
  value = entry.substr(equals + 1);
  return true;
}

}  // namespace ts3d

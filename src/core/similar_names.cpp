// SPDX-License-Identifier: MIT
#include "core/similar_names.h"

#include <algorithm>
#include <numeric>
#include <set>

#include "core/names.h"

namespace ts3d {

size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i + 1;
    for (size_t k = 0; k < b.size(); ++k) {
      const size_t exchanged = diagonal + (a[i] != b[k]);
      diagonal = row[k + 1];
      row[k + 1] = std::min({exchanged, row[k] + 1, row[k + 1] + 1});
    }
  }
  return row[b.size()];
}

std::vector<std::string> NearestNames(std::string_view name, const std::vector<std::string>& existing,
                                      size_t most) {
  constexpr size_t kMostNames = 2000, kLongestName = 64;
  const std::string wanted = LowerCase(name.substr(0, kLongestName));
  std::set<std::pair<size_t, std::string>> byDistance;
  for (size_t i = 0; i < std::min(existing.size(), kMostNames); ++i) {
    if (existing[i].size() > kLongestName) continue;
    byDistance.emplace(EditDistance(wanted, LowerCase(existing[i])), existing[i]);
  }
  std::vector<std::string> nearest;
  for (const auto& [distance, candidate] : byDistance) {
    if (nearest.size() == most) break;
    nearest.push_back(candidate);
  }
  return nearest;
}

std::string QuotedNames(const std::vector<std::string>& names) {
  if (names.empty()) return "none";
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "\"" : ", \"") + name + "\"";
  return text;
}

}  // namespace ts3d

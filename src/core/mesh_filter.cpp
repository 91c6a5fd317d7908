// SPDX-License-Identifier: MIT
#include "core/mesh_filter.h"

#include <algorithm>

#include "core/names.h"
#include "core/trace.h"

namespace ts3d {
namespace {

/// `name` is `keyword`, or `keyword` and one more character.
bool MatchesKeyword(std::string_view name, std::string_view keyword) {
  return name.size() < keyword.size() + 2 && EqualsIgnoreCase(name.substr(0, keyword.size()), keyword);
}

bool IsHeadPart(std::string_view name) {
  static constexpr std::string_view kKeywords[] = {"head",     "upper_teeth", "lower_teeth", "tongue",
                                                   "left_eye", "right_eye",   "inner_mouth", "mouth",
                                                   "socket",   "sock"};
  return EqualsIgnoreCase(name, "head_ncl1_1") ||
         std::any_of(std::begin(kKeywords), std::end(kKeywords),
                     [&](std::string_view keyword) { return MatchesKeyword(name, keyword); });
}

}  // namespace

bool IsExcluded(std::string_view name, const MeshFilter& filter) {
  const auto& excluded = filter.exclusionList;
  return std::any_of(excluded.begin(), excluded.end(),
                     [&](const std::string& entry) { return EqualsIgnoreCase(name, entry); });
}

bool skipThisMesh(std::string_view name, const MeshFilter& filter) {
  const bool skip = IsExcluded(name, filter) || (filter.actorType != ActorType::None && IsHeadPart(name));
  DebugTrace(ComposeMessage("skipThisMesh '", name, "' returns ", skip ? "true" : "false"));
  return skip;
}

}  // namespace ts3d

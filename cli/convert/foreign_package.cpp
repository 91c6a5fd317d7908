// SPDX-License-Identifier: MIT
#include "convert/foreign_package.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "config/actor_config.h"
#include "driver/converted_document.h"
#include "package/read_member.h"

namespace cli {
namespace fs = platform::fs;
namespace {

constexpr std::array<std::string_view, 5> kOurEndings = {".tga", ".csf", ".xfg", ".cmf", ".xrf"};

bool IsOurs(const ts3d::MemberSize& member) {
  return std::any_of(kOurEndings.begin(), kOurEndings.end(),
                     [&](std::string_view ending) { return member.name.ends_with(ending); });
}

}  // namespace

std::string WhyForeign(const fs::path& package) {
  std::error_code unknown;
  if (!fs::is_regular_file(package, unknown)) return {};
  const std::vector<ts3d::MemberSize> members = ts3d::ListMembers(package.string());
  if (members.empty()) return "it is not a package";
  for (const ts3d::MemberSize& member : members) {
    if (!IsOurs(member)) return "it holds \"" + member.name + "\"";
  }
  const std::optional<ts3d::PackageMember> document = ts3d::ReadLastMember(package.string(), ".xfg");
  if (!document) return "it has no document";
  return ts3d::WithLineFeeds(document->bytes).starts_with(ts3d::DocumentHead()) ? ""
                                                                                : "its document is another's";
}

}  // namespace cli

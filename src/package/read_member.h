// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ts3d {

class JsonWriter;

/// One file of a package, unpacked.
struct PackageMember {
  std::string name;
  std::string bytes;
};

/// The last member of the package `path` whose name ends in `ending`; none when there is no sound one of at
/// most 64 MB.
std::optional<PackageMember> ReadLastMember(const std::string& path, std::string_view ending);

/// What the members of the package called `name` hold, in order; those that are not sound, or would exceed 64
/// MB together, are left out.
std::vector<std::string> ReadMembers(const std::string& path, std::string_view name);

/// A member's name and unpacked size.
struct MemberSize {
  std::string name;
  uint64_t bytes = 0;
};

/// The member "members" of a report.
void WriteMembers(JsonWriter& json, const std::vector<MemberSize>& members);

/// All members of the package `path`, in order, as far as they can be told.
std::vector<MemberSize> ListMembers(const std::string& path);

}  // namespace ts3d

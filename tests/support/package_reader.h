// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Readers of what the converter writes, independent of its writers. Each throws std::runtime_error on
/// anything that the format does not allow, bytes left over included.
namespace support {

using Floats3 = std::array<float, 3>;
using Floats4 = std::array<float, 4>;

struct CsfBone {
  std::string name;
  Floats3 translation{};
  Floats4 rotation{};
  Floats3 spaceTranslation{};
  Floats4 spaceRotation{};
  int32_t parent = 0;
  std::vector<int32_t> children;
};

/// The bones of a skeleton file, in file order.
std::vector<CsfBone> ReadCsf(std::string_view bytes);

struct CmfVertex {
  Floats3 position{};
  Floats3 normal{};
  float u = 0, v = 0;
  std::vector<std::pair<int32_t, float>> influences;
};

struct CmfMesh {
  int32_t threadId = 0;
  std::vector<CmfVertex> vertices;
  std::vector<std::array<int32_t, 3>> faces;
};

CmfMesh ReadCmf(std::string_view bytes);

struct Member {
  std::string name, bytes;
  bool operator==(const Member&) const = default;
};

/// The members of a package, in their order.
class Package {
 public:
  /// Reads the whole archive; every member has to be deflated, plain and sound.
  explicit Package(const std::string& path);

  /// Names of the members, separated by blanks.
  std::string Names() const;
  size_t Count(std::string_view name) const;
  /// The last member `name`; throws when there is none.
  const std::string& operator[](std::string_view name) const;
  const std::vector<Member>& Members() const { return members_; }

 private:
  std::vector<Member> members_;
};

/// Expects what holds for every package, whatever was
/// converted: meshes and skeleton are sound and fit each other.
void CheckPackage(const Package& package);

}  // namespace support

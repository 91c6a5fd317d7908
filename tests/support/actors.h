// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "actor/actor.h"
#include "preview/texture.h"

namespace support {

/// A bone that was bound at `origin`, unturned.
inline actor::Bone BoneAt(std::string name, const actor::Vector3& origin, int32_t parent = -1) {
  actor::Bone bone;
  bone.name = std::move(name);
  bone.boneSpaceTranslation = {-origin[0], -origin[1], -origin[2]};
  bone.boneSpaceRotation = {0, 0, 0, -1};
  bone.parent = parent;
  return bone;
}

/// A mesh of one square from (0, 0, z) to (1, 1, z), facing +Z, with the whole picture on it.
inline actor::Mesh Square(std::string name, float z = 0.0f) {
  actor::Mesh mesh;
  mesh.name = std::move(name);
  for (const auto& [x, y] : {std::pair(0.0f, 0.0f), {1.0f, 0.0f}, {1.0f, 1.0f}, {0.0f, 1.0f}})
    mesh.vertices.push_back({{x, y, z}, {0, 0, 1}, {x, 1.0f - y}, 0, 0});
  mesh.faces = {{0, 1, 2}, {0, 2, 3}};
  return mesh;
}

inline actor::Material Plain(std::string name, const std::array<int32_t, 4>& diffuse) {
  actor::Material material;
  material.name = std::move(name);
  material.diffuse = diffuse;
  return material;
}

/// An actor with everything in it that a damaged file could bring.
inline actor::Actor HostileActor() {
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  constexpr float kInfinite = std::numeric_limits<float>::infinity();
  actor::Actor hostile;
  hostile.skeleton.bones = {BoneAt("head", {kNan, 0, kInfinite}, 1), BoneAt("foot", {3e38f, -3e38f, 0}, -7),
                            BoneAt("</script>\xff", {0, 1, 0}, 2), BoneAt("L_toe", {0, 1, 0}, 1000)};
  hostile.skeleton.bones[1].boneSpaceRotation = {0, 0, 0, 0};
  hostile.skeleton.bones[3].boneSpaceRotation = {kNan, 1e30f, 0, 1};
  actor::Mesh mesh = Square("</script>");
  mesh.vertices.push_back({{kNan, kInfinite, 0}, {kNan, 0, 0}, {kNan, kInfinite}, 0xfffffff0u, 0xffffffffu});
  mesh.vertices.push_back({{3e38f, -3e38f, 3e38f}, {}, {3e38f, -3e38f}, 0, 3});
  mesh.influences = {{-1, 1}, {4, 1}, {2, kNan}, {0, 1}};
  for (const auto& face : {std::array<int32_t, 3>{0, 1, 4}, {-1, 0, 1}, {0, 1, 6}, {0, 1, 5}, {2, 2, 2}})
    mesh.faces.push_back(face);
  hostile.meshes = {mesh, actor::Mesh()};
  actor::Material material = Plain("</script>", {-5, 1 << 30, 300, 0});
  material.hasMap = true;
  material.map = "picture";
  hostile.materials = {material};
  hostile.pictures = {{"picture", ""}};
  return hostile;
}

/// A picture of four fields: red, green, blue and white from the upper left, the last invisible.
inline std::optional<preview::Pixels> FourFields(const actor::Picture&) {
  constexpr int kSize = 32;
  const std::array<uint8_t, 4> fields[] = {
      {255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 255, 0}};
  preview::Pixels pixels{kSize, kSize, ts3d::PixelBytes(kSize * kSize * 4)};
  for (int y = 0; y < kSize; ++y) {
    for (int x = 0; x < kSize; ++x) {
      const auto& field = fields[(y < kSize / 2 ? 0 : 2) + (x < kSize / 2 ? 0 : 1)];
      std::copy(field.begin(), field.end(), &pixels.rgba[static_cast<size_t>(y * kSize + x) * 4]);
    }
  }
  return pixels;
}

}  // namespace support

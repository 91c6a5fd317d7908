// SPDX-License-Identifier: MIT
#include "inspect/compare_packages.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "actor/picture_header.h"
#include "core/names.h"
#include "inspect/actor_measure.h"
#include "inspect/common_size.h"
#include "platform/file_system.h"

namespace actor {
namespace {

double Distance(const Vector3& a, const Vector3& b) {
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

/// Degrees between two rotations.
double Angle(const Quaternion& a, const Quaternion& b) {
  double same = 0, opposite = 0;
  for (size_t i = 0; i < 4; ++i) {
    same += std::pow(a[i] - b[i], 2);
    opposite += std::pow(a[i] + b[i], 2);
  }
  // A rotation and its negative are one.
  constexpr double kDegrees = 57.29577951308232;
  return 4 * std::asin(std::min(1.0, std::sqrt(std::min(same, opposite)) / 2)) * kDegrees;
}

double SizeOf(const Actor& actor) {
  Box box;
  for (const Mesh& mesh : actor.meshes) {
    for (const Vertex& vertex : mesh.vertices) box.Add(base::ToVector(vertex.position));
  }
  for (const Bone& bone : actor.skeleton.bones) box.Add(base::ToVector(bone.translation));
  return box.Diagonal();
}

std::string ParentOf(const Skeleton& skeleton, const Bone& bone) {
  return bone.parent < 0 ? "nothing" : "\"" + skeleton.bones[static_cast<size_t>(bone.parent)].name + "\"";
}

void CompareBones(const Actor& before, const Actor& after, Differences& differences) {
  const double leastMove = 1e-5 * SizeOf(before);
  constexpr double kLeastTurn = 0.01;
  const auto compare = [&](const Bone& a, const Bone& b) {
    const auto tell = [&](const char* code, std::string text) {
      differences.push_back({Part::Bone, code, a.name, std::move(text)});
    };
    const std::string old = ParentOf(before.skeleton, a), now = ParentOf(after.skeleton, b);
    if (old != now) return tell("bone-parent", "hangs on " + now + " instead of " + old);
    const double move = Distance(a.translation, b.translation), turn = Angle(a.rotation, b.rotation);
    if (move > leastMove) tell("bone-moved", "rests " + ShortText(move) + " from where it was");
    if (turn > kLeastTurn) tell("bone-turned", "rests turned by " + ShortText(turn) + " degrees");
    if (Distance(a.boneSpaceTranslation, b.boneSpaceTranslation) > leastMove ||
        Angle(a.boneSpaceRotation, b.boneSpaceRotation) > kLeastTurn)
      tell("bone-bound", "was bound elsewhere");
  };
  MatchByName(Part::Bone, "bone", before.skeleton.bones, after.skeleton.bones, differences, compare);
}

std::string ColourText(const std::array<int32_t, 4>& colour) {
  std::string text;
  for (const int32_t part : colour) text += (text.empty() ? "" : " ") + std::to_string(part);
  return text;
}

std::string PictureText(const Material& material) {
  return material.hasMap && !material.map.empty() ? "\"" + material.map + "\"" : "none";
}

void CompareMaterials(const Actor& before, const Actor& after, Differences& differences) {
  const auto compare = [&](const Material& a, const Material& b) {
    const auto tell = [&](const char* code, const char* what, const std::string& old,
                          const std::string& now) {
      if (old != now) differences.push_back({Part::Material, code, a.name, Changed(what, old, now)});
    };
    tell("material-colour", "ambient", ColourText(a.ambient), ColourText(b.ambient));
    tell("material-colour", "diffuse", ColourText(a.diffuse), ColourText(b.diffuse));
    tell("material-colour", "specular", ColourText(a.specular), ColourText(b.specular));
    tell("material-shininess", "shininess", ShortText(a.shininess), ShortText(b.shininess));
    tell("material-picture", "picture", PictureText(a), PictureText(b));
  };
  MatchByName(Part::Material, "material", before.materials, after.materials, differences, compare);
}

std::string SizeText(const Picture& picture) {
  PictureHeader header;
  if (ReadPictureHeader(picture.bytes, header)) return "unknown size";
  return std::to_string(header.width) + " x " + std::to_string(header.height) + " pixels";
}

/// What a picture shows, as far as its file is not packed; the rest of a file may tell who wrote it.
std::string_view PixelsOf(const std::string& bytes) {
  PictureHeader header;
  constexpr size_t kHeader = 18, kPalette = 1, kType = 2;
  constexpr char kTrueColour = 2;
  if (ReadPictureHeader(bytes, header) || bytes[kPalette] != 0 || bytes[kType] != kTrueColour) return bytes;
  const auto name = static_cast<unsigned char>(bytes[0]);
  const uint64_t size = static_cast<uint64_t>(header.width) * static_cast<uint64_t>(header.height) *
                        static_cast<uint64_t>((header.bits + 7) / 8);
  return std::string_view(bytes).substr(kHeader + name, static_cast<size_t>(size));
}

/// Whether rows and columns run the same way.
bool HaveSameOrder(const Picture& a, const Picture& b) {
  constexpr size_t kOrder = 17;
  return a.bytes.size() > kOrder && b.bytes.size() > kOrder && a.bytes[kOrder] == b.bytes[kOrder];
}

void ComparePictures(const Actor& before, const Actor& after, Differences& differences) {
  const auto compare = [&](const Picture& a, const Picture& b) {
    if (a.bytes == b.bytes) return;
    const std::string old = SizeText(a), now = SizeText(b);
    if (old != now) {
      differences.push_back({Part::Picture, "picture-size", a.name, old + " -> " + now});
    } else if (PixelsOf(a.bytes) != PixelsOf(b.bytes) || !HaveSameOrder(a, b)) {
      differences.push_back({Part::Picture, "picture-pixels", a.name, "shows something else"});
    }
  };
  MatchByName(Part::Picture, "picture", before.pictures, after.pictures, differences, compare);
}

/// Files that are no part of an actor.
std::vector<Member> OtherFiles(const PackageContents& contents) {
  std::vector<Member> others;
  for (const Member& member : contents.members) {
    const std::string ending = ts3d::LowerCase(platform::fs::path(member.name).extension().string());
    const bool isPart =
        ending == ".csf" || ending == ".cmf" || ending == ".xrf" || ending == ".tga" || ending == ".xfg";
    if (!isPart && !member.superseded) others.push_back(member);
  }
  return others;
}

void CompareOtherFiles(const PackageContents& before, const PackageContents& after,
                       Differences& differences) {
  MatchByName(Part::File, "file", OtherFiles(before), OtherFiles(after), differences,
              [&](const Member& a, const Member& b) {
                if (a.bytes != b.bytes)
                  differences.push_back({Part::File, "file-changed", a.name, "holds something else"});
              });
}

Differences CompareSkeletonAndMeshes(const Actor& before, const Actor& after) {
  Differences differences;
  CompareBones(before, after, differences);
  CompareMeshes(before, after, differences);
  return differences;
}

/// At one size where less is different then, as of one model in two units.
Differences CompareShapes(const Actor& before, const Actor& after) {
  Differences differences = CompareSkeletonAndMeshes(before, after);
  const double growth = GrowthBetween(before, after);
  constexpr double kLeastGrowth = 1e-3;
  if (differences.empty() || std::abs(growth - 1) < kLeastGrowth) return differences;
  Differences others = CompareSkeletonAndMeshes(Enlarged(before, growth), after);
  if (others.size() >= differences.size()) return differences;
  others.push_back({Part::Mesh, "mesh-size", "all meshes",
                    ShortText(growth) + " times as large, with the bones; the rest is compared at one size"});
  return others;
}

}  // namespace

std::string Changed(const std::string& what, const std::string& before, const std::string& after) {
  return what + " " + before + " -> " + after;
}

std::string ShortText(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.4g", number);
  return text;
}

Differences ComparePackages(const ReadPackageParts& before, const ReadPackageParts& after) {
  Differences differences = CompareShapes(before.actor, after.actor);
  CompareMaterials(before.actor, after.actor, differences);
  ComparePictures(before.actor, after.actor, differences);
  CompareDocuments(before, after, differences);
  CompareOtherFiles(before.contents, after.contents, differences);
  return differences;
}

}  // namespace actor

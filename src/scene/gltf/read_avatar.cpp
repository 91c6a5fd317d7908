// SPDX-License-Identifier: MIT
#include "scene/gltf/read_avatar.h"

#include "scene/gltf/json_value.h"

namespace scene::gltf {
namespace {

/// The parts that say something, as "a; b; c".
std::string JoinParts(const std::vector<std::string>& parts) {
  constexpr size_t kLongest = 300;
  std::string line;
  for (const std::string& part : parts) {
    if (part.empty()) continue;
    line += (line.empty() ? "" : "; ") + part.substr(0, kLongest);
  }
  return line;
}

std::string Labelled(const char* label, const std::string& text) {
  return text.empty() ? text : label + (": " + text);
}

std::string FirstOf(JsonValue texts) { return texts.size() > 0 ? texts.At(0).Name() : std::string(); }

/// Version 0.x calls the three bones of a thumb like those of other fingers.
std::string InVersionOne(const std::string& bone) {
  for (const char* side : {"left", "right"}) {
    if (bone == side + std::string("ThumbProximal")) return side + std::string("ThumbMetacarpal");
    if (bone == side + std::string("ThumbIntermediate")) return side + std::string("ThumbProximal");
  }
  return bone;
}

/// Version 0.x lists its bones, and 1.0 has a member for each.
void ReadHumanoid(JsonValue bones, size_t nodeCount, Avatar& avatar) {
  for (size_t i = 0; i < bones.size(); ++i) {
    const uint32_t node = bones.At(i)["node"].Index(nodeCount, "node");
    if (node != kNone) avatar.humanoid.emplace_back(InVersionOne(bones.At(i)["bone"].Name()), node);
  }
  bones.ForEachMember([&](const std::string& name, JsonValue bone) {
    const uint32_t node = bone["node"].Index(nodeCount, "node");
    if (node != kNone) avatar.humanoid.emplace_back(name, node);
  });
}

}  // namespace

Avatar ReadAvatar(JsonValue extensions, size_t nodeCount) {
  const JsonValue first = extensions["VRM"], second = extensions["VRMC_vrm"];
  Avatar avatar;
  ReadHumanoid((second ? second : first)["humanoid"]["humanBones"], nodeCount, avatar);
  if (second) {
    const JsonValue meta = second["meta"];
    avatar.licence = JoinParts({meta["name"].Name(), Labelled("by", FirstOf(meta["authors"])),
                                meta["licenseUrl"].Name(), meta["copyrightInformation"].Name(),
                                Labelled("commercial use", meta["commercialUsage"].Name())});
  } else if (first) {
    const JsonValue meta = first["meta"];
    avatar.facesBack = true;
    avatar.licence = JoinParts({meta["title"].Name(), Labelled("by", meta["author"].Name()),
                                meta["licenseName"].Name(), meta["otherLicenseUrl"].Name(),
                                Labelled("commercial use", meta["commercialUssageName"].Name())});
  }
  return avatar;
}

}  // namespace scene::gltf

// SPDX-License-Identifier: MIT
#include "scene/gltf/read_meshes.h"

#include <algorithm>

#include "scene/gltf/extensions.h"
#include "scene/gltf/json_value.h"

namespace scene::gltf {
namespace {

/// Whether packages have something of an attribute.
bool IsRead(std::string_view attribute) {
  const auto isOf = [&](std::string_view set) { return attribute.starts_with(set); };
  return attribute == "POSITION" || attribute == "NORMAL" || isOf("TEXCOORD_") || isOf("JOINTS_") ||
         isOf("WEIGHTS_");
}

/// The attributes NAME_0, NAME_1, ... as long as they go on.
std::vector<uint32_t> ReadSets(JsonValue attributes, const std::string& name, size_t accessorCount) {
  constexpr int kMostSets = 64;
  std::vector<uint32_t> sets;
  for (int i = 0; i < kMostSets; ++i) {
    const JsonValue set = attributes[name + std::to_string(i)];
    if (!set) break;
    sets.push_back(set.Index(accessorCount, "accessor"));
  }
  return sets;
}

class MeshReader {
 public:
  MeshReader(const Document& document, bool needsCompression)
      : document_(document), needsCompression_(needsCompression) {}

  Mesh Read(JsonValue mesh) const {
    return {mesh["name"].Name(),
            ReadList<Primitive>(mesh["primitives"],
                                [&](JsonValue primitive) { return ReadPrimitive(primitive); }),
            mesh["weights"].Numbers(),
            ReadList<std::string>(mesh["extras"]["targetNames"], [](JsonValue name) { return name.Name(); })};
  }

 private:
  Primitive ReadPrimitive(JsonValue primitive) const {
    const JsonValue attributes = primitive["attributes"];
    const size_t accessors = document_.accessors.size();
    Primitive result;
    result.mode = static_cast<uint32_t>(std::min<uint64_t>(primitive["mode"].Count(4), kNone));
    result.indices = primitive["indices"].Index(accessors, "accessor");
    result.position = attributes["POSITION"].Index(accessors, "accessor");
    result.normal = attributes["NORMAL"].Index(accessors, "accessor");
    result.material = primitive["material"].Index(document_.materials.size(), "material");
    result.joints = ReadSets(attributes, "JOINTS_", accessors);
    result.weights = ReadSets(attributes, "WEIGHTS_", accessors);
    result.coordinates = ReadSets(attributes, "TEXCOORD_", accessors);
    result.targets = ReadList<uint32_t>(primitive["targets"], [&](JsonValue target) {
      return target["POSITION"].Index(accessors, "accessor");
    });
    if (const JsonValue packed = primitive["extensions"][kMeshCompression])
      result.packed = ReadPacked(packed, attributes);
    return result;
  }

  PackedPrimitive ReadPacked(JsonValue packed, JsonValue attributes) const {
    PackedPrimitive result{
        packed["bufferView"].Index(document_.views.size(), "buffer view"), {}, !needsCompression_};
    if (result.view == kNone) throw Fault("a compressed mesh has no data");
    packed["attributes"].ForEachMember([&](const std::string& name, JsonValue id) {
      const uint32_t accessor = attributes[name].Index(document_.accessors.size(), "accessor");
      const auto number = static_cast<uint32_t>(std::min<uint64_t>(id.Count(), kNone));
      if (accessor != kNone && IsRead(name)) result.attributes.emplace_back(accessor, number);
    });
    return result;
  }

  const Document& document_;
  const bool needsCompression_;  ///< what is compressed is not there without compression
};

}  // namespace

std::vector<Mesh> ReadMeshes(JsonValue root, const Document& document) {
  const MeshReader reader(document, RequiresExtension(root, kMeshCompression));
  return ReadList<Mesh>(root["meshes"], [&](JsonValue mesh) { return reader.Read(mesh); });
}

}  // namespace scene::gltf

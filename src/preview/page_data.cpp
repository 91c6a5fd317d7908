// SPDX-License-Identifier: MIT
#include "preview/page_data.h"

#include <map>
#include <nlohmann/json.hpp>
#include <utility>

#include "actor/rigid_transform.h"
#include "preview/base64.h"
#include "preview/canvas.h"
#include "preview/model.h"
#include "preview/stand.h"

namespace preview {
namespace {

using nlohmann::json;

json BoneData(const actor::Skeleton& skeleton) {
  json bones = json::array();
  for (const actor::Bone& bone : skeleton.bones) {
    const actor::RigidTransform bind = actor::BindTransform(bone);
    bones.push_back({{"name", bone.name},
                     {"parent", bone.parent},
                     {"origin", bind.translation},
                     {"rotation", bind.rotation}});
  }
  return bones;
}

/// Collects the looks of the meshes, each once.
class Looks {
 public:
  Looks(const actor::Actor& actor, const actor::PictureEncoder& encode) : actor_(actor), encode_(encode) {}

  /// @return number of the mesh's look, -1 for none
  int Find(const actor::Mesh& mesh) {
    if (!actor_.MaterialOf(mesh)) return -1;
    const actor::Look look = actor::LookOf(actor_, mesh);
    const int texture = look.picture ? FindTexture(*look.picture) : -1;
    json colour = json::array();
    for (const uint8_t part : ToBytes(look.diffuse)) colour.push_back(part);
    const std::string name = texture >= 0 ? look.picture->name : "colour " + colour.dump();
    const std::pair key(texture, name);
    const auto [entry, isNew] = numbers_.try_emplace(key, static_cast<int>(materials_.size()));
    if (isNew) materials_.push_back({{"name", name}, {"colour", std::move(colour)}, {"texture", texture}});
    return entry->second;
  }

  json TakeMaterials() { return std::move(materials_); }
  json TakeTextures() { return std::move(textures_); }

 private:
  int FindTexture(const actor::Picture& picture) {
    const auto [entry, isNew] = pictures_.try_emplace(&picture, -1);
    if (!isNew) return entry->second;
    const std::string png = encode_(picture).png;
    if (png.empty()) return -1;
    entry->second = static_cast<int>(textures_.size());
    textures_.push_back({{"name", picture.name}, {"url", "data:image/png;base64," + ToBase64(png)}});
    return entry->second;
  }

  const actor::Actor& actor_;
  const actor::PictureEncoder& encode_;
  std::map<std::pair<int, std::string>, int> numbers_;
  std::map<const actor::Picture*, int> pictures_;
  json materials_ = json::array(), textures_ = json::array();
};

json MeshData(const actor::Mesh& mesh, int material) {
  NumberBytes positions, normals, uvs, faces, counts, bones, weights;
  for (const actor::Vertex& vertex : mesh.vertices) {
    for (const float number : vertex.position) positions.Add(number);
    for (const float number : vertex.normal) normals.Add(number);
    for (const float number : vertex.uv) uvs.Add(number);
    const uint32_t count = std::min(vertex.influenceCount, 0xffffu);
    counts.Add(static_cast<uint16_t>(count));
    for (uint32_t i = vertex.firstInfluence; i < vertex.firstInfluence + count; ++i) {
      bones.Add(static_cast<uint32_t>(mesh.influences[i].bone));
      weights.Add(mesh.influences[i].weight);
    }
  }
  for (const auto& face : mesh.faces) {
    for (const int32_t corner : face) faces.Add(static_cast<uint32_t>(corner));
  }
  return {{"name", mesh.name},
          {"material", material},
          {"positions", ToBase64(positions.Bytes())},
          {"normals", ToBase64(normals.Bytes())},
          {"uvs", ToBase64(uvs.Bytes())},
          {"faces", ToBase64(faces.Bytes())},
          {"influenceCounts", ToBase64(counts.Bytes())},
          {"influenceBones", ToBase64(bones.Bytes())},
          {"influenceWeights", ToBase64(weights.Bytes())}};
}

/// JSON for the inside of a script element: no name may end the element.
std::string ForScript(const json& data) {
  const std::string text = data.dump(-1, ' ', false, json::error_handler_t::replace);
  std::string safe;
  safe.reserve(text.size());
  for (const char c : text) {
    if (c == '<') {
      safe += "\\u003c";
    } else {
      safe += c;
    }
  }
  return safe;
}

}  // namespace

std::string WritePageData(const actor::Actor& source, const std::string& title,
                          const actor::PictureEncoder& encode, const std::optional<Vector>& up) {
  const actor::Actor actor = Drawable(source);
  const Stand stand = FindStand(actor, up);
  const Bounds bounds = ModelBounds(actor);
  Looks looks(actor, encode);
  json data = {{"title", title},
               {"bounds", {{"low", bounds.low}, {"high", bounds.high}}},
               {"stand", {{"side", stand.side}, {"up", stand.up}, {"front", stand.front}}},
               {"bones", BoneData(actor.skeleton)},
               {"meshes", json::array()}};
  for (const actor::Mesh& mesh : actor.meshes) data["meshes"].push_back(MeshData(mesh, looks.Find(mesh)));
  data["materials"] = looks.TakeMaterials();
  data["textures"] = looks.TakeTextures();
  return ForScript(data);
}

}  // namespace preview

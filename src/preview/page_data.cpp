// SPDX-License-Identifier: MIT
#include "preview/page_data.h"

#include <map>
#include <utility>

#include "actor/rigid_transform.h"
#include "core/json_writer.h"
#include "preview/base64.h"
#include "preview/canvas.h"
#include "preview/model.h"
#include "preview/stand.h"

namespace preview {
namespace {

using ts3d::JsonWriter;

void WriteBones(JsonWriter& json, const actor::Skeleton& skeleton) {
  json.OpenArray("bones");
  for (const actor::Bone& bone : skeleton.bones) {
    const actor::RigidTransform bind = actor::BindTransform(bone);
    json.OpenObject();
    json.Member("name", bone.name);
    json.Member("parent", bone.parent);
    json.Member("origin", bind.translation);
    json.Member("rotation", bind.rotation);
    json.CloseObject();
  }
  json.CloseArray();
}

/// Collects the looks of the meshes, each once.
class Looks {
 public:
  Looks(const actor::Actor& actor, const actor::PictureEncoder& encode) : actor_(actor), encode_(encode) {
    materials_.OpenArray();
    textures_.OpenArray();
  }

  /// @return number of the mesh's look, -1 for none
  int Find(const actor::Mesh& mesh) {
    if (!actor_.MaterialOf(mesh)) return -1;
    const actor::Look look = actor::LookOf(actor_, mesh);
    const int texture = look.picture ? FindTexture(*look.picture) : -1;
    const auto colour = ToBytes(look.diffuse);
    JsonWriter colourText(JsonWriter::Layout::Compact);
    colourText.Value(colour);
    const std::string name = texture >= 0 ? look.picture->name : "colour " + colourText.Text();
    const std::pair key(texture, name);
    const auto [entry, isNew] = numbers_.try_emplace(key, static_cast<int>(numbers_.size()));
    if (!isNew) return entry->second;
    materials_.OpenObject();
    materials_.Member("name", name);
    materials_.Member("colour", colour);
    materials_.Member("texture", texture);
    materials_.CloseObject();
    return entry->second;
  }

  /// Ends the lists.
  void Write(JsonWriter& json) {
    materials_.CloseArray();
    textures_.CloseArray();
    json.Key("materials");
    json.Raw(materials_.Text());
    json.Key("textures");
    json.Raw(textures_.Text());
  }

 private:
  int FindTexture(const actor::Picture& picture) {
    const auto [entry, isNew] = pictures_.try_emplace(&picture, -1);
    if (!isNew) return entry->second;
    const std::string png = encode_(picture).png;
    if (png.empty()) return -1;
    entry->second = textureCount_++;
    textures_.OpenObject();
    textures_.Member("name", picture.name);
    textures_.Member("url", "data:image/png;base64," + ToBase64(png));
    textures_.CloseObject();
    return entry->second;
  }

  const actor::Actor& actor_;
  const actor::PictureEncoder& encode_;
  std::map<std::pair<int, std::string>, int> numbers_;
  std::map<const actor::Picture*, int> pictures_;
  JsonWriter materials_{JsonWriter::Layout::Compact}, textures_{JsonWriter::Layout::Compact};
  int textureCount_ = 0;
};

void WriteMesh(JsonWriter& json, const actor::Mesh& mesh, int material) {
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
  json.OpenObject();
  json.Member("name", mesh.name);
  json.Member("material", material);
  json.Member("positions", ToBase64(positions.Bytes()));
  json.Member("normals", ToBase64(normals.Bytes()));
  json.Member("uvs", ToBase64(uvs.Bytes()));
  json.Member("faces", ToBase64(faces.Bytes()));
  json.Member("influenceCounts", ToBase64(counts.Bytes()));
  json.Member("influenceBones", ToBase64(bones.Bytes()));
  json.Member("influenceWeights", ToBase64(weights.Bytes()));
  json.CloseObject();
}

/// JSON for the inside of a script element: no name may end the element.
std::string ForScript(const std::string& text) {
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
  const base::Box bounds = ModelBounds(actor);
  Looks looks(actor, encode);
  JsonWriter json(JsonWriter::Layout::Compact);
  json.OpenObject();
  json.Member("title", title);
  json.OpenObject("bounds");
  json.Member("low", bounds.low);
  json.Member("high", bounds.high);
  json.CloseObject();
  json.OpenObject("stand");
  json.Member("side", stand.side);
  json.Member("up", stand.up);
  json.Member("front", stand.front);
  json.CloseObject();
  WriteBones(json, actor.skeleton);
  json.OpenArray("meshes");
  for (const actor::Mesh& mesh : actor.meshes) WriteMesh(json, mesh, looks.Find(mesh));
  json.CloseArray();
  looks.Write(json);
  json.CloseObject();
  return ForScript(json.Text());
}

}  // namespace preview

// SPDX-License-Identifier: MIT
#include "export/export_gltf.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <stdexcept>

#include "export/gltf_buffer.h"
#include "export/gltf_skin.h"

namespace actor {
namespace {

using Json = GltfBuffer::Json;

constexpr size_t kMostBones = 65536;

/// `name` as a reference to a file in the same folder: what has a meaning there is written as its number.
std::string UriOf(const std::string& name) {
  constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string uri;
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (kPlain.find(c) != kPlain.npos) {
      uri += c;
    } else {
      uri.append(1, '%').append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 15]);
    }
  }
  return uri;
}

/// Colours of files are those of a screen; here they are amounts of light.
double ToLinear(double colour) {
  return colour <= 0.04045 ? colour / 12.92 : std::pow((colour + 0.055) / 1.055, 2.4);
}

void AppendWord(std::string& bytes, size_t word) {
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(word >> shift & 0xff);
}

void AppendChunk(std::string& bytes, std::string_view kind, const std::string& content, char padding) {
  const size_t size = (content.size() + 3) / 4 * 4;
  AppendWord(bytes, size);
  bytes.append(kind).append(content).append(size - content.size(), padding);
}

std::string JoinChunks(const std::string& json, const std::string& binary) {
  constexpr size_t kHead = 12, kChunkHead = 8, kPadding = 3;
  const size_t most = kHead + 2 * (kChunkHead + kPadding) + json.size() + binary.size();
  if (most > std::numeric_limits<uint32_t>::max()) throw std::runtime_error("is too large for a .glb file");
  std::string chunks;
  AppendChunk(chunks, "JSON", json, ' ');
  if (!binary.empty()) AppendChunk(chunks, std::string_view("BIN\0", 4), binary, '\0');
  std::string bytes = "glTF";
  AppendWord(bytes, 2);
  AppendWord(bytes, kHead + chunks.size());
  return bytes + chunks;
}

class GltfExport {
 public:
  /// @param stem  of the files for pictures and numbers; empty: all are in one file
  GltfExport(const Actor& actor, const PictureEncoder& encode, std::string stem)
      : actor_(actor), encode_(encode), stem_(std::move(stem)) {}

  std::vector<ExportedFile> RunSeparately(const std::string& generator) {
    const Json json = Describe(generator);
    if (!buffer_.Bytes().empty()) files_.push_back({stem_ + ".bin", buffer_.Bytes()});
    files_.push_back({stem_ + ".gltf", json.dump(1, ' ', false, Json::error_handler_t::replace)});
    return std::move(files_);
  }

  std::string Run(const std::string& generator) {
    const Json json = Describe(generator);
    return JoinChunks(json.dump(-1, ' ', false, Json::error_handler_t::replace), buffer_.Bytes());
  }

 private:
  Json Describe(const std::string& generator) {
    if (actor_.skeleton.bones.size() > kMostBones)
      throw std::runtime_error("has too many bones for a glTF file");
    AddSkeleton();
    for (const Mesh& mesh : actor_.meshes) {
      if (IsVisible(mesh)) AddMesh(mesh);
    }
    Json json = {{"asset", {{"version", "2.0"}, {"generator", generator}}}};
    if (!top_.empty()) {
      json["scene"] = 0;
      json["scenes"] = {{{"nodes", top_}}};
    }
    for (const auto& [key, list] :
         std::initializer_list<std::pair<const char*, const Json&>>{{"nodes", nodes_},
                                                                    {"meshes", meshes_},
                                                                    {"skins", skins_},
                                                                    {"materials", materials_},
                                                                    {"textures", textures_},
                                                                    {"images", images_},
                                                                    {"accessors", buffer_.Accessors()},
                                                                    {"bufferViews", buffer_.Views()}}) {
      if (!list.empty()) json[key] = list;
    }
    const size_t size = buffer_.Bytes().size();
    if (size == 0) return json;
    json["buffers"] = {{{"byteLength", size}}};
    if (!stem_.empty()) json["buffers"][0]["uri"] = UriOf(stem_ + ".bin");
    return json;
  }

  /// Bones are the first nodes. A skin wants one node above all of its joints.
  void AddSkeleton() {
    const std::vector<Bone>& bones = actor_.skeleton.bones;
    if (bones.empty()) return;
    nodes_ = BoneNodes(actor_.skeleton);
    for (size_t i = 0; i < bones.size(); ++i) {
      if (bones[i].parent < 0) top_.push_back(i);
    }
    if (top_.size() > 1) {
      nodes_.push_back({{"name", "skeleton"}, {"children", top_}});
      top_ = Json::array({nodes_.size() - 1});
    }
    skins_.push_back(SkinOf(actor_.skeleton, buffer_));
  }

  void AddMesh(const Mesh& mesh) {
    Json primitive = {{"attributes", Attributes(mesh)}, {"indices", AddFaces(mesh)}};
    primitive["material"] = AddMaterial(mesh.name, LookOf(actor_, mesh));
    meshes_.push_back({{"name", mesh.name}, {"primitives", Json::array({primitive})}});
    Json node = {{"name", mesh.name}, {"mesh", meshes_.size() - 1}};
    if (!skins_.empty()) node["skin"] = 0;
    top_.push_back(nodes_.size());
    nodes_.push_back(std::move(node));
  }

  Json Attributes(const Mesh& mesh) {
    std::vector<float> positions, normals, uvs;
    Vector3 low = mesh.vertices[0].position, high = low;
    for (const Vertex& vertex : mesh.vertices) {
      const Vector3 normal = UnitNormal(vertex.normal);
      positions.insert(positions.end(), vertex.position.begin(), vertex.position.end());
      normals.insert(normals.end(), normal.begin(), normal.end());
      uvs.insert(uvs.end(), vertex.uv.begin(), vertex.uv.end());
      for (size_t i = 0; i < 3; ++i) {
        low[i] = std::min(low[i], vertex.position[i]);
        high[i] = std::max(high[i], vertex.position[i]);
      }
    }
    const size_t position = buffer_.Add<float>(positions, 3, "VEC3", GltfBuffer::Vertices);
    buffer_.SetBounds(position, low, high);
    Json attributes = {{"POSITION", position},
                       {"NORMAL", buffer_.Add<float>(normals, 3, "VEC3", GltfBuffer::Vertices)},
                       {"TEXCOORD_0", buffer_.Add<float>(uvs, 2, "VEC2", GltfBuffer::Vertices)}};
    if (!skins_.empty()) AddJoints(mesh, actor_.skeleton.bones.size(), buffer_, attributes);
    return attributes;
  }

  size_t AddFaces(const Mesh& mesh) {
    std::vector<uint32_t> corners;
    for (const auto& face : FacesOutwards(mesh)) {
      for (const int32_t corner : face) corners.push_back(static_cast<uint32_t>(corner));
    }
    // The highest 16-bit number is not a vertex: it restarts strips.
    if (mesh.vertices.size() >= 65535)
      return buffer_.Add<uint32_t>(corners, 1, "SCALAR", GltfBuffer::Indices);
    const std::vector<uint16_t> shorter(corners.begin(), corners.end());
    return buffer_.Add<uint16_t>(shorter, 1, "SCALAR", GltfBuffer::Indices);
  }

  size_t AddMaterial(const std::string& name, const Look& look) {
    Json surface = {{"metallicFactor", 0.0}, {"roughnessFactor", std::sqrt(2.0 / (look.shininess + 2.0))}};
    Json material = {{"name", name}};
    const Texture texture = look.picture ? AddTexture(*look.picture) : Texture();
    if (texture.exists) {
      // The picture takes the place of the colour.
      surface["baseColorTexture"] = {{"index", texture.number}};
    } else {
      surface["baseColorFactor"] = {ToLinear(look.diffuse[0]), ToLinear(look.diffuse[1]),
                                    ToLinear(look.diffuse[2]), 1.0};
    }
    material["pbrMetallicRoughness"] = std::move(surface);
    if (texture.opacity == Opacity::Cutout) material["alphaMode"] = "MASK";
    if (texture.opacity == Opacity::Blended) material["alphaMode"] = "BLEND";
    if (look.bothSides) material["doubleSided"] = true;
    materials_.push_back(std::move(material));
    return materials_.size() - 1;
  }

  struct Texture {
    bool exists = false;
    size_t number = 0;
    Opacity opacity = Opacity::Opaque;
  };

  Texture AddTexture(const Picture& picture) {
    const auto [known, isNew] = byPicture_.try_emplace(&picture);
    if (!isNew) return known->second;
    EncodedPicture encoded = encode_(picture);
    if (encoded.png.empty()) return {};
    if (stem_.empty()) {
      const size_t view = buffer_.AddView(encoded.png.data(), encoded.png.size(), GltfBuffer::None);
      images_.push_back({{"name", picture.name}, {"bufferView", view}, {"mimeType", "image/png"}});
    } else {
      const std::string file = AddPictureFile(stem_, picture, std::move(encoded.png), files_);
      images_.push_back({{"name", picture.name}, {"uri", UriOf(file)}});
    }
    textures_.push_back({{"source", images_.size() - 1}});
    return known->second = {true, textures_.size() - 1, encoded.opacity};
  }

  const Actor& actor_;
  const PictureEncoder& encode_;
  const std::string stem_;
  std::vector<ExportedFile> files_;
  GltfBuffer buffer_;
  Json nodes_ = Json::array(), meshes_ = Json::array(), skins_ = Json::array(), materials_ = Json::array(),
       textures_ = Json::array(), images_ = Json::array();
  Json top_ = Json::array();  ///< numbers of the scene's nodes
  std::map<const Picture*, Texture> byPicture_;
};

}  // namespace

std::string ExportGlb(const Actor& actor, const std::string& generator, const PictureEncoder& encode) {
  return GltfExport(actor, encode, {}).Run(generator);
}

std::vector<ExportedFile> ExportGltf(const Actor& actor, const std::string& generator,
                                     const std::string& stem, const PictureEncoder& encode) {
  return GltfExport(actor, encode, stem).RunSeparately(generator);
}

}  // namespace actor

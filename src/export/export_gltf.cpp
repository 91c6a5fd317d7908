// SPDX-License-Identifier: MIT
#include "export/export_gltf.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <stdexcept>

#include "base/byte_cursor.h"
#include "base/vectors.h"
#include "export/gltf_buffer.h"
#include "export/gltf_skin.h"

namespace actor {
namespace {

using ts3d::JsonWriter;

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
  base::AppendLittleEndian(static_cast<uint32_t>(word), bytes);
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
    const std::string json = Describe(generator);
    if (!buffer_.Bytes().empty()) files_.push_back({stem_ + ".bin", buffer_.Bytes()});
    files_.push_back({stem_ + ".gltf", json});
    return std::move(files_);
  }

  std::string Run(const std::string& generator) {
    const std::string json = Describe(generator);
    return JoinChunks(json, buffer_.Bytes());
  }

 private:
  std::string Describe(const std::string& generator) {
    if (actor_.skeleton.bones.size() > kMostBones)
      throw std::runtime_error("has too many bones for a glTF file");
    AddSkeleton();
    for (const Mesh& mesh : actor_.meshes) {
      if (IsVisible(mesh)) AddMesh(mesh);
    }
    JsonWriter json(stem_.empty() ? JsonWriter::Layout::Compact : JsonWriter::Layout::Lines);
    json.OpenObject();
    json.OpenObject("asset");
    json.Member("version", "2.0");
    json.Member("generator", generator);
    json.CloseObject();
    if (!top_.empty()) {
      json.Member("scene", 0);
      json.OpenArray("scenes");
      json.OpenObject();
      json.Member("nodes", top_);
      json.CloseObject();
      json.CloseArray();
    }
    WriteLists(json);
    if (!buffer_.Bytes().empty()) WriteBuffers(json);
    json.CloseObject();
    return json.Text();
  }

  void WriteLists(JsonWriter& json) {
    const std::pair<const char*, GltfList&> lists[] = {{"nodes", nodes_},
                                                       {"meshes", meshes_},
                                                       {"skins", skins_},
                                                       {"materials", materials_},
                                                       {"textures", textures_},
                                                       {"images", images_},
                                                       {"accessors", buffer_.Accessors()},
                                                       {"bufferViews", buffer_.Views()}};
    for (const auto& [name, list] : lists) {
      if (list.Count() == 0) continue;
      json.Key(name);
      json.Raw(list.Finish());
    }
  }

  void WriteBuffers(JsonWriter& json) {
    json.OpenArray("buffers");
    json.OpenObject();
    json.Member("byteLength", buffer_.Bytes().size());
    if (!stem_.empty()) json.Member("uri", UriOf(stem_ + ".bin"));
    json.CloseObject();
    json.CloseArray();
  }

  /// Bones are the first nodes. A skin wants one node above all of its joints.
  void AddSkeleton() {
    const std::vector<Bone>& bones = actor_.skeleton.bones;
    if (bones.empty()) return;
    AddBoneNodes(actor_.skeleton, nodes_);
    for (size_t i = 0; i < bones.size(); ++i) {
      if (bones[i].parent < 0) top_.push_back(i);
    }
    if (top_.size() > 1) {
      JsonWriter& node = nodes_.Open();
      node.Member("name", "skeleton");
      node.Member("children", top_);
      top_ = {nodes_.Close()};
    }
    AddSkin(actor_.skeleton, buffer_, skins_);
  }

  void AddMesh(const Mesh& mesh) {
    const size_t material = AddMaterial(mesh.name, LookOf(actor_, mesh));
    JsonWriter& entry = meshes_.Open();
    entry.Member("name", mesh.name);
    entry.OpenArray("primitives");
    entry.OpenObject();
    entry.OpenObject("attributes");
    WriteAttributes(mesh, entry);
    entry.CloseObject();
    entry.Member("indices", AddFaces(mesh));
    entry.Member("material", material);
    entry.CloseObject();
    entry.CloseArray();
    const size_t number = meshes_.Close();
    JsonWriter& node = nodes_.Open();
    node.Member("name", mesh.name);
    node.Member("mesh", number);
    if (skins_.Count() > 0) node.Member("skin", 0);
    top_.push_back(nodes_.Close());
  }

  void WriteAttributes(const Mesh& mesh, JsonWriter& attributes) {
    std::vector<float> positions, normals, uvs;
    base::Box bounds;
    for (const Vertex& vertex : mesh.vertices) {
      const Vector3 normal = UnitNormal(vertex.normal);
      positions.insert(positions.end(), vertex.position.begin(), vertex.position.end());
      normals.insert(normals.end(), normal.begin(), normal.end());
      uvs.insert(uvs.end(), vertex.uv.begin(), vertex.uv.end());
      bounds.Add(base::ToVector(vertex.position));
    }
    attributes.Member("POSITION", buffer_.Add<float>(positions, 3, "VEC3", GltfBuffer::Vertices, &bounds));
    attributes.Member("NORMAL", buffer_.Add<float>(normals, 3, "VEC3", GltfBuffer::Vertices));
    attributes.Member("TEXCOORD_0", buffer_.Add<float>(uvs, 2, "VEC2", GltfBuffer::Vertices));
    if (skins_.Count() > 0) AddJoints(mesh, actor_.skeleton.bones.size(), buffer_, attributes);
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
    const Texture texture = look.picture ? AddTexture(*look.picture) : Texture();
    JsonWriter& material = materials_.Open();
    material.Member("name", name);
    material.OpenObject("pbrMetallicRoughness");
    material.Member("metallicFactor", 0);
    material.Member("roughnessFactor", std::sqrt(2.0 / (look.shininess + 2.0)));
    if (texture.exists) {
      // The picture takes the place of the colour.
      material.OpenObject("baseColorTexture");
      material.Member("index", texture.number);
      material.CloseObject();
    } else {
      material.Member("baseColorFactor", std::array{ToLinear(look.diffuse[0]), ToLinear(look.diffuse[1]),
                                                    ToLinear(look.diffuse[2]), 1.0});
    }
    material.CloseObject();
    if (texture.opacity == Opacity::Cutout) material.Member("alphaMode", "MASK");
    if (texture.opacity == Opacity::Blended) material.Member("alphaMode", "BLEND");
    if (look.bothSides) material.Member("doubleSided", true);
    return materials_.Close();
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
    const std::string file =
        stem_.empty() ? "" : AddPictureFile(stem_, picture, std::move(encoded.png), files_);
    JsonWriter& image = images_.Open();
    image.Member("name", picture.name);
    if (stem_.empty()) {
      image.Member("bufferView", buffer_.AddView(encoded.png.data(), encoded.png.size(), GltfBuffer::None));
      image.Member("mimeType", "image/png");
    } else {
      image.Member("uri", UriOf(file));
    }
    textures_.Open().Member("source", images_.Close());
    return known->second = {true, textures_.Close(), encoded.opacity};
  }

  const Actor& actor_;
  const PictureEncoder& encode_;
  const std::string stem_;
  std::vector<ExportedFile> files_;
  GltfBuffer buffer_;
  GltfList nodes_, meshes_, skins_, materials_, textures_, images_;
  std::vector<size_t> top_;  ///< numbers of the scene's nodes
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

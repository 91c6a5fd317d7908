// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "base/plain_text.h"
#include "scene/gltf/document.h"
#include "scene/gltf/json_limits.h"
#include "scene/gltf/json_value.h"
#include "scene/gltf/read_avatar.h"
#include "scene/math/angles.h"

namespace scene::gltf {
namespace {

/// Extensions whose data replaces what the file has without them.
constexpr const char* kViewCompressions[] = {"EXT_meshopt_compression", "KHR_meshopt_compression"};
constexpr const char* kMeshCompression = "KHR_draco_mesh_compression";

/// How the names of extensions begin that are read, or are about what packages do not have.
constexpr std::string_view kHarmless[] = {"EXT_lights_",   "EXT_meshopt_",
                                          "EXT_texture_",  "KHR_animation_",
                                          "KHR_audio",     "KHR_draco_mesh_",
                                          "KHR_lights_",   "KHR_materials_",
                                          "KHR_mesh_quan", "KHR_meshopt_",
                                          "KHR_texture",   "KHR_xmp",
                                          "MSFT_texture",  "VRM"};
constexpr const char* kInstances = "EXT_mesh_gpu_instancing";

/// Makes the list of what `values` holds.
template <class T, class Read>
std::vector<T> ReadList(JsonValue values, const Read& read) {
  std::vector<T> list;
  list.reserve(values.size());
  for (size_t i = 0; i < values.size(); ++i) list.push_back(read(values.At(i)));
  return list;
}

class DocumentReader {
 public:
  explicit DocumentReader(JsonValue root) : root_(root) {}

  Document Read() {
    ReadVersion();
    needsMeshCompression_ = Requires(kMeshCompression);
    document_.buffers = ReadList<Buffer>(root_["buffers"], [](JsonValue buffer) {
      return Buffer{buffer["uri"].Text(), buffer["byteLength"].Count()};
    });
    document_.views = ReadList<BufferView>(root_["bufferViews"], [&](JsonValue v) { return ReadView(v); });
    document_.accessors =
        ReadList<Accessor>(root_["accessors"], [&](JsonValue a) { return ReadAccessor(a); });
    document_.images = ReadList<Image>(root_["images"], [&](JsonValue image) {
      return Image{image["name"].Name(), image["uri"].Text(), image["mimeType"].Text(),
                   image["bufferView"].Index(document_.views.size(), "buffer view")};
    });
    document_.materials =
        ReadList<Material>(root_["materials"], [&](JsonValue m) { return ReadMaterial(m); });
    document_.meshes = ReadList<Mesh>(root_["meshes"], [&](JsonValue m) { return ReadMesh(m); });
    document_.nodes = ReadList<Node>(root_["nodes"], [&](JsonValue n) { return ReadNode(n); });
    document_.skins = ReadList<Skin>(root_["skins"], [&](JsonValue skin) {
      return Skin{Indices(skin["joints"], document_.nodes.size(), "node"),
                  skin["inverseBindMatrices"].Index(document_.accessors.size(), "accessor")};
    });
    CheckSkinUse();
    FindParents();
    FindRoots();
    ReadMotions();
    ListUnread();
    document_.avatar = ReadAvatar(root_["extensions"], document_.nodes.size());
    return std::move(document_);
  }

 private:
  static std::vector<uint32_t> Indices(JsonValue values, size_t count, const char* what) {
    return ReadList<uint32_t>(values, [&](JsonValue value) { return value.Index(count, what); });
  }

  void ReadVersion() {
    const JsonValue asset = root_["asset"];
    if (!asset) throw Fault("it is JSON, but not a glTF file");
    const std::string text = asset["version"].Text();
    const std::string least = asset["minVersion"].Text();
    document_.version = VersionOf(text);
    if (text.empty()) throw VersionFault("the glTF file does not tell its version");
    if (document_.version.first == 1) throw VersionFault("glTF 1.0 is too old; export the model as glTF 2.0");
    if (document_.version.first != 2 || (!least.empty() && VersionOf(least) > std::pair(2, 0)))
      throw VersionFault("glTF version \"" + (least.empty() ? text : least) + "\" is not known");
  }

  /// {0, 0} for what is no version.
  static std::pair<int, int> VersionOf(const std::string& text) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (text.size() < 3 || !isDigit(text[0]) || text[1] != '.' || !isDigit(text[2])) return {};
    return {text[0] - '0', text[2] - '0'};
  }

  BufferView ReadView(JsonValue view) const {
    BufferView result;
    result.buffer = view["buffer"].Index(document_.buffers.size(), "buffer");
    result.offset = view["byteOffset"].Count();
    result.size = view["byteLength"].Count();
    constexpr uint64_t kLargestStride = 252;
    result.stride = static_cast<uint32_t>(std::min(view["byteStride"].Count(), kLargestStride + 1));
    if (result.stride > kLargestStride) throw Fault("the elements of a buffer view lie too far apart");
    for (const char* extension : kViewCompressions) {
      const JsonValue packed = view["extensions"][extension];
      if (!packed) continue;
      result.compressed = extension;
      result.packed = {packed["buffer"].Index(document_.buffers.size(), "buffer"),
                       packed["byteOffset"].Count(),
                       packed["byteLength"].Count(),
                       packed["byteStride"].Count(),
                       packed["count"].Count(),
                       packed["mode"].Text(),
                       packed["filter"].Text()};
    }
    return result;
  }

  static Component ReadComponent(JsonValue value) {
    const uint64_t code = value.Count();
    for (const Component known :
         {Component::I8, Component::U8, Component::I16, Component::U16, Component::U32, Component::F32}) {
      if (static_cast<uint64_t>(known) == code) return known;
    }
    throw Fault("component type " + std::to_string(code) + " of an accessor is not known");
  }

  static uint32_t ReadWidth(const std::string& type) {
    static constexpr std::pair<std::string_view, uint32_t> kTypes[] = {
        {"SCALAR", 1}, {"VEC2", 2}, {"VEC3", 3}, {"VEC4", 4}, {"MAT2", 4}, {"MAT3", 9}, {"MAT4", 16}};
    for (const auto& [name, width] : kTypes) {
      if (name == type) return width;
    }
    throw Fault("type \"" + type.substr(0, 20) + "\" of an accessor is not known");
  }

  Place ReadPlace(JsonValue value) const {
    return {value["bufferView"].Index(document_.views.size(), "buffer view"), value["byteOffset"].Count()};
  }

  Accessor ReadAccessor(JsonValue accessor) const {
    Accessor result;
    result.place = ReadPlace(accessor);
    result.component = ReadComponent(accessor["componentType"]);
    result.width = ReadWidth(accessor["type"].Text());
    result.normalized = accessor["normalized"].Flag();
    result.count = accessor["count"].Count();
    if (const JsonValue sparse = accessor["sparse"]) {
      result.sparseCount = sparse["count"].Count();
      result.sparseComponent = ReadComponent(sparse["indices"]["componentType"]);
      result.sparseIndices = ReadPlace(sparse["indices"]);
      result.sparseValues = ReadPlace(sparse["values"]);
    }
    return result;
  }

  /// The picture of a texture; those of extensions come before the one for programs that lack them.
  uint32_t ImageOf(JsonValue use) const {
    const JsonValue textures = root_["textures"];
    const uint32_t index = use["index"].Index(textures.size(), "texture");
    if (index == kNone) return kNone;
    const JsonValue texture = textures.At(index);
    const JsonValue webp = texture["extensions"]["EXT_texture_webp"]["source"];
    const JsonValue source = texture["source"];
    return (webp     ? webp
            : source ? source
                     : texture["extensions"]["KHR_texture_basisu"]["source"])
        .Index(document_.images.size(), "image");
  }

  /// The base colour of the usual materials, or the diffuse one of those before them.
  Material ReadMaterial(JsonValue material) const {
    Material result;
    result.name = material["name"].Name();
    result.isBlended = material["alphaMode"].Text() == "BLEND";
    const std::vector<double> emissive = material["emissiveFactor"].Numbers();
    std::copy_n(emissive.begin(), std::min<size_t>(emissive.size(), 3), result.emissive.begin());
    const JsonValue metallic = material["pbrMetallicRoughness"];
    const JsonValue diffuse = material["extensions"]["KHR_materials_pbrSpecularGlossiness"];
    const std::vector<double> colour =
        (diffuse ? diffuse["diffuseFactor"] : metallic["baseColorFactor"]).Numbers();
    std::copy_n(colour.begin(), std::min<size_t>(colour.size(), 4), result.colour.begin());
    ReadTexture(diffuse ? diffuse["diffuseTexture"] : metallic["baseColorTexture"], result);
    return result;
  }

  void ReadTexture(JsonValue use, Material& material) const {
    material.image = ImageOf(use);
    material.coordinates = static_cast<uint32_t>(std::min<uint64_t>(use["texCoord"].Count(), kNone - 1));
    const JsonValue transform = use["extensions"]["KHR_texture_transform"];
    if (!transform) return;
    if (const JsonValue set = transform["texCoord"])
      material.coordinates = static_cast<uint32_t>(std::min<uint64_t>(set.Count(), kNone - 1));
    std::vector<double> offset = transform["offset"].Numbers(), scale = transform["scale"].Numbers();
    offset.resize(2, 0);
    scale.resize(2, 1);
    const auto [sine, cosine] = SinCos(transform["rotation"].Number(0));
    material.transform = {cosine * scale[0], sine * scale[1],   offset[0],
                          -sine * scale[0],  cosine * scale[1], offset[1]};
  }

  /// The attributes NAME_0, NAME_1, ... as long as they go on.
  std::vector<uint32_t> ReadSets(JsonValue attributes, const std::string& name) const {
    constexpr int kMostSets = 64;
    std::vector<uint32_t> sets;
    for (int i = 0; i < kMostSets; ++i) {
      const JsonValue set = attributes[name + std::to_string(i)];
      if (!set) break;
      sets.push_back(set.Index(document_.accessors.size(), "accessor"));
    }
    return sets;
  }

  Primitive ReadPrimitive(JsonValue primitive) const {
    const JsonValue attributes = primitive["attributes"];
    const size_t accessors = document_.accessors.size();
    Primitive result;
    result.mode = static_cast<uint32_t>(std::min<uint64_t>(primitive["mode"].Count(4), kNone));
    result.indices = primitive["indices"].Index(accessors, "accessor");
    result.position = attributes["POSITION"].Index(accessors, "accessor");
    result.normal = attributes["NORMAL"].Index(accessors, "accessor");
    result.material = primitive["material"].Index(document_.materials.size(), "material");
    result.joints = ReadSets(attributes, "JOINTS_");
    result.weights = ReadSets(attributes, "WEIGHTS_");
    result.coordinates = ReadSets(attributes, "TEXCOORD_");
    result.targets = ReadList<uint32_t>(primitive["targets"], [&](JsonValue target) {
      return target["POSITION"].Index(accessors, "accessor");
    });
    if (const JsonValue packed = primitive["extensions"][kMeshCompression])
      result.packed = ReadPacked(packed, attributes);
    return result;
  }

  PackedPrimitive ReadPacked(JsonValue packed, JsonValue attributes) const {
    PackedPrimitive result{
        packed["bufferView"].Index(document_.views.size(), "buffer view"), {}, !needsMeshCompression_};
    if (result.view == kNone) throw Fault("a compressed mesh has no data");
    packed["attributes"].ForEachMember([&](const std::string& name, JsonValue id) {
      const uint32_t accessor = attributes[name].Index(document_.accessors.size(), "accessor");
      const auto number = static_cast<uint32_t>(std::min<uint64_t>(id.Count(), kNone));
      if (accessor != kNone && IsRead(name)) result.attributes.emplace_back(accessor, number);
    });
    return result;
  }

  static bool IsRead(std::string_view attribute) {
    const auto isOf = [&](std::string_view set) { return attribute.starts_with(set); };
    return attribute == "POSITION" || attribute == "NORMAL" || isOf("TEXCOORD_") || isOf("JOINTS_") ||
           isOf("WEIGHTS_");
  }

  bool Requires(std::string_view extension) const { return IsIn(root_["extensionsRequired"], extension); }

  static bool IsIn(JsonValue names, std::string_view name) {
    for (size_t i = 0; i < names.size(); ++i) {
      if (names.At(i).Text() == name) return true;
    }
    return false;
  }

  /// What somebody who does without them would not see as it is.
  void ListUnread() {
    constexpr size_t kMost = 5, kLongest = 60;
    std::vector<std::string> names;
    const JsonValue required = root_["extensionsRequired"];
    for (size_t i = 0; i < required.size() && names.size() < kMost; ++i) {
      const std::string name = required.At(i).Name();
      const auto begins = [&](std::string_view start) { return name.starts_with(start); };
      if (std::none_of(std::begin(kHarmless), std::end(kHarmless), begins))
        names.push_back(name.substr(0, kLongest));
    }
    if (IsIn(root_["extensionsUsed"], kInstances) && !Requires(kInstances)) names.push_back(kInstances);
    for (const std::string& name : names) document_.unread += (document_.unread.empty() ? "" : ", ") + name;
  }

  Mesh ReadMesh(JsonValue mesh) const {
    return {mesh["name"].Name(),
            ReadList<Primitive>(mesh["primitives"],
                                [&](JsonValue primitive) { return ReadPrimitive(primitive); }),
            mesh["weights"].Numbers(),
            ReadList<std::string>(mesh["extras"]["targetNames"], [](JsonValue name) { return name.Name(); })};
  }

  static KFbxXMatrix RotationOf(const std::vector<double>& q) {
    const double length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
    KFbxXMatrix matrix;
    if (!(length > 0) || !std::isfinite(length)) return matrix;
    const double x = q[0] / length, y = q[1] / length, z = q[2] / length, w = q[3] / length;
    const double rows[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w)},
                               {2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w)},
                               {2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y)}};
    for (size_t i = 0; i < 9; ++i) matrix.At(4 * (i / 3) + i % 3) = rows[i % 3][i / 3];
    return matrix;
  }

  static KFbxXMatrix ReadTransform(JsonValue node) {
    if (const std::vector<double> numbers = node["matrix"].Numbers(); numbers.size() == 16) {
      KFbxXMatrix matrix;
      for (size_t i = 0; i < 16; ++i) {
        if (i % 4 != 3) matrix.At(i) = numbers[i];
      }
      return matrix;
    }
    std::vector<double> t = node["translation"].Numbers(), r = node["rotation"].Numbers(),
                        s = node["scale"].Numbers();
    t.resize(3, 0);
    s.resize(3, 1);
    if (r.size() != 4) r = {0, 0, 0, 1};
    return KFbxXMatrix::Translation({t[0], t[1], t[2]}) * RotationOf(r) *
           KFbxXMatrix::Scaling({s[0], s[1], s[2]});
  }

  Node ReadNode(JsonValue node) const {
    Node result;
    result.name = node["name"].Name();
    result.children = Indices(node["children"], root_["nodes"].size(), "node");
    result.mesh = node["mesh"].Index(document_.meshes.size(), "mesh");
    result.skin = node["skin"].Index(root_["skins"].size(), "skin");
    result.local = ReadTransform(node);
    result.weights = node["weights"].Numbers();
    return result;
  }

  void CheckSkinUse() {
    for (const Skin& skin : document_.skins) {
      if (skin.joints.size() > 0xffff) throw Fault("a skin has too many joints");
    }
  }

  /// Nodes that are nobody's child stand at the top; what goes round in circles is left.
  void FindParents() {
    for (uint32_t i = 0; i < document_.nodes.size(); ++i) {
      for (const uint32_t child : document_.nodes[i].children) {
        Node& node = document_.nodes[child];
        if (node.parent != kNone) throw Fault("node " + std::to_string(child) + " is a child twice");
        node.parent = i;
      }
    }
  }

  /// The nodes of the scene that is shown; all without any scene, and where it names none that stands at the top.
  void FindRoots() {
    const JsonValue scenes = root_["scenes"];
    const uint32_t shown = root_["scene"].Index(scenes.size(), "scene");
    std::vector<uint32_t> roots;
    if (scenes.size() > 0)
      roots = Indices(scenes.At(shown == kNone ? 0 : shown)["nodes"], document_.nodes.size(), "node");
    std::vector<bool> taken(document_.nodes.size());
    for (const uint32_t root : roots) {
      if (document_.nodes[root].parent == kNone && !taken[root]) document_.roots.push_back(root);
      taken[root] = true;
    }
    const bool isLost = document_.roots.empty();
    for (uint32_t i = 0; isLost && i < document_.nodes.size(); ++i) {
      if (document_.nodes[i].parent == kNone) document_.roots.push_back(i);
    }
  }

  void ReadMotions() {
    const JsonValue animations = root_["animations"];
    constexpr size_t kMostMotions = 1000;
    for (size_t i = 0; i < std::min(animations.size(), kMostMotions); ++i) {
      std::string name = animations.At(i)["name"].Name();
      document_.motions.push_back(name.empty() ? "Animation " + std::to_string(i) : std::move(name));
    }
  }

  JsonValue root_;
  bool needsMeshCompression_ = false;
  Document document_;
};

}  // namespace

Document ReadDocument(std::string_view json, uint64_t fileSize) {
  json = base::WithoutByteOrderMark(json);
  CheckJsonClaims(json, fileSize);
  nlohmann::json root;
  try {
    root = nlohmann::json::parse(json);
  } catch (const nlohmann::json::parse_error& error) {
    throw Fault("its JSON is damaged at byte " + std::to_string(error.byte));
  } catch (const nlohmann::json::exception&) {
    throw Fault("its JSON is damaged: a number is too large");
  }
  return DocumentReader(JsonValue(root)).Read();
}

}  // namespace scene::gltf

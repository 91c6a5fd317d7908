// SPDX-License-Identifier: MIT
#include <draco/compression/encode.h>
#include <gmock/gmock.h>

#include <sstream>

#include "mesh/claims/weigh_claims.h"
#include "scene/model/mesh.h"
#include "scene/readers/translator.h"
#include "support/check_scene.h"
#include "support/gltf_builder.h"
#include "support/load_scene.h"

namespace {

using support::GltfFile;
using testing::HasSubstr;
using Json = GltfFile::Json;

/// A square of two triangles, in numbers of every kind, compressed as it stands.
class DracoSquare {
 public:
  DracoSquare() {
    mesh_.set_num_points(4);
    for (const auto& [a, b, c] : {std::tuple(0u, 1u, 2u), std::tuple(2u, 1u, 3u)})
      mesh_.AddFace({draco::PointIndex(a), draco::PointIndex(b), draco::PointIndex(c)});
    using Attribute = draco::GeometryAttribute;
    Add<float>(Attribute::POSITION, "POSITION", 3, {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0});
    Add<uint16_t>(Attribute::TEX_COORD, "TEXCOORD_0", 2, {0, 0, 65535, 0, 0, 65535, 65535, 65535}, true);
    Add<uint8_t>(Attribute::GENERIC, "JOINTS_0", 4, {0, 1, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0});
    Add<float>(Attribute::GENERIC, "WEIGHTS_0", 4, {.5, .5, 0, 0, 1, 0, 0, 0, .25, .75, 0, 0, 1, 0, 0, 0});
    const size_t indices = file_.Indices({0, 1, 2, 2, 1, 3});
    const size_t low = file_.Top({{"name", "low"}});
    const size_t high = file_.Top({{"name", "high"}});
    const size_t skin = file_.Add("skins", {{"joints", {low, high}}});
    const size_t mesh = file_.Mesh({{"attributes", attributes_}, {"indices", indices}});
    file_.Top({{"name", "m"}, {"mesh", mesh}, {"skin", skin}});
  }

  const GltfFile& Plain() const { return file_; }

  /// The same with nothing but what is compressed.
  GltfFile Compressed() {
    GltfFile file = WithBoth();
    file.root["extensionsRequired"] = {"KHR_draco_mesh_compression"};
    for (Json& accessor : file.root["accessors"]) accessor.erase("bufferView");
    return file;
  }

  /// With plain data for readers that cannot unpack it.
  GltfFile WithBoth() {
    draco::Encoder encoder;
    encoder.SetEncodingMethod(draco::MESH_SEQUENTIAL_ENCODING);
    draco::EncoderBuffer packed;
    EXPECT_TRUE(encoder.EncodeMeshToBuffer(mesh_, &packed).ok());
    GltfFile file = file_;
    const size_t view = file.View(std::vector<char>(packed.data(), packed.data() + packed.size()));
    file.root["meshes"][0]["primitives"][0]["extensions"]["KHR_draco_mesh_compression"] = {
        {"bufferView", view}, {"attributes", ids_}};
    return file;
  }

 private:
  template <class T>
  void Add(draco::GeometryAttribute::Type type, const char* name, int8_t width, const std::vector<T>& numbers,
           bool isNormalized = false) {
    constexpr bool kIsFloat = std::is_same_v<T, float>;
    const auto component = kIsFloat ? GltfFile::kF32 : sizeof(T) == 1 ? GltfFile::kU8 : GltfFile::kU16;
    const draco::DataType kind = kIsFloat         ? draco::DT_FLOAT32
                                 : sizeof(T) == 1 ? draco::DT_UINT8
                                                  : draco::DT_UINT16;
    draco::GeometryAttribute attribute;
    attribute.Init(type, nullptr, static_cast<uint8_t>(width), kind, false,
                   static_cast<int64_t>(sizeof(T)) * width, 0);
    const int place = mesh_.AddAttribute(attribute, true, 4);
    for (uint32_t i = 0; i < 4; ++i)
      mesh_.attribute(place)->SetAttributeValue(draco::AttributeValueIndex(i), &numbers[i * size_t(width)]);
    // Numbers of attributes need not be those of their places.
    mesh_.attribute(place)->set_unique_id(static_cast<uint32_t>(10 + place));
    ids_[name] = 10 + place;
    attributes_[name] = file_.Numbers(component,
                                      width == 2   ? "VEC2"
                                      : width == 3 ? "VEC3"
                                                   : "VEC4",
                                      size_t(width), numbers, {{"normalized", isNormalized}});
  }

  draco::Mesh mesh_;
  GltfFile file_;
  Json attributes_, ids_;
};

/// Points, triangles, coordinates and influences of the mesh in `file`; or the reason why it is not read.
std::string Read(const GltfFile& file) {
  const support::ManagerPtr manager(scene::KFbxSdkManager::Create());
  scene::KFbxScene& scene = *manager->CreateScene("");
  scene::KFbxImporter& importer = *manager->CreateImporter(ts3d::WeighClaims);
  const std::string bytes = file.Glb();
  if (!importer.InitializeFromMemory("", bytes) || !importer.Import(scene))
    return importer.GetLastErrorString();
  support::CheckScene(scene);
  scene::KFbxMesh& mesh = *support::FindNode(scene, "m")->GetMesh();
  std::ostringstream text;
  for (const auto number : mesh.GetControlPoints()) text << number << ' ';
  for (const auto point : mesh.GetPolygonVertices()) text << point << ' ';
  for (int i = 0; i < mesh.GetSkin(0)->GetClusterCount(); ++i) {
    const scene::KFbxCluster& cluster = *mesh.GetSkin(0)->GetCluster(i);
    for (const int32_t point : cluster.GetControlPointIndices()) text << point << ' ';
    for (const auto weight : cluster.GetControlPointWeights()) text << weight << ' ';
  }
  return text.str();
}

class GltfDraco : public testing::Test {
 protected:
  void SetUp() override {
    if (!scene::translation::IsThere()) GTEST_SKIP() << "built without what runs the library";
  }
  DracoSquare square_;
};

TEST_F(GltfDraco, MeshesAreReadLikePlainOnes) {
  const std::string plain = Read(square_.Plain());
  ASSERT_THAT(plain, HasSubstr("100"));
  EXPECT_EQ(Read(square_.Compressed()), plain);
  GltfFile strip = square_.Compressed();
  Json& primitive = strip.root["meshes"][0]["primitives"][0];
  primitive["mode"] = 5;
  strip.root["accessors"][primitive["indices"].get<size_t>()]["count"] = 4;
  EXPECT_EQ(Read(strip), plain) << "what is compressed are triangles";
  for (const size_t count : {3, 9}) {
    GltfFile other = square_.Compressed();
    for (Json& accessor : other.root["accessors"]) accessor["count"] = count;
    EXPECT_EQ(Read(other), plain) << "counts of before";
  }
  GltfFile partly = square_.Compressed();
  partly.root["accessors"][3] = square_.Plain().root["accessors"][3];
  partly.root["meshes"][0]["primitives"][0]["extensions"]["KHR_draco_mesh_compression"]["attributes"].erase(
      "WEIGHTS_0");
  EXPECT_EQ(Read(partly), plain) << "weights that are not compressed";
  GltfFile both = square_.WithBoth();
  both.root["bufferViews"].back()["byteLength"] = 1;
  EXPECT_EQ(Read(both), plain) << "plain data needs no library";
  both = square_.WithBoth();
  both.root["buffers"] = {{{"byteLength", both.data.size()}},
                          {{"byteLength", 999}, {"uri", "not/there.bin"}}};
  for (size_t i = 0; i + 1 < both.root["bufferViews"].size(); ++i) both.root["bufferViews"][i]["buffer"] = 1;
  EXPECT_EQ(Read(both), plain) << "the plain copy is missing";
}

TEST_F(GltfDraco, DamageIsToldWithTheReason) {
  const GltfFile sound = square_.Compressed();
  const std::string extension = "/meshes/0/primitives/0/extensions/KHR_draco_mesh_compression";
  const auto expect = [&](const std::string& place, const Json& value, const char* reason) {
    GltfFile file = sound;
    file.root[Json::json_pointer(place)] = value;
    EXPECT_THAT(Read(file), HasSubstr(reason)) << place;
  };
  expect(extension, Json::object(), "has no data");
  expect(extension + "/bufferView", 99, "buffer view 99 does not exist");
  expect(extension + "/attributes/POSITION", 3, "lacks an attribute");
  expect("/accessors/2/type", "VEC2", "of another type than its accessor");
  expect("/accessors/2/count", 5, "have different lengths");
  expect("/meshes/0/primitives/0/indices", nullptr, "not what it should be");
  GltfFile file = sound;
  for (size_t i = 0; i < 4; ++i) file.root["accessors"][i]["count"] = 1'000'000'000;
  EXPECT_THAT(Read(file), HasSubstr("too much memory"));
  const Json& packed = sound.root["bufferViews"].back();
  for (size_t i = packed["byteOffset"]; i < sound.data.size(); i += 3) {
    file = sound;
    file.data[i] = static_cast<char>(file.data[i] ^ 0x55);
    Read(file);
  }
}

}  // namespace

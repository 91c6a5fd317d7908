// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "platform/process.h"
#include "scene/model/material.h"
#include "support/load_gltf.h"
#include "support/temp_folder.h"

namespace {

using scene::KFbxMesh;
using scene::KFbxNode;
using support::AddSkin;
using support::GltfFile;
using support::kSquare;
using support::PointsOf;
using support::TrianglesOf;
using support::Xyz;
using testing::ElementsAre;
using testing::HasSubstr;
using Json = GltfFile::Json;
using Loaded = support::LoadedGltf;

TEST(Gltf, EveryKindOfTriangleListIsReadInCentimetres) {
  const auto trianglesOf = [](int mode, const std::vector<uint16_t>& indices) {
    GltfFile file;
    Json primitive = {{"attributes", {{"POSITION", file.Points(kSquare)}}}, {"mode", mode}};
    if (!indices.empty()) primitive["indices"] = file.Indices(indices);
    file.Top({{"name", "m"}, {"mesh", file.Mesh(primitive)}});
    const Loaded loaded(file);
    EXPECT_THAT(PointsOf(loaded.Mesh("m")), ElementsAre(0, 0, 0, 100, 0, 0, 0, 100, 0, 100, 100, 0));
    return TrianglesOf(loaded.Mesh("m"));
  };
  EXPECT_EQ(trianglesOf(4, {}), "012 ");
  EXPECT_EQ(trianglesOf(4, {0, 1, 2, 2, 1, 3}), "012 213 ");
  EXPECT_EQ(trianglesOf(5, {}), "012 132 ") << "every other triangle of a strip is turned";
  EXPECT_EQ(trianglesOf(5, {0, 1, 2, 2, 3}), "012 ") << "repeated vertices turn strips and are no triangles";
  EXPECT_EQ(trianglesOf(6, {0, 1, 3, 2}), "013 032 ");
  EXPECT_EQ(trianglesOf(4, {0, 1, 0, 0, 1, 2, 3, 3, 1}), "012 ");
  EXPECT_EQ(trianglesOf(4, {0, 1, 2, 0, 1, 77}), "012 ") << "a vertex that is not there loses its triangle";
}

TEST(Gltf, AccessorsMayBeSparseStridedAndOfAnyType) {
  GltfFile file;
  const size_t sparse = file.Add("accessors", {{"componentType", 5126}, {"type", "VEC3"}, {"count", 4}});
  file.root["accessors"][sparse]["sparse"] = {
      {"count", 1},
      {"indices", {{"bufferView", file.View(std::vector<uint8_t>{3})}, {"componentType", 5121}}},
      {"values", {{"bufferView", file.View(std::vector<float>{1, 2, 3})}}}};
  const size_t quantized = file.Add(
      "accessors", {{"bufferView", file.View(std::vector<int8_t>{-128, 0, 127, 9, 127, 0, 0, 9, 0, 127, 0, 9},
                                             {{"byteStride", 4}})},
                    {"componentType", 5120},
                    {"type", "VEC3"},
                    {"count", 3},
                    {"normalized", true}});
  const Json triangle = {{"indices", file.Indices({0, 1, 3})}};
  Json a = triangle;
  a["attributes"]["POSITION"] = sparse;
  file.Top({{"name", "sparse"}, {"mesh", file.Mesh(a)}});
  file.Top({{"name", "packed"},
            {"mesh", file.Mesh({{"attributes", {{"POSITION", quantized}}}})},
            {"scale", {0.01, 0.02, -0.01}}});
  const Loaded loaded(file);
  EXPECT_THAT(PointsOf(loaded.Mesh("sparse")), ElementsAre(0, 0, 0, 100, 200, 300));
  EXPECT_THAT(PointsOf(loaded.Mesh("packed")),
              testing::Pointwise(testing::DoubleNear(1e-6), {-1., 0., -1., 1., 0., 0., 0., 2., 0.}));
  EXPECT_EQ(TrianglesOf(loaded.Mesh("packed")), "021 ") << "what a mirror turns inside out is turned back";
}

TEST(Gltf, VerticesThatWereSplitAreJoinedAndCoordinatesTransformed) {
  GltfFile file;
  file.root["images"] = {{{"uri", "../art/skin%20a.png"}},
                         {{"name", "eye.v2.tga"}, {"uri", "data:image/jpeg;base64,/9gB"}}};
  file.root["textures"] = {{{"source", 0}}, {{"source", 1}}};
  const Json turn = {{"offset", {0.5, 0}}, {"rotation", 1.5707963267948966}, {"scale", {2, 1}}};
  file.root["materials"] = {
      {{"name", "skin"},
       {"pbrMetallicRoughness",
        {{"baseColorFactor", {1, 0.5, 0, 0.25}},
         {"baseColorTexture",
          {{"index", 0}, {"texCoord", 1}, {"extensions", {{"KHR_texture_transform", turn}}}}}}},
       {"alphaMode", "BLEND"}},
      {{"pbrMetallicRoughness", {{"baseColorTexture", {{"index", 1}}}}}}};
  std::vector<float> points = kSquare, normals, zeros(12), uvs;
  points.insert(points.end(), {0, 0, 0, 0, 0, 0});
  for (int i = 0; i < 6; ++i) normals.insert(normals.end(), {0, i == 4 ? 0.6f : 0.0f, i == 5 ? -1.0f : 1.0f});
  for (int i = 0; i < 6; ++i) uvs.insert(uvs.end(), {i == 4 ? 1.0f : 0.0f, 0.25f});
  const Json attributes = {{"POSITION", file.Points(points)},
                           {"NORMAL", file.Points(normals)},
                           {"TEXCOORD_0", file.Numbers(GltfFile::kF32, "VEC2", 2, zeros)},
                           {"TEXCOORD_1", file.Numbers(GltfFile::kF32, "VEC2", 2, uvs)}};
  const size_t mesh =
      file.Mesh({{"attributes", attributes}, {"indices", file.Indices({0, 1, 2, 4, 1, 3})}, {"material", 0}});
  file.root["meshes"][mesh]["primitives"].push_back(
      {{"attributes", attributes}, {"indices", file.Indices({5, 2, 1, 0, 2, 1, 4, 2, 1})}, {"material", 1}});
  file.Top({{"name", "m"}, {"mesh", mesh}});
  const Loaded loaded(file);
  KFbxMesh& read = loaded.Mesh("m");
  EXPECT_EQ(read.GetControlPointsCount(), 5) << "the back of a sheet stays a surface of its own";
  EXPECT_EQ(TrianglesOf(read), "012 013 421 021 021 ");
  const std::span<const double> pairs = read.GetUVs()->GetDirectArray();
  std::string corners;
  for (const int32_t pair : read.GetUVs()->GetIndexArray()) {
    for (size_t i = 0; i < 2; ++i)
      corners +=
          std::to_string(std::lround(4 * pairs[2 * static_cast<size_t>(pair) + i])) + (i == 0 ? "," : " ");
  }
  // u' = v + 0.5, v' = -2 u, with v upwards 1 + 2 u; the second primitive has set 0 as it is. In quarters.
  EXPECT_EQ(corners, "3,4 3,4 3,4 3,12 3,4 3,4 0,4 0,4 0,4 0,4 0,4 0,4 0,4 0,4 0,4 ");
  const std::span<const int32_t> indices = read.GetUVs()->GetIndexArray();
  EXPECT_EQ(indices[9], indices[12]) << "where two vertices are one point and equal in set 0";
  EXPECT_EQ(read.GetMaterials()->GetMaterialIndex(2, 0), 1);
  const auto& skin = dynamic_cast<const scene::KFbxSurfaceLambert&>(*loaded.Node("m").GetMaterial(0));
  EXPECT_THAT(Xyz(skin.diffuse), ElementsAre(1, 0.5, 0));
  EXPECT_EQ(skin.transparencyFactor, 0.75);
  EXPECT_EQ(skin.FindProperty("DiffuseColor")->GetSrcTexture(0)->GetFileName(), "skin%20a.png")
      << "a path that leads out is looked for by its name";
  const scene::KFbxTexture& eye =
      *loaded.Node("m").GetMaterial(1)->FindProperty("DiffuseColor")->GetSrcTexture(0);
  EXPECT_THAT(eye.GetFileName(), testing::EndsWith("eye_v2.jpg"));
  EXPECT_EQ(eye.GetVideo()->ReadContent(), "\xff\xd8\x01");
}

TEST(Gltf, MorphTargetsAreThereAsFarAsTheyAreOn) {
  GltfFile file;
  const size_t points = file.Points(kSquare);
  const auto target = [&](float x, float y) {
    return Json{{"POSITION", file.Points({0, 0, 0, x, y, 0, 0, 0, 0, 0, 0, 0})}};
  };
  const size_t mesh = file.Mesh({{"attributes", {{"POSITION", points}}},
                                 {"indices", file.Indices({0, 1, 2})},
                                 {"targets", {target(1, 0), target(0, 1), target(8, 8)}}});
  file.root["meshes"][mesh].update({{"weights", {0.5, 1, 0}}, {"extras", {{"targetNames", {"wide", 3}}}}});
  file.Top({{"name", "a"}, {"mesh", mesh}});
  file.Top({{"name", "b"}, {"mesh", mesh}, {"weights", {0, 2, 0, 9}}});
  const Loaded loaded(file);
  EXPECT_THAT(PointsOf(loaded.Mesh("a")), ElementsAre(0, 0, 0, 150, 100, 0, 0, 100, 0, 100, 100, 0));
  EXPECT_THAT(PointsOf(loaded.Mesh("b")), ElementsAre(0, 0, 0, 100, 200, 0, 0, 100, 0, 100, 100, 0));
  const auto& shapes = loaded.Mesh("a").GetShapes();
  ASSERT_EQ(shapes.size(), 2) << "as check tells them";
  EXPECT_EQ(shapes[0].record.Text(0), "wide");
  EXPECT_EQ(shapes[1].factor, 1.0);
}

TEST(Gltf, SkinsStandWhereTheyWereBound) {
  GltfFile file;
  // The root lies at y = 1, its child one above; at bind time the child was two above, and the mesh 5 to the side.
  const size_t child =
      file.Add("nodes", {{"name", "bone"}, {"translation", {0, 1, 0}}, {"scale", {2, 2, 2}}});
  const size_t between = file.Add("nodes", {{"children", {child}}});
  const size_t root = file.Top({{"name", "bone"}, {"translation", {0, 1, 0}}, {"children", {between}}});
  const Json triangle = {{"attributes", file.Held({{"POSITION", file.Points(kSquare)}}, {0, 1, 1, 1})}};
  const size_t mesh = file.Mesh(triangle);
  AddSkin(file, {root, child}, {{0, 0, 7}, {0, 7, 7}});  // which nothing wears
  // Of which nothing has weights.
  const size_t idle = file.Top({{"name", "ik"}, {"children", {file.Add("nodes", {{"name", "ik_end"}})}}});
  const size_t skin = AddSkin(file, {root, child, idle}, {{5, 0, 0}, {5, -2, 0}, {0, 0, 0}});
  file.Top({{"name", "a"}, {"mesh", mesh}, {"skin", skin}, {"translation", {9, 9, 9}}});
  file.Top({{"name", "a"}, {"mesh", mesh}, {"skin", AddSkin(file, {child, root}, {})}});
  const Loaded loaded(file);
  EXPECT_EQ(support::ChildNames(*loaded.scene->GetRootNode()), "bone a a.001");
  EXPECT_EQ(support::ChildNames(loaded.Node("bone")), "Bone_1") << "what lies between bones is one";
  const KFbxNode& upper = loaded.Node("bone.001");
  const scene::KFbxPose& pose = *loaded.scene->GetPose(0);
  ASSERT_TRUE(pose.IsBindPose());
  EXPECT_THAT(Xyz(pose.GetMatrix(pose.Find(&upper)).GetT()), ElementsAre(0, 300, 0));
  EXPECT_THAT(Xyz(upper.GetGlobalFromDefaultTake().GetS()), ElementsAre(1, 1, 1)) << "scale is in the points";
  EXPECT_EQ(PointsOf(loaded.Mesh("a"))[0], 500.0) << "the skin's place counts, not the node's";
  const scene::KFbxSkin& read = *loaded.Mesh("a").GetSkin(0);
  ASSERT_EQ(read.GetClusterCount(), 2);
  EXPECT_THAT(std::vector<int32_t>(read.GetCluster(1)->GetControlPointIndices().begin(),
                                   read.GetCluster(1)->GetControlPointIndices().end()),
              ElementsAre(1, 2, 3));
  EXPECT_THAT(Xyz(read.GetCluster(1)->GetTransformMatrix()->GetT()), ElementsAre(0, 0, 0));
  EXPECT_THAT(Xyz(read.GetCluster(1)->GetTransformLinkMatrix()->GetT()), ElementsAre(0, 300, 0));
  file.root["nodes"].back().update({{"scale", {1, -1, 1}}, {"translation", {9, 9, 9}}});
  EXPECT_EQ(TrianglesOf(Loaded(file).Mesh("a.001")), "021 ") << "as viewers see what a node mirrors";
  file.root["meshes"][mesh]["primitives"][0]["attributes"].erase("WEIGHTS_0");
  EXPECT_EQ(PointsOf(Loaded(file).Mesh("a.001"))[0], 900.0) << "a skin that holds nothing says nothing";
  // The second skin says that both stood at the same place, and the first one has placed them already.
  const scene::KFbxSkin& other = *loaded.Mesh("a.001").GetSkin(0);
  EXPECT_EQ(other.GetCluster(0)->GetLink(), &upper);
  EXPECT_THAT(Xyz(other.GetCluster(0)->GetTransformMatrix()->GetT()), ElementsAre(0, 200, 0));
}

TEST(Gltf, PosedSkeletonsStandAsTheyWereBound) {
  // Bound, the tip stood one above the root and was not turned; its mesh stands at z = 3.
  const std::vector<double> leaning{0, 0, 0.2, 0.979796}, turned{0, 0, 1, 1};
  const auto load = [&](double meshAt, const std::vector<std::vector<float>>& moves) {
    GltfFile file;
    const size_t sword = file.Add("nodes", {{"name", "sword"}, {"translation", {0, 1, 0}}});
    const size_t tip = file.Add(
        "nodes", {{"name", "tip"}, {"translation", {0, 1, 0}}, {"rotation", turned}, {"children", {sword}}});
    const size_t root = file.Top(
        {{"name", "root"}, {"translation", {0.2, 0, 3}}, {"rotation", leaning}, {"children", {tip}}});
    const size_t blade =
        file.Mesh({{"attributes", file.Held({{"POSITION", file.Points(kSquare)}}, {0, 0, 0, 0})}});
    file.Top({{"name", "blade"}, {"mesh", blade}, {"skin", AddSkin(file, {sword}, {{0, 0, 0}})}});
    const size_t mesh =
        file.Mesh({{"attributes", file.Held({{"POSITION", file.Points(kSquare)}}, {0, 1, 1, 1})}});
    const size_t skin = AddSkin(file, {root, tip}, moves);
    file.Top({{"name", "m"}, {"mesh", mesh}, {"skin", skin}, {"translation", {0, 0, meshAt}}});
    return Loaded(file);
  };
  const auto isNear = [](double x, double y, double z) {
    return testing::Pointwise(testing::DoubleNear(1e-3), {x, y, z});
  };
  const std::vector<std::vector<float>> bound{{0, 0, 0}, {0, -1, 0}};
  const Loaded upright = load(3, bound), far = load(9, bound), unbound = load(3, {});
  EXPECT_THAT(upright.BoundAt("root"), isNear(0, 0, 300)) << "where the mesh would have it";
  EXPECT_THAT(upright.BoundAt("sword"), isNear(0, 200, 300)) << "its skin comes first, but it goes along";
  EXPECT_THAT(upright.scene->GetRemarks(), testing::Contains(HasSubstr("is posed")));
  EXPECT_THAT(far.BoundAt("root"), isNear(20, 0, 300)) << "the mesh's node is nowhere near";
  EXPECT_THAT(unbound.BoundAt("tip"), isNear(-19.192, 92, 300)) << "without matrices all stay";
  EXPECT_THAT(unbound.BoundAt("sword"), isNear(-111.192, 52.808, 300));
  EXPECT_THAT(unbound.scene->GetRemarks(), testing::Not(testing::Contains(HasSubstr("is posed"))));
}

TEST(Gltf, SeveralTopJointsAreJoinedAndHungMeshesHeld) {
  GltfFile file;
  Json attributes = file.Held({{"POSITION", file.Points(kSquare)}}, {0, 0, 0, 0});
  // A second set of influences gives the other half.
  attributes["JOINTS_1"] = file.Numbers(
      GltfFile::kU16, "VEC4", 4, std::vector<uint16_t>{1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 9, 2, 0});
  attributes["WEIGHTS_1"] = file.Numbers(GltfFile::kF32, "VEC4", 4,
                                         std::vector<float>{1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 1, 1, 0});
  const size_t hat =
      file.Add("nodes", {{"name", "hat"},
                         {"mesh", file.Mesh({{"attributes", {{"POSITION", file.Points(kSquare)}}}})},
                         {"translation", {0, 1, 0}}});
  const size_t left = file.Top({{"name", "left"}, {"translation", {1, 0, 0}}, {"children", {hat}}});
  const size_t right = file.Top({{"name", "Root"}});
  const size_t neutral = file.Top({{"name", "neutral_bone"}});
  const size_t below = file.Add("nodes", {{"name", "ik_end"}});
  const size_t idle = file.Top({{"name", "ik"}, {"children", {below}}});
  const size_t mesh = file.Mesh({{"attributes", attributes}, {"indices", file.Indices({0, 1, 3})}});
  file.Top(
      {{"name", "body"}, {"mesh", mesh}, {"skin", AddSkin(file, {left, right, neutral, idle, below}, {})}});
  const Loaded loaded(file);
  EXPECT_EQ(support::ChildNames(loaded.Node("root2")), "left Root ik")
      << "without the bone of points without weights";
  EXPECT_THAT(loaded.scene->GetRemarks(), testing::Contains(HasSubstr("new bone \"root2\"")));
  EXPECT_EQ(loaded.Mesh("body").GetSkin(0)->GetClusterCount(), 2);
  EXPECT_EQ(loaded.Mesh("body").GetSkin(0)->GetCluster(1)->GetControlPointIndicesCount(), 4);
  const scene::KFbxSkin& held = *loaded.Mesh("hat").GetSkin(0);
  EXPECT_EQ(held.GetCluster(0)->GetLink(), &loaded.Node("left"));
  EXPECT_EQ(PointsOf(loaded.Mesh("hat"))[1], 100.0);
}

TEST(Gltf, HoweverManyPointsOfOnePlaceKeepTheirInfluences) {
  constexpr uint8_t kCount = 120;
  GltfFile file;
  std::vector<size_t> bones;
  std::vector<uint8_t> numbers(kCount);
  std::iota(numbers.begin(), numbers.end(), uint8_t{0});
  for (const uint8_t number : numbers) bones.push_back(file.Top({{"name", "b" + std::to_string(number)}}));
  const auto primitive = [&] {
    return Json{
        {"attributes", file.Held({{"POSITION", file.Points(std::vector<float>(3 * kCount))}}, numbers)}};
  };
  const size_t mesh = file.Mesh(primitive());
  file.root["meshes"][mesh]["primitives"].push_back(primitive());
  file.Top({{"name", "m"}, {"mesh", mesh}, {"skin", AddSkin(file, bones, {})}});
  const Loaded loaded(file);
  const scene::KFbxSkin& skin = *loaded.Mesh("m").GetSkin(0);
  ASSERT_EQ(skin.GetClusterCount(), kCount);
  EXPECT_EQ(skin.GetCluster(0)->GetControlPointIndicesCount(), 1) << "equal ones are one point";
  const std::span<const int32_t> last = skin.GetCluster(kCount - 1)->GetControlPointIndices();
  EXPECT_THAT(std::vector<int32_t>(last.begin(), last.end()), testing::Contains(kCount - 1));
  EXPECT_LT(loaded.Mesh("m").GetControlPointsCount(), 2 * kCount);
}

/// A small sound file to damage.
GltfFile Sound() {
  GltfFile file;
  const size_t joint = file.Top({{"name", "j"}});
  const Json primitive = {{"attributes", file.Held({{"POSITION", file.Points(kSquare)}}, {0, 0, 0, 0})},
                          {"indices", file.Indices({0, 1, 2})}};
  file.Top({{"name", "m"}, {"mesh", file.Mesh(primitive)}, {"skin", AddSkin(file, {joint}, {{0, 0, 0}})}});
  return file;
}

TEST(Gltf, ViewsAreUnpackedByMeshoptimizer) {
  const char* const library = "libmeshoptimizer.so.2d";
  const auto encodeVertices =
      reinterpret_cast<size_t (*)(unsigned char*, size_t, const void*, size_t, size_t)>(
          platform::LoadPlugin(library, "meshopt_encodeVertexBuffer"));
  const auto encodeIndices = reinterpret_cast<size_t (*)(unsigned char*, size_t, const unsigned*, size_t)>(
      platform::LoadPlugin(library, "meshopt_encodeIndexBuffer"));
  if (!encodeVertices || !encodeIndices) GTEST_SKIP() << "libmeshoptimizer2d is not installed";
  const Loaded plain(Sound());
  GltfFile file = Sound();
  std::vector<uint8_t> room(1000);
  const auto pack = [&](size_t number, size_t size, const char* mode, int stride, int count) {
    const size_t packed =
        file.View(std::vector<uint8_t>(room.begin(), room.begin() + static_cast<int>(size)));
    Json extension = file.root["bufferViews"][packed];
    extension.update({{"mode", mode}, {"byteStride", stride}, {"count", count}});
    Json& view = file.root["bufferViews"][number];
    std::memset(&file.data[view["byteOffset"].get<size_t>()], 0, view["byteLength"].get<size_t>());
    view["extensions"]["EXT_meshopt_compression"] = extension;
  };
  pack(0, encodeVertices(room.data(), room.size(), kSquare.data(), 4, 12), "ATTRIBUTES", 12, 4);
  const unsigned corners[] = {0, 1, 2};
  pack(3, encodeIndices(room.data(), room.size(), corners, 3), "TRIANGLES", 2, 3);
  file.root["buffers"] = {{{"byteLength", file.data.size()}},
                          {{"byteLength", 999}, {"uri", "not/there.bin"}}};
  file.root["bufferViews"][3]["buffer"] = 1;  // a plain copy that is missing
  const Loaded unpacked(file);
  EXPECT_EQ(PointsOf(unpacked.Mesh("m")), PointsOf(plain.Mesh("m")));
  EXPECT_EQ(TrianglesOf(unpacked.Mesh("m")), TrianglesOf(plain.Mesh("m")));
  const auto expect = [&](const char* member, const Json& value, const char* reason) {
    GltfFile damaged = file;
    damaged.root["bufferViews"][0]["extensions"]["EXT_meshopt_compression"][member] = value;
    EXPECT_THAT(Loaded(damaged).error, HasSubstr(reason)) << member;
  };
  for (const int stride : {0, 11, 260}) expect("byteStride", stride, "view is damaged");
  expect("count", 3, "view is damaged");
  expect("byteLength", 3, "view is damaged");
  expect("byteOffset", 9000, "leads out of its data");
  expect("filter", "QUATERNION", "view is damaged");
  const size_t plainSize = Sound().data.size();
  for (size_t i = plainSize; i < file.data.size(); ++i) {
    GltfFile damaged = file;
    damaged.data[i] = static_cast<char>(damaged.data[i] ^ 0x55);
    const Loaded ends(damaged);
  }
}

TEST(Gltf, DamagedAndHostileFilesAreRefusedWithTheReason) {
  ASSERT_EQ(Loaded(Sound()).error, "");
  const auto expect = [](const char* place, const Json& value, const char* reason) {
    GltfFile file = Sound();
    file.root[Json::json_pointer(place)] = value;
    EXPECT_THAT(Loaded(file).error, HasSubstr(reason)) << place;
  };
  expect("/asset/version", "1.0", "glTF 1.0 is too old");
  expect("/asset/minVersion", "2.7", "\"2.7\" is not known");
  expect("/nodes/1/mesh", 7, "mesh 7 does not exist; there are 1");
  expect("/nodes/1/mesh", -1, "is not what it should be");
  expect("/nodes/1/mesh", 0.5, "is not what it should be");
  expect("/nodes/0/children", {1, 1}, "is a child twice");
  expect("/skins/0/joints", {0, 1}, "fewer inverse bind matrices");
  expect("/accessors/0/count", 5, "leads out of its data");
  expect("/accessors/0/count", 1e15, "too many elements");
  expect("/accessors/0/type", "VEC2", "wrong type");
  expect("/accessors/0/sparse", {{"count", 9}, {"indices", {{"componentType", 5121}}}}, "sparse");
  expect("/accessors/0/componentType", 5124, "component type 5124");
  expect("/bufferViews/0/byteOffset", 1e14, "leads out of its data");
  expect("/bufferViews/0", {{"byteLength", 48}}, "leads out of its data");
  expect("/bufferViews/0/extensions", {{"EXT_meshopt_compression", {{"buffer", 0}}}}, "view is damaged");
  for (const char* uri :
       {"/etc/passwd", "../x.bin", "a/../../x", "file:///x", "http://x/y", "C:\\x", "%2e%2e/x"})
    expect("/buffers", {{{"byteLength", 4}, {"uri", uri}}}, "not below the model's folder");
  for (const char* uri : {"data:;base64,####", "data:;base64,AAAA#AAA", "data:;base64"})
    expect("/buffers", {{{"byteLength", 4}, {"uri", uri}}}, "damaged");
  expect("/buffers", {{{"byteLength", 400}, {"uri", "data:;base64,AAAA"}}}, "cut off");
  const auto expectText = [](const std::string& text, const char* reason) {
    EXPECT_THAT(Loaded(text).error, HasSubstr(reason));
  };
  for (const char* uri :
       {"DATA:text/plain,AA%20AAAAAAA", "data:;base64,AAAAAAAAAAAA", "data:;base64,AAAAAAAAAAAAAA=="}) {
    GltfFile file = Sound();
    file.root["buffers"] = {{{"byteLength", file.data.size()}}, {{"byteLength", 9}, {"uri", uri}}};
    file.root["bufferViews"][3] = {{"buffer", 1}, {"byteLength", 6}};
    EXPECT_EQ(Loaded(file).error, "");
  }
  EXPECT_EQ(Loaded(Sound().Glb() + "appended by somebody").error, "");
  GltfFile child = Sound();
  child.Top({{"children", {1}}});
  child.root["scenes"][0]["nodes"] = {1};
  child.root["extensionsUsed"] = {"EXT_mesh_gpu_instancing"};
  child.root["extensionsRequired"] = {"KHR_materials_new", "A_new"};
  EXPECT_THAT(Loaded(child).scene->GetRemarks(),
              testing::Contains(HasSubstr("missing: A_new, EXT_mesh_gpu_instancing")));
  EXPECT_TRUE(support::FindNode(*Loaded(child).scene, "m")) << "a scene that names no top node";
  expectText("{\"a\": 1}", "not a glTF file");
  expectText("{\"asset\": {", "damaged at byte");
  expectText("{\"asset\": 1e999}", "a number is too large");
  expectText("{\"asset\": " + std::string(300, '['), "nested too deep");
  expectText("{\"asset\": [" + std::string(3'000'000, ',') + "]}", "too many values");
  expectText(Sound().Glb().substr(0, 300), "cut off");
  std::string old = Sound().Glb();
  old[4] = 1;
  expectText(old, "glTF 1.0 is too old");
  GltfFile standIn = Sound();
  standIn.root["buffers"] = {{{"byteLength", standIn.data.size()}}, {{"byteLength", standIn.data.size()}}};
  standIn.root["bufferViews"][0]["buffer"] = 1;
  EXPECT_THAT(Loaded(standIn).error, HasSubstr("leads out of its data"))
      << "only the first one is in the file";
  GltfFile tiny = Sound();
  for (const char* data : {"data:;base64,AAAA", "data:;base64,####"}) {
    tiny.root["images"] = {{{"uri", data}}};
    tiny.root["textures"] = {{{"source", 0}}};
    tiny.root["materials"] = {{{"pbrMetallicRoughness", {{"baseColorTexture", {{"index", 0}}}}}}};
    tiny.root["meshes"][0]["primitives"][0]["material"] = 0;
    EXPECT_EQ(Loaded(tiny).error, "") << "a damaged picture is left to those who decode it";
  }
  // Very many nodes, joints and primitives, zeros that are nowhere in the file, and one mesh many times over.
  GltfFile file = Sound();
  for (int i = 0; i < 60'000; ++i) file.Add("nodes", Json::object());
  expectText(file.Glb(), "too much memory");
  file = Sound();
  const Json joints(std::vector<int>(1000));
  for (int i = 0; i < 400; ++i) file.Add("skins", {{"joints", joints}});
  expectText(file.Glb(), "too much memory");
  file = Sound();
  const Json primitive = file.root["meshes"][0]["primitives"][0];
  file.root["meshes"][0]["primitives"] = std::vector<Json>(300, primitive);
  for (int i = 0; i < 600; ++i) file.Top({{"mesh", 0}});
  expectText(file.Glb(), "too much memory");
  file = Sound();
  file.root["accessors"][0] = {{"componentType", 5126}, {"type", "VEC3"}, {"count", 50'000'000}};
  expectText(file.Glb(), "too much memory");
  file = Sound();
  const size_t large = file.Points(std::vector<float>(300'000));
  for (int i = 0; i < 500; ++i) file.Top({{"mesh", file.Mesh({{"attributes", {{"POSITION", large}}}})}});
  expectText(file.Glb(), "too much memory");
}

TEST(Gltf, NodesBeyondTheNumbersOfAPackageAreRefusedByName) {
  GltfFile file = Sound();
  const size_t arm = file.Add("nodes", {{"name", "arm"}, {"translation", {0, 1, 0}}});
  file.root["nodes"][0]["children"] = {arm,
                                       file.Add("nodes", {{"name", "lamp"}, {"translation", {0, 1e39, 0}}})};
  file.root["skins"].push_back({{"joints", {0, arm}}});
  file.Top({{"name", "hat"}, {"mesh", 0}});
  ASSERT_EQ(Loaded(file).error, "") << "what becomes neither a bone nor a mesh may stand anywhere";
  const auto expect = [&](size_t node, const Json& members, const char* refused) {
    GltfFile changed = file;
    changed.root["nodes"][node].update(members);
    const std::string start = std::string("node ") + refused + " is too large or too far away";
    EXPECT_THAT(Loaded(changed).error, testing::StartsWith(start)) << members;
  };
  const size_t hat = arm + 2;
  for (const double number : {1e37, 1e39, 1e200, 1e308}) {
    const Json far = {number, 0, 0}, large = {number, number, number};
    expect(0, {{"translation", far}}, "\"j\"");
    expect(0, {{"scale", large}}, "\"j\"");
    expect(0, {{"matrix", {number, 0, 0, 0, 0, number, 0, 0, 0, 0, number, 0, 0, 0, 0, 1}}}, "\"j\"");
    expect(arm, {{"translation", far}}, "\"arm\"");
    expect(hat, {{"scale", large}}, "\"hat\"");
  }
  expect(arm, {{"translation", {-1e39, 0, 0}}, {"name", ""}}, "2");
  file.root["nodes"][0]["scale"] = {1e19, 1e19, 1e19};
  expect(arm, {{"translation", {0, 0, 1e19}}}, "\"arm\"");
  file = Sound();
  file.root["nodes"][1]["translation"] = {1e39, 0, 0};
  EXPECT_EQ(PointsOf(Loaded(file).Mesh("m")), PointsOf(Loaded(Sound()).Mesh("m")))
      << "the place of a skinned mesh's node does not count";
}

TEST(Gltf, DataBesideTheModelIsRead) {
  const support::TempFolder folder;
  GltfFile file = Sound();
  file.root["buffers"] = {{{"byteLength", file.data.size()}, {"uri", "./a%20b.bin"}}};
  folder.Write("m.gltf", "\xef\xbb\xbf " + file.root.dump());
  EXPECT_THAT(Loaded("", folder.Path("m.gltf")).error,
              HasSubstr("\"./a%20b.bin\" beside it, which cannot be opened"));
  folder.Write("a b.bin", file.data);
  const Loaded loaded("", folder.Path("m.gltf"));
  EXPECT_EQ(loaded.error, "");
  EXPECT_EQ(TrianglesOf(loaded.Mesh("m")), "012 ");
  EXPECT_THAT(Loaded(file.root.dump()).error, HasSubstr("convert it from a folder"));
  file.root["buffers"][0]["uri"] = "%C3%a9.bin";
  folder.Write("m.gltf", file.root.dump());
  folder.Write("\xc3\xa9.bin", file.data);
  EXPECT_EQ(Loaded("", folder.Path("m.gltf")).error, "");
}

}  // namespace

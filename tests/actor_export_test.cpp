// SPDX-License-Identifier: MIT
//
// Exports read by libraries that are not ours.
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <gtest/gtest.h>

#include <assimp/Importer.hpp>
#include <map>
#include <nlohmann/json.hpp>

#include "actor/rigid_transform.h"
#include "export/export_gltf.h"
#include "export/export_obj.h"
#include "export/place_actor.h"
#include "support/sample_actor.h"

namespace {

using actor::Actor;
using nlohmann::json;
using support::SampleActor;

actor::EncodedPicture Encode(const actor::Picture& picture) {
  return {"PNG of " + picture.name,
          picture.name == "skin.tga" ? actor::Opacity::Cutout : actor::Opacity::Opaque};
}

json JsonOf(const std::string& glb) {
  size_t size = 0;
  for (size_t i = 16; i-- > 12;) size = size << 8 | static_cast<unsigned char>(glb[i]);
  return json::parse(glb.substr(20, size));
}

const aiMesh* FindMesh(const aiScene& scene, const std::string& name) {
  for (unsigned i = 0; i < scene.mNumMeshes; ++i) {
    if (name == scene.mMeshes[i]->mName.C_Str()) return scene.mMeshes[i];
  }
  return nullptr;
}

using Weights = std::map<std::string, float>;

/// Weights by the name of the bone, of each vertex.
std::vector<Weights> WeightsOf(const aiMesh& mesh) {
  std::vector<Weights> weights(mesh.mNumVertices);
  for (unsigned b = 0; b < mesh.mNumBones; ++b) {
    const aiBone& bone = *mesh.mBones[b];
    for (unsigned i = 0; i < bone.mNumWeights; ++i) {
      const aiVertexWeight& weight = bone.mWeights[i];
      if (weight.mWeight > 0.0f) weights[weight.mVertexId][bone.mName.C_Str()] = weight.mWeight;
    }
  }
  return weights;
}

void ExpectNear(const aiVector3D& a, const actor::Vector3& b, float tolerance) {
  EXPECT_NEAR(a.x, b[0], tolerance);
  EXPECT_NEAR(a.y, b[1], tolerance);
  EXPECT_NEAR(a.z, b[2], tolerance);
}

void ExpectSameMesh(const aiMesh& got, const actor::Mesh& mesh, const Actor& whole) {
  ASSERT_EQ(got.mNumVertices, mesh.vertices.size());
  ASSERT_EQ(got.mNumFaces, mesh.faces.size());
  const std::vector<Weights> weights = WeightsOf(got);
  for (unsigned i = 0; i < got.mNumVertices; ++i) {
    const actor::Vertex& vertex = mesh.vertices[i];
    ExpectNear(got.mVertices[i], vertex.position, 0.0f);
    ExpectNear(got.mNormals[i], vertex.normal, 1e-5f);
    EXPECT_NEAR(got.mTextureCoords[0][i].x, vertex.uv[0], 1e-6f);
    EXPECT_NEAR(got.mTextureCoords[0][i].y, 1.0f - vertex.uv[1], 1e-6f)
        << "the reader counts from the bottom";
    ASSERT_EQ(weights[i].size(), vertex.influenceCount);
    for (uint32_t k = 0; k < vertex.influenceCount; ++k) {
      const actor::Influence& influence = mesh.influences[vertex.firstInfluence + k];
      const std::string& bone = whole.skeleton.bones[static_cast<size_t>(influence.bone)].name;
      EXPECT_NEAR(weights[i].at(bone), influence.weight, 1e-5f) << bone;
    }
  }
  for (unsigned i = 0; i < got.mNumFaces; ++i) {
    for (unsigned k = 0; k < 3; ++k) {
      EXPECT_EQ(static_cast<int32_t>(got.mFaces[i].mIndices[k]), mesh.faces[i][k]);
    }
  }
}

aiMatrix4x4 WorldMatrix(const aiNode* node) {
  aiMatrix4x4 matrix;
  for (; node; node = node->mParent) matrix = node->mTransformation * matrix;
  return matrix;
}

/// At rest every bone has to leave the mesh where it is.
void ExpectRestIsIdentity(const aiScene& scene) {
  size_t checked = 0;
  for (unsigned m = 0; m < scene.mNumMeshes; ++m) {
    for (unsigned b = 0; b < scene.mMeshes[m]->mNumBones; ++b) {
      const aiBone& bone = *scene.mMeshes[m]->mBones[b];
      const aiNode* node = scene.mRootNode->FindNode(bone.mName);
      ASSERT_TRUE(node) << bone.mName.C_Str();
      EXPECT_TRUE((WorldMatrix(node) * bone.mOffsetMatrix).Equal(aiMatrix4x4(), 1e-3f)) << bone.mName.C_Str();
      ++checked;
    }
  }
  EXPECT_GT(checked, 0u);
}

TEST(ExportGlb, HoldsPositionsWeightsAndJointsOfThePackage) {
  Actor whole = SampleActor();
  // What a scaled root does: stored places are off, bone space and meshes are not.
  whole.skeleton.bones[0].translation[1] *= 3.0f;
  const std::string glb = ExportGlb(whole, "test", Encode);
  Assimp::Importer importer;
  const aiScene* scene = importer.ReadFileFromMemory(glb.data(), glb.size(), 0, "glb");
  ASSERT_TRUE(scene) << importer.GetErrorString();
  ASSERT_EQ(scene->mNumMeshes, whole.meshes.size());
  for (const actor::Mesh& mesh : whole.meshes) {
    const aiMesh* got = FindMesh(*scene, mesh.name);
    ASSERT_TRUE(got) << mesh.name;
    ExpectSameMesh(*got, mesh, whole);
  }
  ExpectRestIsIdentity(*scene);
}

TEST(PlaceActor, TurnsMeshesAndBonesAlike) {
  using Axes = decltype(actor::Placement::axes);
  const Actor before = SampleActor();
  const auto expected = [](const Axes& axes, const actor::Double3& v) {
    aiVector3D turned;
    for (unsigned i = 0; i < 3; ++i)
      turned[i] = static_cast<float>((axes[i][0] * v[0] + axes[i][1] * v[1] + axes[i][2] * v[2]) / 100);
    return turned;
  };
  // No turn, the six axes in turn, half turns about each axis, and a model that lies on its back.
  for (const Axes& axes :
       {Axes{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, Axes{{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}},
        Axes{{{1, 0, 0}, {0, -1, 0}, {0, 0, -1}}}, Axes{{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}},
        Axes{{{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}}}, Axes{{{1, 0, 0}, {0, 0, 1}, {0, -1, 0}}}}) {
    Actor placed = before;
    PlaceActor({axes, 0.01}, placed);
    const std::string glb = ExportGlb(placed, "test", Encode);
    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFileFromMemory(glb.data(), glb.size(), 0, "glb");
    ASSERT_TRUE(scene) << importer.GetErrorString();
    ExpectRestIsIdentity(*scene);
    const actor::Vector3& p = before.meshes[0].vertices[7].position;
    const aiVector3D corner = FindMesh(*scene, before.meshes[0].name)->mVertices[7];
    EXPECT_LT((corner - expected(axes, {p[0], p[1], p[2]})).Length(), 1e-5f);
    const auto were = ComposeSkeleton(before.skeleton), are = ComposeSkeleton(placed.skeleton);
    for (size_t i = 0; i < are.size(); ++i) {
      const auto& [x, y, z] = are[i].translation;
      const aiVector3D got(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
      EXPECT_LT((got - expected(axes, were[i].translation)).Length(), 1e-4f) << i;
    }
  }
}

TEST(ExportGlb, DescribesMaterialsAndPicturesOnce) {
  Actor whole = SampleActor();
  whole.document.meshes[2].bothSides = true;
  const json glb = JsonOf(ExportGlb(whole, "test", Encode));
  EXPECT_EQ(glb["images"].size(), 3u);
  std::map<std::string, json> materials;
  for (const json& material : glb["materials"]) materials[material["name"]] = material;
  EXPECT_EQ(materials["head"]["alphaMode"], "MASK");
  EXPECT_EQ(materials["head"]["doubleSided"], true);
  EXPECT_FALSE(materials["hat"].contains("doubleSided") || materials["hat"].contains("alphaMode"));
  const json plain =
      JsonOf(ExportGlb(whole, "test", [](const actor::Picture&) { return actor::EncodedPicture(); }));
  EXPECT_FALSE(plain.contains("images"));
  const double colour = plain["materials"][0]["pbrMetallicRoughness"]["baseColorFactor"][0];
  EXPECT_NEAR(colour, 0.604, 1e-3) << "204 of 255 on a screen, as an amount of light";
}

TEST(ExportGlb, TakesManyInfluencesSeveralTopBonesAndNoneAtAll) {
  Actor whole = SampleActor();
  for (actor::Bone& bone : whole.skeleton.bones) {
    bone.parent = -1;
    bone.children.clear();
  }
  actor::Mesh& mesh = whole.meshes[0];
  mesh.vertices[0].firstInfluence = static_cast<uint32_t>(mesh.influences.size());
  mesh.vertices[0].influenceCount = 21;
  for (int32_t i = 0; i < 21; ++i) mesh.influences.push_back({i % 20, i == 20 ? -1.0f : 0.5f});
  mesh.vertices[1].influenceCount = 0;
  const json glb = JsonOf(ExportGlb(whole, "test", Encode));
  const json& attributes = glb["meshes"][0]["primitives"][0]["attributes"];
  EXPECT_TRUE(attributes.contains("WEIGHTS_3") && attributes.contains("JOINTS_3"));
  EXPECT_FALSE(attributes.contains("JOINTS_4")) << "16 are enough";
  EXPECT_EQ(glb["nodes"][29]["children"].size(), 29u) << "one node above all joints";
  whole = Actor();
  EXPECT_EQ(JsonOf(ExportGlb(whole, "test", Encode)).size(), 1u) << "nothing but the head";
}

TEST(ExportGlb, NumbersVerticesAndBonesInTheWidthThatTheyNeed) {
  constexpr int kU8 = 5121, kU16 = 5123, kU32 = 5125;
  const auto widths = [](size_t vertices, size_t bones) {
    Actor whole = SampleActor();
    whole.meshes.resize(1);
    actor::Mesh& mesh = whole.meshes[0];
    mesh.vertices.resize(vertices, mesh.vertices[0]);
    mesh.faces = {{0, 1, static_cast<int32_t>(vertices) - 1}};
    while (whole.skeleton.bones.size() < bones) {
      whole.skeleton.bones.push_back(whole.skeleton.bones.back());
      whole.skeleton.bones.back().children.clear();
    }
    const json glb = JsonOf(ExportGlb(whole, "test", Encode));
    const json& primitive = glb["meshes"][0]["primitives"][0];
    const auto width = [&](const json& accessor) -> int {
      return glb["accessors"][accessor.get<size_t>()]["componentType"];
    };
    return std::pair(width(primitive["indices"]), width(primitive["attributes"]["JOINTS_0"]));
  };
  EXPECT_EQ(widths(65534, 256), std::pair(kU16, kU8));
  EXPECT_EQ(widths(65535, 257), std::pair(kU32, kU16)) << "the last number of 16 bits restarts strips";
}

TEST(ExportObj, HoldsTheMeshesAtRest) {
  Actor whole = SampleActor();
  whole.meshes[0].name = "body\n../a";
  whole.meshes[6].name = "body .._a";
  const auto files = ExportObj(whole, "out", Encode);
  ASSERT_EQ(files.size(), 5u);
  for (const actor::ExportedFile& file : files)
    EXPECT_EQ(file.name.find('/'), std::string::npos) << file.name;
  Assimp::Importer importer;
  const aiScene* scene = importer.ReadFileFromMemory(files[4].bytes.data(), files[4].bytes.size(), 0, "obj");
  ASSERT_TRUE(scene) << importer.GetErrorString();
  for (size_t m = 1; m < 6; ++m) {
    const actor::Mesh& mesh = whole.meshes[m];
    const aiMesh* got = FindMesh(*scene, mesh.name);
    ASSERT_TRUE(got) << mesh.name;
    ASSERT_EQ(got->mNumFaces, mesh.faces.size());
    for (unsigned i = 0; i < got->mNumFaces; ++i) {
      for (unsigned k = 0; k < 3; ++k) {
        const auto vertex = static_cast<size_t>(mesh.faces[i][k]);
        const unsigned corner = got->mFaces[i].mIndices[k];
        ExpectNear(got->mVertices[corner], mesh.vertices[vertex].position, 1e-4f);
        EXPECT_NEAR(got->mTextureCoords[0][corner].y, 1.0f - mesh.vertices[vertex].uv[1], 1e-5f);
      }
    }
  }
  EXPECT_TRUE(FindMesh(*scene, "body_.._a") && FindMesh(*scene, "body_.._a_")) << "names of their own";
  EXPECT_NE(files[3].bytes.find("newmtl head\n"), std::string::npos);
  EXPECT_NE(files[3].bytes.find("map_Kd out_skin.png\n"), std::string::npos);
  // Of a mesh that is drawn inwards the files have the faces turned, and another picture another name.
  whole = SampleActor();
  whole.meshes.resize(1);
  const std::string outwards = ExportObj(whole, "out", Encode).back().bytes;
  for (auto& face : whole.meshes[0].faces) std::swap(face[1], face[2]);
  EXPECT_EQ(ExportObj(whole, "out", Encode).back().bytes, outwards);
}

}  // namespace

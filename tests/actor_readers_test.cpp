// SPDX-License-Identifier: MIT
//
// What the converter wrote, read back; and what nobody should have written.
#include <gtest/gtest.h>

#include <cstring>

#include "actor/document_reader.h"
#include "actor/material_reader.h"
#include "actor/mesh_reader.h"
#include "actor/skeleton_reader.h"
#include "support/fbx_builder.h"
#include "support/sample_actor.h"

namespace {

using support::Patched;
using support::SampleActor;
using support::SampleContents;
using support::SamplePackage;

TEST(ReadBack, SkeletonAndMeshesAreWhatAnIndependentReaderSees) {
  const actor::Actor read = SampleActor();
  auto contents = SampleContents();
  const auto bones = support::ReadCsf(support::BytesOf(contents, "Skeleton.CSF"));
  ASSERT_EQ(read.skeleton.bones.size(), bones.size());
  for (size_t i = 0; i < bones.size(); ++i) {
    const actor::Bone& bone = read.skeleton.bones[i];
    EXPECT_EQ(std::tie(bone.name, bone.translation, bone.rotation, bone.boneSpaceTranslation,
                       bone.boneSpaceRotation, bone.parent, bone.children),
              std::tie(bones[i].name, bones[i].translation, bones[i].rotation, bones[i].spaceTranslation,
                       bones[i].spaceRotation, bones[i].parent, bones[i].children));
  }
  ASSERT_EQ(read.meshes.size(), 7u);
  for (const actor::Mesh& mesh : read.meshes) {
    const auto expected = support::ReadCmf(support::BytesOf(contents, mesh.name + ".cmf"));
    EXPECT_EQ(mesh.threadId, expected.threadId);
    EXPECT_EQ(mesh.faces, expected.faces);
    ASSERT_EQ(mesh.vertices.size(), expected.vertices.size());
    for (size_t i = 0; i < mesh.vertices.size(); ++i) {
      const actor::Vertex& vertex = mesh.vertices[i];
      const support::CmfVertex& wanted = expected.vertices[i];
      EXPECT_EQ(std::tie(vertex.position, vertex.normal, vertex.uv[0], vertex.uv[1]),
                std::tie(wanted.position, wanted.normal, wanted.u, wanted.v));
      ASSERT_EQ(vertex.influenceCount, wanted.influences.size());
      for (uint32_t k = 0; k < vertex.influenceCount; ++k) {
        const actor::Influence& influence = mesh.influences[vertex.firstInfluence + k];
        EXPECT_EQ(std::pair(influence.bone, influence.weight), wanted.influences[k]);
      }
    }
  }
}

TEST(ReadBack, EveryFileCutOffAnywhereOrFollowedByMoreIsRefused) {
  auto contents = SampleContents();
  std::string error;
  const auto expectRefused = [&](const std::string& bytes, auto read) {
    EXPECT_TRUE(read(bytes)) << error;
    EXPECT_FALSE(read(bytes + "x"));
    const size_t step = std::max<size_t>(bytes.size() / 500, 1);
    for (size_t size = 0; size < bytes.size(); size += step) {
      EXPECT_FALSE(read(std::string_view(bytes).substr(0, size))) << size;
    }
  };
  expectRefused(support::BytesOf(contents, "skeleton.csf"), [&](std::string_view bytes) {
    actor::Skeleton skeleton;
    return ReadSkeleton(bytes, skeleton, error);
  });
  expectRefused(support::BytesOf(contents, "hat_a.cmf"), [&](std::string_view bytes) {
    actor::Mesh mesh;
    return ReadMesh(bytes, mesh, error);
  });
  expectRefused(support::BytesOf(contents, "body.xrf"), [&](std::string_view bytes) {
    actor::Material material;
    return ReadMaterial(bytes, material, error);
  });
}

TEST(ReadBack, CountsAndNumbersThatCannotBeAreRefused) {
  auto contents = SampleContents();
  const std::string& skeletonBytes = support::BytesOf(contents, "skeleton.csf");
  const std::string& meshBytes = support::BytesOf(contents, "hat_a.cmf");
  std::string error;
  actor::Skeleton skeleton;
  for (const uint32_t count : {0u, 1u, 28u, 30u, 0x7fffffffu, 0xffffffffu}) {
    EXPECT_FALSE(ReadSkeleton(Patched(skeletonBytes, 8, count), skeleton, error)) << count;
  }
  EXPECT_FALSE(ReadSkeleton(Patched(skeletonBytes, 12, 0x7fffffffu), skeleton, error)) << "length of a name";
  // The first bone, "Mobo": its parent, then the first of its children.
  const size_t parent = 12 + 4 + 5 + 56;
  EXPECT_FALSE(ReadSkeleton(Patched(skeletonBytes, parent, 5), skeleton, error)) << "its own grandchild";
  EXPECT_FALSE(ReadSkeleton(Patched(skeletonBytes, parent + 8, 2), skeleton, error)) << "another's child";
  EXPECT_TRUE(skeleton.bones.empty());
  actor::Mesh mesh;
  for (const size_t field : {4u, 8u, 16u, 20u, 24u, 28u, 32u}) {
    EXPECT_FALSE(ReadMesh(Patched(meshBytes, field, 0x7fffffffu), mesh, error)) << field;
    EXPECT_FALSE(ReadMesh(Patched(meshBytes, field, 0xffffffffu), mesh, error)) << field;
  }
  EXPECT_FALSE(ReadMesh(Patched(meshBytes, meshBytes.size() - 4, 43), mesh, error));
  EXPECT_EQ(error, "face 47 names vertex 43, but there are 43");
  EXPECT_TRUE(mesh.vertices.empty());
}

TEST(ReadBack, MaterialsMayHaveOtherLineEndsButNoOtherOrder) {
  std::string error;
  actor::Material material;
  const std::string body =
      "<AMBIENT>1 -2 3 4</AMBIENT>\r\n<DIFFUSE>5 6 7 8</DIFFUSE>\r\n<SPECULAR>9 10 11 12</SPECULAR>\r\n"
      "<SHININESS>0.5</SHININESS>\r\n";
  ASSERT_TRUE(ReadMaterial(
      "<MATERIAL VERSION=\"1000\" NUMMAPS=\"1\">\r\n" + body + "<MAP>a & <b>.tga</MAP>\r\n</MATERIAL>\r\n",
      material, error))
      << error;
  EXPECT_EQ(material.ambient, (std::array<int32_t, 4>{1, -2, 3, 4}));
  EXPECT_EQ(material.shininess, 0.5);
  EXPECT_EQ(material.map, "a & <b>.tga");
  EXPECT_FALSE(
      ReadMaterial("<MATERIAL VERSION=\"1000\" NUMMAPS=\"1\">" + body + "</MATERIAL>", material, error));
  EXPECT_FALSE(ReadMaterial("<MATERIAL VERSION=\"1000\" NUMMAPS=\"0\"><DIFFUSE>5 6 7 8</DIFFUSE></MATERIAL>",
                            material, error));
  EXPECT_EQ(error, "its element AMBIENT is wrong or missing");
}

bool Unpacks(const std::string& bytes, const actor::ReadLimits& limits, actor::PackageContents& contents) {
  std::string error;
  return ReadPackageBytes(bytes, limits, contents, error);
}

TEST(ReadArchive, WhatUnpacksToMoreThanAllowedIsRefused) {
  actor::PackageContents contents;
  ASSERT_TRUE(Unpacks(SamplePackage(), {}, contents));
  actor::ReadLimits limits;
  limits.memberBytes = 104639;  // body.cmf has one more
  EXPECT_FALSE(Unpacks(SamplePackage(), limits, contents));
  limits = {};
  limits.totalBytes = 200000;
  EXPECT_FALSE(Unpacks(SamplePackage(), limits, contents));
  limits = {};
  limits.members = 18;
  EXPECT_FALSE(Unpacks(SamplePackage(), limits, contents));
  limits = {};
  limits.ratio = 1;
  limits.ratioFrom = 10000;
  EXPECT_FALSE(Unpacks(SamplePackage(), limits, contents));
  EXPECT_TRUE(contents.members.empty());
}

TEST(ReadArchive, DamageEndsInAMemberOrInARefusalButNeverInWrongBytes) {
  const actor::PackageContents sound = SampleContents();
  const std::string& bytes = SamplePackage();
  size_t damaged = 0;
  for (size_t at = 0; at < bytes.size(); at += 293) {
    std::string changed = bytes;
    changed[at] = static_cast<char>(changed[at] ^ 0x55);
    actor::PackageContents contents;
    if (!Unpacks(changed, {}, contents)) continue;
    for (const actor::Member& member : contents.members) {
      const actor::Member* original = sound.Find(member.name);
      if (!member.sound) ++damaged;
      if (member.sound && original) {
        EXPECT_EQ(member.bytes, original->bytes) << member.name << " at " << at;
      }
    }
  }
  EXPECT_GT(damaged, 50u);
  for (size_t size = 0; size < bytes.size(); size += 1999) {
    actor::PackageContents contents;
    EXPECT_FALSE(Unpacks(bytes.substr(0, size), {}, contents)) << size;
  }
}

TEST(ReadArchive, SizesThatAreDeclaredDoNotCount) {
  // The directory's entry of the first member: packed size at 20, unpacked size at 24.
  const std::string& bytes = SamplePackage();
  const size_t entry = bytes.find("PK\1\2");
  for (const uint32_t size : {0u, 1u, 0xfffffff0u}) {
    actor::PackageContents contents;
    if (!Unpacks(Patched(bytes, entry + 24, size), {}, contents)) continue;
    EXPECT_FALSE(contents.members[0].sound) << size;
    EXPECT_TRUE(contents.members[0].bytes.empty());
  }
  actor::PackageContents contents;
  EXPECT_FALSE(Unpacks(Patched(bytes, entry + 20, 0x7fffffffu), {}, contents)) << "beyond the archive's end";
}

}  // namespace

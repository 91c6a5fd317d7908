// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/mesh_filter.h"
#include "support/character.h"
#include "support/test_host.h"

namespace {

using support::Character;
using support::TestHost;
using testing::ElementsAre;

/// A strip of triangles (0 1 2) (1 2 3) ... with a material number each.
Character StripOf(const std::vector<double>& numbers, int materialCount) {
  Character model;
  std::vector<double> points, polygons;
  for (size_t i = 0; i < numbers.size() + 2; ++i) {
    const auto x = static_cast<double>(i);
    points.insert(points.end(), {x, static_cast<double>(i % 2), 0});
    if (i >= 2) polygons.insert(polygons.end(), {x - 2, x - 1, -(x + 1)});
  }
  const auto mesh = model.Mesh("Body", points, polygons);
  Character::MaterialNumbers(mesh, numbers);
  for (int i = 0; i < materialCount; ++i) model.Material(mesh);
  return model;
}

TEST(MaterialSlices, HoldTheTrianglesOfOneMaterialAndOnlyTheirVertices) {
  TestHost host(StripOf({0, 1, 0, 2}, 3));
  EXPECT_EQ(host.ReadPackage().Names(),
            "skeleton.csf model.xfg Body_a.cmf Body_b.cmf Body.cmf Body_a.xrf Body_b.xrf Body.xrf");
  const auto body = host.Mesh("Body"), second = host.Mesh("Body_a"), third = host.Mesh("Body_b");
  EXPECT_THAT(body.faces, ElementsAre(ElementsAre(0, 1, 2), ElementsAre(2, 3, 4)));
  EXPECT_THAT(second.faces, ElementsAre(ElementsAre(0, 1, 2)));
  ASSERT_EQ(second.vertices.size(), 3u);
  EXPECT_EQ(second.vertices[0].position[0], 1.0f);
  ASSERT_EQ(third.vertices.size(), 3u);
  EXPECT_EQ(third.vertices[0].position[0], 3.0f);
  EXPECT_EQ(body.threadId, 151);
  EXPECT_EQ(second.threadId, 152);
  EXPECT_EQ(third.threadId, 153);
}

TEST(MaterialSlices, WithoutTrianglesGetNoMeshFileButAMaterial) {
  TestHost host(StripOf({0, 2}, 3));
  EXPECT_THAT(host.LinesThatBegin("Writing CMF"),
              ElementsAre("Writing CMF Mesh: Body", "Writing CMF Mesh: Body_b"));
  EXPECT_THAT(host.LinesThatBegin("Writing Material"),
              ElementsAre("Writing Material: Body", "Writing Material: Body_a", "Writing Material: Body_b"));
  EXPECT_THAT(host.LinesThatBegin(">>> Error"), ElementsAre(">>> Error in opening Body_a.cmf for reading"));
  EXPECT_EQ(host.ReadPackage()["Body_a.cmf"], "");
  EXPECT_EQ(host.Mesh("Body_b").threadId, 152);
}

TEST(MaterialSlices, LeaveOutTrianglesOfMaterialsThatTheNodeLacksUnlessItHasOne) {
  TestHost host(StripOf({0, 7, -1, 1}, 2));
  EXPECT_EQ(host.Mesh("Body").faces.size(), 1u);
  EXPECT_EQ(host.Mesh("Body_a").faces.size(), 1u);
  ASSERT_EQ(host.Convert(StripOf({0, 1, 5}, 1).Text()), ts3d::ConversionResult::Success);
  EXPECT_EQ(host.Mesh("Body").faces.size(), 3u);
}

TEST(DegenerateTriangles, AreRemovedOnlyFromMeshesOfTwoMaterials) {
  for (const int materialCount : {0, 1, 2}) {
    Character model;
    const auto mesh =
        model.Mesh("Body", {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}, {0, 1, -3, 1, 1, -4, 3, 1, -4, 2, 3, -4});
    Character::MaterialNumbers(mesh, {0, 0, 0, 1});
    for (int i = 0; i < materialCount; ++i) model.Material(mesh);
    TestHost host(model);
    const size_t removed = materialCount == 2 ? 1 : 0;
    EXPECT_EQ(host.Told(">>> Removed : 3 Degenerate Polygons(s)"), removed);
    EXPECT_EQ(host.Mesh("Body").faces.size(), materialCount == 2 ? 1u : 4u);
    EXPECT_EQ(host.job.polygonTotal, 4);
  }
}

TEST(Triangulation, IsToldOnceForMeshesOfOtherPolygonsOnly) {
  Character model;
  model.Triangle("Plain");
  model.Mesh("Qu:ads", {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}, {0, 1, 2, -4, 3, 2, 1, -1, 0, 1, -5, 0, 9, -3});
  TestHost host(model);
  EXPECT_THAT(host.LinesThatBegin(">>> Left"),
              ElementsAre(">>> Left out 2 Polygon(s) with vertices that do not exist in: Qads"));
  EXPECT_THAT(host.LinesThatBegin("Triangulated"), ElementsAre("Triangulated the Mesh: Qads"));
  EXPECT_EQ(host.Mesh("Qads").faces.size(), 4u);
  EXPECT_EQ(host.job.polygonTotal, 5);
  EXPECT_EQ(host.job.vertexTotal, 7);
}

TEST(MeshFilter, DropsTheHeadPartsOfActorsButNoNamesThatOnlyResembleThem) {
  for (const char* name : {"HEAD", "head1", "Head_", "head_ncl1_1", "HEAD_NCL1_1", "upper_teeth",
                           "lower_teeth2", "tongue", "left_eye", "right_eyeB", "inner_mouth", "mouth",
                           "mouth2", "Mouth_", "socket", "sockets", "sock", "socks"}) {
    ts3d::ConversionJob job;
    EXPECT_FALSE(skipThisMesh(name, job.Filter())) << name;
    job.actorType = ts3d::ActorType::Baby;
    EXPECT_TRUE(skipThisMesh(name, job.Filter())) << name;
  }
  ts3d::ConversionJob job;
  job.actorType = ts3d::ActorType::Female;
  for (const char* name : {"head_01", "heads_up", "hea", "forehead", "head_ncl1_2", "mouth_left", "sockets2",
                           "socks_l", "left_eyes2", "teeth", "eye", "Body", ""}) {
    EXPECT_FALSE(skipThisMesh(name, job.Filter())) << name;
  }
}

TEST(MeshFilter, DropsWholeNamesOfTheExclusionListForEveryModel) {
  Character model;
  for (const char* name : {"Body", "Hat", "Bod"}) model.Triangle(name);
  TestHost host;
  host.job.settings.exclusionList = {"bODY", ""};
  ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
  EXPECT_EQ(host.ReadPackage().Names(), "skeleton.csf model.xfg Hat.cmf Bod.cmf Hat.xrf Bod.xrf");
  EXPECT_EQ(host.Document().find("Body"), std::string::npos);
  EXPECT_NE(host.Document().find("threadID=\"151\">Hat.xrf"), std::string::npos);
  EXPECT_EQ(host.job.vertexTotal, 6);
}

TEST(MeshFilter, DropsAllPartsOfAnExcludedMeshAndSinglePartsWithTheirThread) {
  Character model = StripOf({0, 1, 2}, 3);
  model.Triangle("Hat");
  const std::pair<const char*, const char*> cases[] = {
      {"body", "skeleton.csf model.xfg Hat.cmf Hat.xrf"},
      {"Body_A", "skeleton.csf model.xfg Body_b.cmf Body.cmf Hat.cmf Body_b.xrf Body.xrf Hat.xrf"}};
  for (const auto& [excluded, members] : cases) {
    TestHost host;
    host.job.settings.exclusionList = {excluded};
    ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
    EXPECT_EQ(host.ReadPackage().Names(), members);
    EXPECT_THAT(host.LinesThatBegin(">>> Error"), ElementsAre());
    const std::string thread = std::to_string(host.Mesh("Hat").threadId);
    EXPECT_NE(host.Document().find("threadID=\"" + thread + "\">Hat.xrf"), std::string::npos) << excluded;
  }
}

}  // namespace

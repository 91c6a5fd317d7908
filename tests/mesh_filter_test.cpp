// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "mesh/mesh_filter.h"
#include "support/character.h"
#include "support/test_host.h"

namespace {

TEST(MeshFilter, DropsTheHeadPartsOfActors) {
  for (const char* name : {"HEAD", "head1", "Head_", "head_ncl1_1", "HEAD_NCL1_1", "upper_teeth",
                           "lower_teeth2", "tongue", "left_eye", "right_eyeB", "inner_mouth", "mouth",
                           "mouth2", "Mouth_", "socket", "sockets", "sock", "socks"}) {
    for (const ts3d::ActorType type : {ts3d::ActorType::Male, ts3d::ActorType::Baby}) {
      ts3d::ConversionJob job;
      job.actorType = type;
      EXPECT_TRUE(skipThisMesh(name, job)) << name;
      job.actorType = ts3d::ActorType::None;
      EXPECT_FALSE(skipThisMesh(name, job)) << name;
    }
  }
}

TEST(MeshFilter, KeepsNamesThatOnlyResembleHeadParts) {
  ts3d::ConversionJob job;
  job.actorType = ts3d::ActorType::Female;
  for (const char* name : {"head_01", "heads_up", "hea", "forehead", "head_ncl1_2", "mouth_left", "sockets2",
                           "socks_l", "left_eyes2", "teeth", "eye", "Body", ""}) {
    EXPECT_FALSE(skipThisMesh(name, job)) << name;
  }
}

TEST(MeshFilter, DropsWholeNamesOfTheExclusionListForEveryModel) {
  ts3d::ConversionJob job;
  job.exclusionList = {"Hat", ""};
  EXPECT_TRUE(skipThisMesh("hAT", job));
  EXPECT_TRUE(skipThisMesh("", job));
  EXPECT_FALSE(skipThisMesh("Hat1", job));
  EXPECT_FALSE(skipThisMesh("Ha", job));
}

TEST(ExcludedMeshes, LeaveNoFilesNoLinesAndNoTotals) {
  support::Character model;
  model.Triangle("Hat", model.Triangle("Body").node);
  support::TestHost host;
  host.job.exclusionList = {"body"};
  ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
  EXPECT_EQ(host.ReadPackage().Names(), "skeleton.csf model.xfg Hat.cmf Hat.xrf");
  EXPECT_EQ(host.Document().find("Body"), std::string::npos);
  EXPECT_NE(host.Document().find("threadID=\"151\">Hat.xrf"), std::string::npos);
  EXPECT_EQ(host.job.vertexTotal, 3);
  EXPECT_EQ(host.job.polygonTotal, 1);
}

}  // namespace

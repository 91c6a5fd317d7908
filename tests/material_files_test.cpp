// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "material/extract_material.h"
#include "material/xrf_writer.h"
#include "support/test_host.h"

namespace {

using support::TestHost;

std::string Xrf(const char* ambient, const char* diffuse, const char* specular, const char* shininess,
                bool hasMap = false) {
  return std::string("<MATERIAL VERSION=\"1000\" NUMMAPS=\"") + (hasMap ? "1" : "0") + "\">\n   <AMBIENT>" +
         ambient + "</AMBIENT>\n   <DIFFUSE>" + diffuse + "</DIFFUSE>\n   <SPECULAR>" + specular +
         "</SPECULAR>\n   <SHININESS>" + shininess + "</SHININESS>\n" + (hasMap ? "   <MAP>0</MAP>\n" : "") +
         "</MATERIAL>";
}

TEST(MaterialFile, HoldsTheColoursOfItsClassCutOffNotRounded) {
  scene::KFbxSurfacePhong phong("phong");
  phong.ambient = {1e300, -0.5, 0.25};
  phong.diffuse = {1.0, 0.5, 0.0};
  phong.specular = {0.999, 0.004, -0.001};
  phong.transparencyFactor = 1.0;
  phong.shininess = 20.0;
  scene::KFbxSurfaceLambert lambert("lambert");
  lambert.ambient = {0.2, 0.2, 0.2};
  lambert.diffuse = {0.8, 0.6, 0.4};
  lambert.transparencyFactor = 0.5;
  const scene::KFbxSurfaceMaterial unknown("unknown");
  const std::pair<const scene::KFbxSurfaceMaterial*, std::string> cases[] = {
      {&phong, Xrf("2147483647 -127 63 255", "255 127 0 255", "254 1 0 255", "20.000000")},
      {&lambert, Xrf("51 51 51 127", "204 153 102 127", "0 0 0 127", "0.000000")},
      {&unknown, Xrf("0 0 0 255", "0 0 0 255", "0 0 0 255", "0.300000")}};
  for (const auto& [material, text] : cases) {
    TestHost host;
    host.job.files.modelDirectory = host.ModelPath("");
    ts3d::ActorPackage package(host.job.files, host.job.settings, host.job.status);
    ts3d::MaterialOutput out{host.job.files,  package, host.job.settings,
                             host.job.status, nullptr, host.job.Filter()};
    WriteMaterial("skin", *material, false, out);
    EXPECT_EQ(support::ReadWholeFile(host.folder.Path("skin.xrf")), text);
    EXPECT_EQ(host.lines.front(), "Writing Material: skin");
    EXPECT_EQ(host.Told("Unkown type of Material"), material == &unknown ? 1u : 0u);
  }
}

TEST(MaterialFile, OfAMeshWithoutMaterialsIsGrey) {
  for (const bool hasMap : {false, true}) {
    TestHost host;
    host.job.files.modelDirectory = host.ModelPath("");
    ts3d::ActorPackage package(host.job.files, host.job.settings, host.job.status);
    ts3d::MaterialOutput out{host.job.files,  package, host.job.settings,
                             host.job.status, nullptr, host.job.Filter()};
    ts3d::WriteDefaultMaterial("Body", hasMap, out);
    constexpr const char* kGrey = "127 127 127 255";
    EXPECT_EQ(support::ReadWholeFile(host.folder.Path("Body.xrf")),
              Xrf(kGrey, kGrey, kGrey, "0.250000", hasMap));
  }
}

}  // namespace

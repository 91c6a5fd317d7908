// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>

#include "material/extract_material.h"
#include "material/xrf_writer.h"
#include "support/test_host.h"

namespace {

using support::TestHost;
using testing::ElementsAre;
using testing::HasSubstr;

/// The material file that is written for `material`, with status lines in `host`.
std::string XrfOf(const scene::KFbxSurfaceMaterial& material, TestHost& host) {
  host.job.modelDirectory = host.ModelPath("");
  ts3d::PackagedNameSet names;
  WriteMaterial("skin", material, false, host.job, names);
  return support::ReadWholeFile(host.folder.Path("skin.xrf"));
}

std::string XrfOf(const ts3d::MaterialRecord& record) {
  TestHost host;
  host.job.modelDirectory = host.ModelPath("");
  WriteXrfFile(record, host.job);
  return support::ReadWholeFile(host.folder.Path(record.name + ".xrf"));
}

TEST(MaterialFile, OfAPhongMaterialHoldsItsColoursCutOffNotRounded) {
  scene::KFbxSurfacePhong phong("phong");
  phong.ambient = {2.0, -0.5, 0.25};
  phong.diffuse = {1.0, 0.5, 0.0};
  phong.specular = {0.999, 0.004, -0.001};
  phong.transparencyFactor = 1.0;
  phong.shininess = 20.0;
  TestHost host;
  EXPECT_EQ(XrfOf(phong, host),
            "<MATERIAL VERSION=\"1000\" NUMMAPS=\"0\">\n"
            "   <AMBIENT>510 -127 63 255</AMBIENT>\n"
            "   <DIFFUSE>255 127 0 255</DIFFUSE>\n"
            "   <SPECULAR>254 1 0 255</SPECULAR>\n"
            "   <SHININESS>20.000000</SHININESS>\n"
            "</MATERIAL>");
  EXPECT_THAT(host.lines, ElementsAre("Writing Material: skin"));
}

TEST(MaterialFile, OfALambertMaterialIsBlackAndDullInItsHighlights) {
  scene::KFbxSurfaceLambert lambert("lambert");
  lambert.ambient = {0.2, 0.2, 0.2};
  lambert.diffuse = {0.8, 0.6, 0.4};
  lambert.transparencyFactor = 0.5;
  TestHost host;
  EXPECT_EQ(XrfOf(lambert, host),
            "<MATERIAL VERSION=\"1000\" NUMMAPS=\"0\">\n"
            "   <AMBIENT>51 51 51 127</AMBIENT>\n"
            "   <DIFFUSE>204 153 102 127</DIFFUSE>\n"
            "   <SPECULAR>0 0 0 127</SPECULAR>\n"
            "   <SHININESS>0.000000</SHININESS>\n"
            "</MATERIAL>");
}

TEST(MaterialFile, OfAnUnknownClassKeepsTheDefaults) {
  const scene::KFbxSurfaceMaterial unknown("unknown");
  TestHost host;
  EXPECT_EQ(XrfOf(unknown, host),
            "<MATERIAL VERSION=\"1000\" NUMMAPS=\"0\">\n"
            "   <AMBIENT>0 0 0 255</AMBIENT>\n"
            "   <DIFFUSE>0 0 0 255</DIFFUSE>\n"
            "   <SPECULAR>0 0 0 255</SPECULAR>\n"
            "   <SHININESS>0.300000</SHININESS>\n"
            "</MATERIAL>");
  EXPECT_THAT(host.lines, ElementsAre("Writing Material: skin", "Unkown type of Material"));
}

TEST(MaterialFile, OfAMeshWithoutMaterialsIsGrey) {
  for (const bool hasMap : {false, true}) {
    TestHost host;
    host.job.modelDirectory = host.ModelPath("");
    ts3d::WriteDefaultMaterial("Body", hasMap, host.job);
    EXPECT_EQ(support::ReadWholeFile(host.folder.Path("Body.xrf")),
              std::string("<MATERIAL VERSION=\"1000\" NUMMAPS=\"") + (hasMap ? "1" : "0") +
                  "\">\n"
                  "   <AMBIENT>127 127 127 255</AMBIENT>\n"
                  "   <DIFFUSE>127 127 127 255</DIFFUSE>\n"
                  "   <SPECULAR>127 127 127 255</SPECULAR>\n"
                  "   <SHININESS>0.250000</SHININESS>\n" +
                  (hasMap ? "   <MAP>0</MAP>\n" : "") + "</MATERIAL>");
  }
}

TEST(MaterialFile, IsNotWrittenForTheHeadPartsOfActors) {
  TestHost host;
  host.job.modelDirectory = host.ModelPath("");
  host.job.actorType = ts3d::ActorType::Boy;
  ts3d::WriteDefaultMaterial("head", false, host.job);
  ts3d::WriteDefaultMaterial("heads_up", false, host.job);
  EXPECT_EQ(host.FileNames(), "heads_up.xrf");
}

TEST(MaterialFile, SurvivesAbsurdColours) {
  ts3d::MaterialRecord record;
  record.name = "m";
  record.ambient = {1e300, -1e300, 0};
  EXPECT_THAT(XrfOf(record), HasSubstr("<AMBIENT>2147483647 -2147483647 0 255</AMBIENT>"));
}

TEST(MaterialFile, HasPointsInItsNumbersInEveryLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  bool found = false;
  for (const char* name :
       {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "fr_FR.utf8", "nl_NL.UTF-8"}) {
    found = found || (std::setlocale(LC_ALL, name) && *std::localeconv()->decimal_point == ',');
  }
  if (!found) GTEST_SKIP() << "no locale with a decimal comma";
  ts3d::MaterialRecord record;
  record.name = "m";
  record.shininess = 1234.5;
  const std::string text = XrfOf(record);
  std::setlocale(LC_ALL, before.c_str());
  EXPECT_THAT(text, HasSubstr("<SHININESS>1234.500000</SHININESS>"));
}

}  // namespace

// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "scene/model/material.h"
#include "support/load_scene.h"

namespace {

using scene::KFbxSurfaceLambert;
using scene::KFbxSurfaceMaterial;
using scene::KFbxSurfacePhong;
using support::FbxFile;
using support::FbxRecords;
using support::Property;
using support::Xyz;
using testing::ElementsAre;

/// A scene whose node "node" (1) has the material 2, which `file` already holds.
std::unique_ptr<scene::KFbxScene> SceneWithMaterial(FbxFile file) {
  file.Model(1, "node");
  file.Connect(1, 0);
  file.Connect(2, 1);
  return support::LoadScene(file);
}

KFbxSurfaceMaterial& MaterialOf(scene::KFbxScene& scene) {
  return *support::FindNode(scene, "node")->GetMaterial(0);
}

/// "lambert", "phong" or "other", by the class made for a shading model.
std::string ClassFor(const char* shadingModel) {
  FbxFile file;
  file.Material(2, "m", shadingModel);
  const auto scene = SceneWithMaterial(std::move(file));
  if (dynamic_cast<KFbxSurfaceLambert*>(&MaterialOf(*scene))) return "lambert";
  return dynamic_cast<KFbxSurfacePhong*>(&MaterialOf(*scene)) ? "phong" : "other";
}

TEST(Materials, TheShadingModelTellsTheClassInAnyCase) {
  for (const char* model : {"lambert", "Lambert", "LAMBERT"}) EXPECT_EQ(ClassFor(model), "lambert") << model;
  for (const char* model : {"phong", "Phong", "pHONG"}) EXPECT_EQ(ClassFor(model), "phong") << model;
  for (const char* model : {"", "unknown", "phong1", "phon"}) EXPECT_EQ(ClassFor(model), "other") << model;
  FbxFile propertyOnly;
  propertyOnly.Template("Material", {Property("ShadingModel", {"Lambert"})});
  propertyOnly.Object("Material", 2, "m");
  const auto scene = SceneWithMaterial(std::move(propertyOnly));
  EXPECT_NE(dynamic_cast<KFbxSurfaceLambert*>(&MaterialOf(*scene)), nullptr);
}

/// The phong material with these own and template properties.
struct LoadedPhong {
  explicit LoadedPhong(FbxRecords own, FbxRecords defaults = {}) {
    FbxFile file;
    file.Template("Material", std::move(defaults));
    file.Material(2, "m", "phong", std::move(own));
    scene = SceneWithMaterial(std::move(file));
  }
  const KFbxSurfacePhong& operator*() const { return dynamic_cast<KFbxSurfacePhong&>(MaterialOf(*scene)); }

  std::unique_ptr<scene::KFbxScene> scene;
};

TEST(Materials, ColoursAreReadAsTheyAreWithoutTheirFactors) {
  const LoadedPhong phong({Property("AmbientColor", {0.1, 0.2, 0.3}),
                           Property("DiffuseColor", {1.0, 2.0, 0.5}),
                           Property("SpecularColor", {0.4, 0.5, 0.6}),
                           Property("EmissiveColor", {0.7, 0.8, 0.9}), Property("Diffuse", {9.0, 9.0, 9.0}),
                           Property("DiffuseFactor", {0.5}), Property("TransparencyFactor", {0.25}),
                           Property("Shininess", {5.0}), Property("ShininessExponent", {33.0})});
  EXPECT_THAT(Xyz((*phong).ambient), ElementsAre(0.1, 0.2, 0.3));
  EXPECT_THAT(Xyz((*phong).diffuse), ElementsAre(1, 2, 0.5));
  EXPECT_THAT(Xyz((*phong).specular), ElementsAre(0.4, 0.5, 0.6));
  EXPECT_THAT(Xyz((*phong).emissive), ElementsAre(0.7, 0.8, 0.9));
  EXPECT_EQ((*phong).transparencyFactor, 0.25);
  EXPECT_EQ((*phong).shininess, 33);
}

TEST(Materials, WhatTheMaterialLeavesOutComesFromItsTemplateElseFromTheUsualDefaults) {
  const LoadedPhong phong(
      {Property("AmbientColor", {0.1, 0.2, 0.3}), Property("Shininess", {5.0})},
      {Property("AmbientColor", {1.0, 1.0, 1.0}), Property("DiffuseColor", {0.5, 0.5, 0.5})});
  EXPECT_THAT(Xyz((*phong).ambient), ElementsAre(0.1, 0.2, 0.3));
  EXPECT_THAT(Xyz((*phong).diffuse), ElementsAre(0.5, 0.5, 0.5));
  EXPECT_EQ((*phong).shininess, 5);
  const LoadedPhong plain({});
  EXPECT_THAT(Xyz((*plain).ambient), ElementsAre(0.2, 0.2, 0.2));
  EXPECT_THAT(Xyz((*plain).diffuse), ElementsAre(0.8, 0.8, 0.8));
  EXPECT_THAT(Xyz((*plain).specular), ElementsAre(0.2, 0.2, 0.2));
  EXPECT_THAT(Xyz((*plain).emissive), ElementsAre(0, 0, 0));
  EXPECT_EQ((*plain).transparencyFactor, 0);
  EXPECT_EQ((*plain).shininess, 20);
}

TEST(Materials, ANodesMaterialsStandInTheOrderOfTheirConnectionsAndMayRepeat) {
  FbxFile file;
  file.Model(1, "node");
  for (const int id : {2, 3}) file.Material(id, std::to_string(id), "phong");
  file.Connect({{1, 0}, {3, 1}, {2, 1}, {3, 1}});
  const auto scene = support::LoadScene(file);
  const scene::KFbxNode& node = *support::FindNode(*scene, "node");
  ASSERT_EQ(node.GetMaterialCount(), 3);
  EXPECT_EQ(node.GetMaterial(0)->GetName(), "3");
  EXPECT_EQ(node.GetMaterial(1)->GetName(), "2");
  EXPECT_EQ(node.GetMaterial(2), node.GetMaterial(0));
}

TEST(Textures, APropertysTexturesStandInTheOrderOfTheirConnections) {
  FbxFile file;
  file.Material(2, "m", "unknown");
  for (const int id : {3, 4}) file.Object("Texture", id, std::to_string(id));
  file.Object("LayeredTexture", 5, "layers");
  file.Object("Video", 6, "video", "Clip");
  for (const int id : {4, 3, 5, 4, 6, 1}) file.Connect(id, 2, "DiffuseColor");
  file.Connect(3, 2, "Vendor|Parameters|base_color_map");
  file.Connect({{4, 2}, {4, 5}});
  for (const int id : {6, 1}) file.Connect(id, 2, "Bump");
  const auto scene = SceneWithMaterial(std::move(file));
  const scene::KFbxProperty* diffuse = MaterialOf(*scene).FindProperty("DiffuseColor");
  ASSERT_NE(diffuse, nullptr);
  ASSERT_EQ(diffuse->GetSrcTextureCount(), 3) << "a repeated connection counts once";
  EXPECT_EQ(diffuse->GetSrcTexture(0)->GetName(), "4");
  EXPECT_EQ(diffuse->GetSrcTexture(1)->GetName(), "3");
  EXPECT_EQ(diffuse->GetSrcTexture(2), nullptr) << "a layered texture is no file texture";
  EXPECT_NE(MaterialOf(*scene).FindProperty("Vendor|Parameters|base_color_map"), nullptr);
  EXPECT_EQ(MaterialOf(*scene).FindProperty("Bump"), nullptr) << "only textures connect to properties";
}

TEST(Textures, FileNamesAreKeptByteByByteInEverySpelling) {
  const auto namesOf = [](const char* file, const char* relative) {
    FbxFile builder;
    support::FbxRecord& texture = builder.Object("Texture", 3, "t");
    texture.Add({file, {"C:\\a b\\sk\xefn.tga"}});
    texture.Add({relative, {"..\\skin.tga"}});
    builder.Material(2, "m", "phong");
    builder.Connect(3, 2, "Bump");
    const auto scene = SceneWithMaterial(std::move(builder));
    const scene::KFbxTexture& loaded = *MaterialOf(*scene).FindProperty("Bump")->GetSrcTexture(0);
    return loaded.GetFileName() + ", " + loaded.GetRelativeFileName();
  };
  EXPECT_EQ(namesOf("FileName", "RelativeFilename"), "C:\\a b\\sk\xefn.tga, ..\\skin.tga");
  EXPECT_EQ(namesOf("Filename", "RelativeFileName"), "C:\\a b\\sk\xefn.tga, ..\\skin.tga");
}

}  // namespace

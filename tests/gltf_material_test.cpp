// SPDX-License-Identifier: MIT
//
// Materials of glTF files: colours, which picture is taken, and what pictures are called.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scene/model/material.h"
#include "support/load_gltf.h"

namespace {

using support::GltfFile;
using support::kSquare;
using support::Xyz;
using testing::ElementsAre;
using testing::EndsWith;
using Json = GltfFile::Json;
using Loaded = support::LoadedGltf;

/// A file with a mesh "m" that has a triangle of each material, as JSON has them.
GltfFile FileWith(const std::vector<Json>& materials) {
  GltfFile file;
  file.root["materials"] = materials;
  std::vector<Json> primitives;
  for (size_t i = 0; i < materials.size(); ++i)
    primitives.push_back({{"attributes", {{"POSITION", file.Points(kSquare)}}}, {"material", i}});
  file.Top({{"name", "m"}, {"mesh", file.Add("meshes", {{"primitives", primitives}})}});
  return file;
}

Json Textured(size_t texture) {
  return {{"pbrMetallicRoughness", {{"baseColorTexture", {{"index", texture}}}}}};
}

const scene::KFbxSurfaceLambert& MaterialOf(const Loaded& loaded, int number) {
  return dynamic_cast<const scene::KFbxSurfaceLambert&>(*loaded.Node("m").GetMaterial(number));
}

std::string PictureOf(const Loaded& loaded, int number) {
  return MaterialOf(loaded, number).FindProperty("DiffuseColor")->GetSrcTexture(0)->GetFileName();
}

TEST(GltfMaterials, HaveTheirColoursAndAreSeenThroughWhereTheyBlend) {
  const auto withAlpha = [](const char* mode, double alpha) {
    return Json{{"pbrMetallicRoughness", {{"baseColorFactor", {1, 1, 1, alpha}}}}, {"alphaMode", mode}};
  };
  const Json glow = {{"emissiveFactor", {0.25, 0.5, 1}}};
  // As files of before the usual materials have them.
  const Json glossy = {{"pbrMetallicRoughness", {{"baseColorFactor", {1, 1, 1, 1}}}},
                       {"extensions",
                        {{"KHR_materials_pbrSpecularGlossiness",
                          {{"diffuseFactor", {0.5, 0.25, 0, 1}}, {"diffuseTexture", {{"index", 0}}}}}}}};
  GltfFile file = FileWith({withAlpha("MASK", 0.25), withAlpha("BLEND", 0.25), withAlpha("BLEND", 1.5),
                            withAlpha("OPAQUE", 0), glow, glossy});
  file.root["images"] = {{{"uri", "skin.png"}}};
  file.root["textures"] = {{{"source", 0}}};
  const Loaded loaded(file);
  const double clear[] = {0, 0.75, 0, 0, 0, 0};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(MaterialOf(loaded, i).transparencyFactor, clear[i]) << i;
  EXPECT_THAT(Xyz(MaterialOf(loaded, 4).emissive), ElementsAre(0.25, 0.5, 1));
  EXPECT_THAT(Xyz(MaterialOf(loaded, 5).diffuse), ElementsAre(0.5, 0.25, 0));
  EXPECT_EQ(PictureOf(loaded, 5), "skin.png");
}

TEST(GltfMaterials, TakeThePictureThatCanBeRead) {
  GltfFile file = FileWith({Textured(0), Textured(1), Textured(2)});
  file.root["images"] = {{{"uri", "a.png"}}, {{"uri", "b.webp"}}, {{"uri", "c.ktx2"}}};
  const auto instead = [](const char* extension, int source) {
    return Json{{extension, {{"source", source}}}};
  };
  file.root["textures"] = {{{"source", 0}, {"extensions", instead("EXT_texture_webp", 1)}},
                           {{"source", 0}, {"extensions", instead("KHR_texture_basisu", 2)}},
                           {{"extensions", instead("KHR_texture_basisu", 2)}}};
  const Loaded loaded(file);
  EXPECT_EQ(PictureOf(loaded, 0), "b.webp") << "the better one";
  EXPECT_EQ(PictureOf(loaded, 1), "a.png") << "the other one is not decoded";
  EXPECT_EQ(PictureOf(loaded, 2), "c.ktx2") << "the only one, so that it is told";
}

TEST(GltfMaterials, CallPicturesInTheFileByTheirContentAndEachDifferently) {
  GltfFile file = FileWith({Textured(0), Textured(1), Textured(2), Textured(0)});
  const std::vector<uint8_t> png{0x89, 'P', 'N', 'G'}, jpeg{0xff, 0xd8, 0xff};
  const auto image = [&](const char* name, const std::vector<uint8_t>& bytes) {
    const size_t view = file.View(bytes);
    file.Add("images", {{"name", name}, {"bufferView", view}, {"mimeType", "image/jpeg"}});
    file.Add("textures", {{"source", file.root["images"].size() - 1}});
  };
  image("Skin", png);
  image("skin.png", jpeg);
  image("", png);
  const Loaded loaded(file);
  EXPECT_THAT(PictureOf(loaded, 0), EndsWith("Skin.png"));
  EXPECT_THAT(PictureOf(loaded, 1), EndsWith("skin_2.jpg")) << "on some systems the two are one name";
  EXPECT_THAT(PictureOf(loaded, 2), EndsWith("picture.png"));
  EXPECT_EQ(PictureOf(loaded, 3), PictureOf(loaded, 0));
}

TEST(GltfMaterials, KeepTheirTrianglesBesideOthersThatHaveNone) {
  GltfFile file = FileWith({{{"name", "cloth"}}, {{"name", "metal"}}});
  file.root["meshes"][0]["primitives"][0].erase("material");
  const Loaded loaded(file);
  const scene::KFbxMesh& mesh = loaded.Mesh("m");
  ASSERT_EQ(loaded.Node("m").GetMaterialCount(), 2);
  EXPECT_EQ(MaterialOf(loaded, mesh.GetMaterials()->GetMaterialIndex(1, 0)).GetName(), "metal");
  EXPECT_NE(MaterialOf(loaded, mesh.GetMaterials()->GetMaterialIndex(0, 0)).GetName(), "metal");
}

}  // namespace

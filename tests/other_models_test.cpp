// SPDX-License-Identifier: MIT
//
// What models of other formats become: their materials, their skins and their joints.
#include <gmock/gmock.h>

#include <regex>

#include "scene/model/material.h"
#include "support/other_model.h"

namespace {

using support::OtherModel;
using support::Xyz;
using testing::ElementsAre;

const scene::KFbxSurfaceLambert& FirstMaterial(const scene::KFbxNode& node) {
  return dynamic_cast<const scene::KFbxSurfaceLambert&>(*node.GetMaterial(0));
}

std::string PictureOf(const scene::KFbxNode& node) {
  return FirstMaterial(node).FindProperty("DiffuseColor")->GetSrcTexture(0)->GetFileName();
}

TEST_F(OtherModel, KeepsItsColoursPicturesAndNamesInAnyBytes) {
  folder_.Write("a.mtl", "newmtl glass\nKd 0.5 0.25 1\nKe 0.25 0 0.5\nd 0.25\nmap_Kd skin%20a.png\n");
  folder_.Write("a.obj",
                "mtllib a.mtl\no arm\xed\xa0\x80\xff\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0.25\nusemtl glass\n"
                "f 1/1 2/1 3/1\n");
  ASSERT_EQ(Load("a.obj"), "a.mtl ");
  const scene::KFbxNode& node = *scene_->GetRootNode()->GetChild(0);
  EXPECT_EQ(node.GetName(), "arm\u00ed\u00a0\u0080\u00ff") << "what is no UTF-8 is taken for Latin-1";
  EXPECT_EQ(FirstMaterial(node).transparencyFactor, 0.75);
  EXPECT_THAT(Xyz(FirstMaterial(node).diffuse), ElementsAre(0.5, 0.25, 1));
  EXPECT_THAT(Xyz(FirstMaterial(node).emissive), ElementsAre(0.25, 0, 0.5));
  EXPECT_EQ(PictureOf(node), "skin%20a.png") << "which is no address";
  EXPECT_EQ(node.GetMesh()->GetUVs()->GetDirectArray()[1], 0.25);
}

/// A Collada triangle with one set of texture coordinates, and a picture that asks for `set`.
std::string Textured(const std::string& set) {
  return "<?xml version='1.0'?><COLLADA xmlns='http://www.collada.org/2005/11/COLLADASchema' version='1.4.1'>"
         "<library_images><image id='i'><init_from>a.png</init_from></image></library_images>"
         "<library_effects><effect id='e'><profile_COMMON><newparam sid='f'><surface type='2D'><init_from>i"
         "</init_from></surface></newparam><newparam "
         "sid='t'><sampler2D><source>f</source></sampler2D></newparam>"
         "<technique sid='c'><lambert><diffuse><texture texture='t' texcoord='" +
         set +
         "'/></diffuse></lambert></technique></profile_COMMON></effect></library_effects>"
         "<library_materials><material id='m'><instance_effect url='#e'/></material></library_materials>"
         "<library_geometries><geometry id='g'><mesh><source id='s'><float_array id='fa' count='9'>0 0 0 1 0 "
         "0 0 1 0"
         "</float_array><technique_common><accessor source='#fa' count='3' "
         "stride='3'/></technique_common></source>"
         "<source id='u'><float_array id='ua' count='2'>0.5 0.25</float_array><technique_common>"
         "<accessor source='#ua' count='1' stride='2'><param name='S'/><param "
         "name='T'/></accessor></technique_common></source>"
         "<vertices id='v'><input semantic='POSITION' source='#s'/></vertices><triangles count='1' "
         "material='x'>"
         "<input semantic='VERTEX' source='#v' offset='0'/><input semantic='TEXCOORD' source='#u' offset='1' "
         "set='0'/>"
         "<p>0 0 1 0 2 0</p></triangles></mesh></geometry></library_geometries>"
         "<library_visual_scenes><visual_scene id='w'><node id='n' name='n'><instance_geometry "
         "url='#g'><bind_material>"
         "<technique_common><instance_material symbol='x' target='#m'/></technique_common></bind_material>"
         "</instance_geometry></node><node id='b' name='bare'><instance_geometry "
         "url='#g'/></node></visual_scene></library_visual_scenes>"
         "<scene><instance_visual_scene url='#w'/></scene></COLLADA>";
}

TEST_F(OtherModel, HasItsOnlyCoordinatesWhateverTheirSetIsCalled) {
  for (const char* set : {"UVMap", "UVMap.003"}) {
    folder_.Write("a.dae", Textured(set));
    ASSERT_EQ(Load("a.dae"), "");
    const scene::KFbxNode& node = *support::FindNode(*scene_, "n");
    ASSERT_TRUE(node.GetMesh()->GetUVs()) << set;
    EXPECT_THAT(std::vector<double>(node.GetMesh()->GetUVs()->GetDirectArray().begin(),
                                    node.GetMesh()->GetUVs()->GetDirectArray().begin() + 2),
                ElementsAre(0.5, 0.25));
    EXPECT_EQ(PictureOf(node), "a.png");
    EXPECT_THAT(Xyz(FirstMaterial(node).diffuse), ElementsAre(1, 1, 1)) << "the picture is the colour";
    EXPECT_EQ(support::FindNode(*scene_, "bare")->GetMaterialCount(), 0) << "nor has it that of another";
  }
}

TEST_F(OtherModel, HasMaterialsThatStandByThemselves) {
  // Which the library would not read: the template is none, and the comments hold what only looks like marks.
  folder_.Write(
      "a.x",
      "xof 0303txt 0032\ntemplate Material {\n<3d82ab4d-62da-11cf-ab39-0020af71e433>\nFLOAT power;\n}\n"
      "# { a mark that is none\n// and }\nMaterial cloth {\n# }\n0.5;0.25;1.0;1.0;;\n8.0;\n0.0;0.0;0.0;;\n"
      "0.0;0.0;0.0;;\nTextureFilename { \"cloth.png\"; }\n}\nMesh m {\n3; 0.0;0.0;0.0;, 1.0;0.0;0.0;, "
      "0.0;1.0;0.0;;\n1; 3;0,1,2;;\nMeshMaterialList { 1; 1; 0;;\n{ cloth }\n}\n}\n");
  ASSERT_EQ(Load("a.x"), "");
  EXPECT_EQ(PictureOf(*support::FindNode(*scene_, "mesh")), "cloth.png");
}

/// A triangle bound to "bone", which stood at `height` then. Commas would be taken for points in whole numbers.
std::string BoundMesh(const std::string& name, const std::string& height) {
  return "Mesh " + name +
         " {\n3; 0.0;0.0;0.0;, 1.0;0.0;0.0;, 0.0;1.0;0.0;;\n1; 3;0,1,2;;\nXSkinMeshHeader { 1; 1; 1; }\n"
         "SkinWeights { \"bone\"; 3; 0,1,2; 1.0,1.0,1.0; "
         "1.0,0.0,0.0,0.0,0.0,1.0,0.0,0.0,0.0,0.0,1.0,0.0,0.0," +
         height + ",0.0,1.0;; }\n}\n";
}

TEST_F(OtherModel, OfSeveralSkinsKeepsThoseApartThatDoNotFit) {
  const std::string start = "xof 0303txt 0032\nFrame body {\nFrame bone {\n}\n" + BoundMesh("a", "0.0");
  folder_.Write("a.x", start + BoundMesh("b", "0.0") + "}\n");
  ASSERT_EQ(Load("a.x"), "");
  EXPECT_EQ(support::ChildNames(*scene_->GetRootNode()), "bone body");
  folder_.Write("a.x", start + BoundMesh("b", "-5.0") + "}\n");
  ASSERT_EQ(Load("a.x"), "");
  EXPECT_EQ(support::ChildNames(*scene_->GetRootNode()), "bone body body.001");
  EXPECT_EQ(PointsOf("body.001")[1], -5.0) << "where its bone took it from";
}

}  // namespace

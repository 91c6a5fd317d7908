// SPDX-License-Identifier: MIT
#include "compare_corpus/known_differences.h"

namespace corpus {
namespace {

/// Patterns, in which "*" stands for any text.
struct KnownDifference {
  std::string_view files;
  std::string_view aspect;
  std::string_view text;
  const char* reason;
};

// Two exporters wrote the Blender files of version 6.1 and 7.4.
constexpr const char* kOldBlender =
    "the exporter of 6.1 files bakes no unit scale into nodes, turns bones, "
    "binds without an associate model and normalises weights";
constexpr const char* kOldBlenderNames = "the exporter of 6.1 files writes no end bones and no dots in names";
constexpr const char* kOldBlenderPose = "the exporter of 6.1 files lists every node in one pose";
constexpr const char* kOldBlenderMaterial = "the exporters choose other classes and default materials";
constexpr const char* kUniqueName = "writers of 6.1 make names unique; names stay as they are written";
constexpr const char* kSubdivided = "the reference is the subdivided or tessellated surface";
constexpr const char* kOtherAxes = "the reference has another up axis and unit";
constexpr const char* kTwoModels = "two models happen to have one name";

constexpr KnownDifference kKnown[] = {
    {"blender_279_*_6100_ascii.fbx", "transform", "*", kOldBlender},
    {"blender_279_*_6100_ascii.fbx", "cluster", "*", kOldBlender},
    {"blender_279_*_6100_ascii.fbx", "attribute", "*Armature: attribute type 1 became 3",
     "the exporter of 6.1 files makes armatures bones"},
    {"blender_279_*_6100_ascii.fbx", "attribute", "*Skeleton: attribute type 1 became 3",
     "the exporter of 6.1 files makes armatures bones"},
    {"blender_279_*_6100_ascii.fbx", "node", "*_end is missing", kOldBlenderNames},
    {"blender_279_*_6100_ascii.fbx", "name", "*Bone.00*", kOldBlenderNames},
    {"blender_279_*_6100_ascii.fbx", "order", ": child Skin*", "the exporters order nodes differently"},
    {"blender_279_*_6100_ascii.fbx", "pose", "*", kOldBlenderPose},
    {"blender_279_*_6100_ascii.fbx", "material", "*phong became lambert", kOldBlenderMaterial},
    {"blender_279_sausage_6100_ascii.fbx", "materials", "*[] became [unnamed]", kOldBlenderMaterial},
    {"blender_279_sausage_6100_ascii.fbx", "material index", "*-1 became 0", kOldBlenderMaterial},
    {"max2009_cube_texture_5800_*.fbx", "texture", "*[tiny_clouds.png] became []",
     "version 5.8 lists pictures without saying which material has them"},
    {"max2009_cube_texture_5800_*.fbx", "colour", "*specular 0.9 0.9 0.9 became 0 0 0",
     "version 5.8 has colours multiplied by their factors"},
    {"max_instanced_material_6100_*.fbx", "materials", "*",
     "the writer of 6.1 connects materials of other nodes, too"},
    {"maya_blend_shape_cube_7100_*.fbx", "materials", "*[lambert1] became [lambert2]",
     "the file was exported with another material"},
    {"maya_game_sausage_6100_binary_combined.fbx", "transform", "*",
     "the file was exported at another moment"},
    {"maya_*_6100_*.fbx", "name", "*_ncl1_*", kUniqueName},
    {"zbrush_d20_6100_*.fbx", "materials", "*_ncl1_*", kUniqueName},
    {"maya_texture_layers_6100_*.fbx", "texture", "*[(layered)] became [checkerboard_weight.png]",
     "version 6.1 stacks textures by mesh layers; layer 0 holds the lowest one"},
    {"maya_texture_layers_6100_*.fbx", "uv", "*",
     "version 6.1 orders coordinates like the layers of textures"},
    {"synthetic_unsupported_cube_8000_ascii.fbx", "*", "*", kTwoModels},
    {"blender_340_*_up_7400_binary.fbx", "axes", "*", kOtherAxes},
    {"revit_wall_square_7700_binary.fbx", "axes", "*", kOtherAxes},
    {"blender_340_z_up_7400_binary.fbx", "polygons", "*: 6 polygons became 15",
     "the reference holds one of the two meshes"},
    {"maya_nurbs_surface_plane_*.fbx", "p*", "maya_nurbs_surface_plane.obj: *", kSubdivided},
    {"maya_subsurf_cube_*.fbx", "p*", "maya_subsurf_cube.obj: *", kSubdivided},
};

bool Fits(std::string_view pattern, std::string_view text) {
  const size_t star = pattern.find('*');
  if (star == std::string_view::npos) return pattern == text;
  if (!text.starts_with(pattern.substr(0, star))) return false;
  pattern.remove_prefix(star + 1);
  for (text.remove_prefix(star);; text.remove_prefix(1)) {
    if (Fits(pattern, text)) return true;
    if (text.empty()) return false;
  }
}

}  // namespace

const char* ReasonFor(std::string_view file, const Difference& difference) {
  for (const KnownDifference& known : kKnown) {
    if (Fits(known.files, file) && Fits(known.aspect, difference.aspect) &&
        Fits(known.text, difference.where + ": " + difference.text)) {
      return known.reason;
    }
  }
  return nullptr;
}

}  // namespace corpus

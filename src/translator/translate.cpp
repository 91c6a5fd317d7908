// SPDX-License-Identifier: MIT
#include "translator/translate.h"

#include <assimp/cimport.h>
#include <assimp/config.h>
#include <assimp/postprocess.h>

#include <map>
#include <memory>
#include <stdexcept>

#include "scene/readers/stream_words.h"
#include "translator/b3d_bones.h"
#include "translator/collada_joints.h"
#include "translator/inline_materials.h"
#include "translator/lost_joints.h"
#include "translator/mend_blender.h"
#include "translator/model_folder.h"
#include "translator/own_joints.h"
#include "translator/plain_material.h"
#include "translator/texture_sets.h"
#include "translator/trim_texts.h"
#include "translator/write_glb.h"

namespace translator {
namespace {

constexpr FormatTraits kFormats[] = {{"dae", "", false, true},
                                     {"x"},
                                     {"b3d"},
                                     {"pmx", kSceneRoot},
                                     {"md5mesh", "<MD5_Hierarchy>", true},
                                     {"smd", "<SMD_root>"},
                                     {"obj"},
                                     {"ply"},
                                     {"3ds"},
                                     {"stl"}};

const FormatTraits& FindFormat(std::string_view ending) {
  for (const FormatTraits& format : kFormats) {
    if (ending == format.ending) return format;
  }
  throw std::runtime_error("the format is not known");
}

struct ReleaseScene {
  void operator()(const aiScene* scene) const { aiReleaseImport(scene); }
};
using Scene = std::unique_ptr<const aiScene, ReleaseScene>;

/// Puts the top bones of a scene where its skins were bound: of PMX the library leaves them at the origin.
void PlaceTopBones(const aiScene& scene) {
  std::map<std::string_view, const aiMatrix4x4*> inverseBind;
  for (unsigned mesh = 0; mesh < scene.mNumMeshes; ++mesh) {
    for (unsigned i = 0; i < scene.mMeshes[mesh]->mNumBones; ++i) {
      const aiBone& bone = *scene.mMeshes[mesh]->mBones[i];
      inverseBind.try_emplace(View(bone.mName), &bone.mOffsetMatrix);
    }
  }
  for (unsigned i = 0; i < scene.mRootNode->mNumChildren; ++i) {
    aiNode& node = *scene.mRootNode->mChildren[i];
    const auto known = inverseBind.find(View(node.mName));
    if (known != inverseBind.end() && node.mNumMeshes == 0) {
      node.mTransformation = *known->second;
      node.mTransformation.Inverse();
    }
  }
}

/// @param hasNames  names of Collada's nodes; else their identifiers, of which there is one of each
Scene Import(ModelFolder& folder, std::string_view ending, bool hasNames) {
  const std::unique_ptr<aiPropertyStore, void (*)(aiPropertyStore*)> settings(aiCreatePropertyStore(),
                                                                              aiReleasePropertyStore);
  aiSetImportPropertyInteger(settings.get(), AI_CONFIG_IMPORT_REMOVE_EMPTY_BONES, 0);
  // Of models without meshes it would draw the bones.
  aiSetImportPropertyInteger(settings.get(), AI_CONFIG_IMPORT_NO_SKELETON_MESHES, 1);
  aiSetImportPropertyInteger(settings.get(), AI_CONFIG_IMPORT_MD5_NO_ANIM_AUTOLOAD, 1);
  aiSetImportPropertyInteger(settings.get(), AI_CONFIG_IMPORT_COLLADA_USE_COLLADA_NAMES, hasNames);
  Scene scene(aiImportFileExWithProperties(folder.Name().c_str(), aiProcess_Triangulate, folder.Functions(),
                                           settings.get()));
  if (!scene) throw std::runtime_error(aiGetErrorString());
  if (!scene->mRootNode) throw std::runtime_error("it holds no scene");
  if (ending == "pmx") PlaceTopBones(*scene);
  return scene;
}

/// The model as the library understands it.
std::string Prepare(FormatTraits& format, std::string model) {
  const std::string_view ending = format.ending;
  if (ending == "x") return InlineMaterials(std::move(model));
  if (ending != "dae") return model;
  if (IsFromBlender(model)) {
    // The exporter writes the shape of a skin relative to the parent of its mesh, and the joints in the world.
    format.bindsInWorld = true;
    model = MendBlenderFile(std::move(model));
  }
  return WithPlainMaterial(WithNumberedSets(WithOwnJoints(TrimTexts(model))));
}

/// Names of what the model calls joints, where the library does not tell.
std::set<std::string> FindJoints(std::string_view ending, std::string_view model) {
  if (ending == "dae") return FindColladaJoints(model);
  if (ending == "b3d") return FindB3dBones(model);
  return {};
}

}  // namespace

std::string Translate(std::string_view ending, std::string input, const std::string& path) {
  FormatTraits format = FindFormat(ending);
  const std::string model = Prepare(format, std::move(input));
  ModelFolder folder("model." + std::string(ending), model, path);
  const std::set<std::string> joints = FindJoints(ending, model);
  Scene scene = Import(folder, ending, true);
  auto tree = std::make_unique<NodeTree>(*scene, format.jointRoot, joints);
  if (tree->IsAmbiguous()) {
    const std::vector<std::string> names = tree->Names();
    scene = Import(folder, ending, false);
    tree = std::make_unique<NodeTree>(*scene, format.jointRoot, joints);
    tree->SetNames(names);
  }
  std::string stream;
  for (const std::string& file : folder.OtherFiles()) stream += scene::translation::kFileWord + file + "\n";
  stream += TellLostJoints(*scene, *tree);
  stream += std::string(scene::translation::kDataWord) + "\n";
  return stream + WriteGlb(*scene, *tree, format);
}

}  // namespace translator

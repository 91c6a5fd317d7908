// SPDX-License-Identifier: MIT
#include "scene/assemble/build_scene.h"

#include "scene/assemble/scene_builder.h"

namespace scene {

SceneBuilder::SceneBuilder(const RecordTree& tree, KFbxScene& scene)
    : scene_(scene),
      table_(tree),
      templates_(ReadTemplates(tree)),
      made_(table_.Objects().size()),
      taken_(made_.size()) {}

void SceneBuilder::Build(const std::function<void(double done)>& tell) {
  const auto finish = [&](double done) {
    if (tell) tell(done);
  };
  CreateObjects();
  finish(0.3);
  ConnectNodes();
  ConnectObjects();
  finish(0.6);
  ConnectOldTextures();
  CreateShapes();
  CreatePoses();
  finish(0.8);
  scene_.EvaluateTransforms();
  finish(1.0);
}

KFbxNode* SceneBuilder::NodeOf(uint32_t index) const {
  return index == ObjectTable::kRoot ? scene_.GetRootNode() : Made<KFbxNode>(index);
}

const PropertyTemplate* SceneBuilder::TemplateOf(std::string_view kind) const {
  const auto found = templates_.find(kind);
  return found == templates_.end() ? nullptr : &found->second;
}

ParseError BuildScene(std::shared_ptr<const RecordTree> tree, KFbxScene& scene,
                      const std::function<void(double done)>& tell) {
  scene.Clear();
  SceneBuilder builder(*tree, scene);
  // An object takes a kilobyte; in files it takes a hundred bytes and more, its connection included.
  constexpr size_t kFewObjects = 65536, kSmallestObject = 128;
  if (builder.ObjectCount() > kFewObjects + tree->FileSize() / kSmallestObject) {
    return {"too many objects for a file of this size"};
  }
  builder.Build(tell);
  scene.KeepFile(std::move(tree));
  return {};
}

}  // namespace scene

// SPDX-License-Identifier: MIT
#include "scene/document/object_table.h"

namespace scene {
namespace {

/// The node that old plug-ins put above everything. It is the scene's root under another name.
constexpr std::string_view kRootModel = "Fbx_Root";

RecordRef TransformChannel(RecordRef holder) {
  for (const RecordRef channel : holder) {
    if (channel.Name() == "Channel" && channel.Text(0) == "Transform") return channel;
  }
  return {};
}

/// Transforms that the current take may hold, by the name of the model.
std::unordered_map<std::string_view, RecordRef> CurrentTakeTransforms(const RecordTree& tree) {
  std::unordered_map<std::string_view, RecordRef> transforms;
  const RecordRef takes = tree.Find("Takes");
  const std::string_view current = takes.Child("Current").Text(0);
  for (const RecordRef take : takes) {
    if (take.Name() != "Take" || take.Text(0) != current) continue;
    for (const RecordRef model : take) {
      if (model.Name() == "Model" && !transforms.contains(model.Text(0))) {
        transforms.emplace(model.Text(0), TransformChannel(model));
      }
    }
  }
  return transforms;
}

}  // namespace

void ObjectTable::ReadNestedObjects(const RecordTree& tree) {
  const auto takeTransforms = CurrentTakeTransforms(tree);
  std::vector<RecordRef> models;
  for (uint32_t i = 0; i < tree.records.size(); i = tree.records[i].end) {
    const RecordRef record(&tree, i);
    if (record.Name() == "Model" && record.ValueCount() > 0) models.push_back(record);
  }
  std::vector<uint32_t> indices;
  for (const RecordRef record : models) {
    FbxObject node;
    node.name = ObjectNamePart(record.Text(0), tree.ascii);
    node.record = record;
    if (node.name == kRootModel) {
      byName_.emplace(record.Text(0), kRoot);
      rootChannels_ = TransformChannel(record);
      indices.push_back(kRoot);
      continue;
    }
    node.subType = record.Child("Type").Text(0);
    if (node.subType.empty() && record.Child("Vertices")) node.subType = "Mesh";
    const auto inTake = takeTransforms.find(record.Text(0));
    node.channels = TransformChannel(record);
    if (!node.channels && inTake != takeTransforms.end()) node.channels = inTake->second;
    const uint32_t index = AddObject(node);
    byName_.emplace(record.Text(0), index);
    indices.push_back(index);
    AddAttributeOf(index);
    AddMaterialsOf(index);
  }
  std::vector<bool> hasParent(objects_.size());
  for (size_t i = 0; i < models.size(); ++i) {
    const RecordRef children = models[i].Child("Children");
    for (size_t k = 0; k < children.ValueCount(); ++k) {
      uint32_t child = 0;
      if (!Find(children, k, child) || child == kRoot) continue;
      Connect(child, indices[i]);
      hasParent[child] = true;
    }
  }
  for (const uint32_t index : indices) {
    if (index != kRoot && !hasParent[index]) Connect(index, kRoot);
  }
  for (const uint32_t index : indices) {
    if (index != kRoot) AddSkinOf(index);
  }
}

/// All links of a mesh together are one skin.
void ObjectTable::AddSkinOf(uint32_t model) {
  const auto geometry = geometryOf_.find(model);
  if (geometry == geometryOf_.end()) return;
  uint32_t skin = kRoot;
  for (const RecordRef link : objects_[model].record) {
    if (link.Name() != "Link") continue;
    FbxObject deformer;
    deformer.kind = ObjectKind::Deformer;
    if (skin == kRoot) {
      deformer.subType = "Skin";
      skin = AddObject(deformer);
      Connect(skin, geometry->second);
    }
    deformer.subType = "Cluster";
    deformer.record = link;
    const uint32_t cluster = AddObject(deformer);
    Connect(cluster, skin);
    uint32_t bone = 0;
    if (Find(link, 0, bone)) Connect(bone, cluster);
  }
}

void ObjectTable::AddMaterialsOf(uint32_t model) {
  const RecordRef record = objects_[model].record;
  for (const RecordRef material : record) {
    if (material.Name() != "Material") continue;
    FbxObject object;
    object.kind = ObjectKind::Material;
    object.name = ObjectNamePart(material.Text(0), ascii_);
    object.record = material;
    Connect(AddObject(object), model);
  }
}

}  // namespace scene

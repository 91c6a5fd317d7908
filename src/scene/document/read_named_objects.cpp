// SPDX-License-Identifier: MIT
#include "scene/document/object_table.h"
#include "scene/document/properties.h"

namespace scene {

void ObjectTable::ReadNamedObjects(const RecordTree& tree) {
  for (const RecordRef record : tree.Find("Objects")) {
    FbxObject object;
    if (!FindObjectKind(record.Name(), object.kind) || record.ValueCount() < 1) continue;
    object.name = ObjectNamePart(record.Text(0), tree.ascii);
    object.subType = WithoutSubTypePrefix(record.Text(1));
    object.record = record;
    const uint32_t index = AddObject(object);
    const auto [first, isNew] = byName_.emplace(record.Text(0), index);
    if (!isNew) namesakes_[first->second].push_back(index);
    if (object.kind == ObjectKind::Model) AddAttributeOf(index);
  }
  ReadConnections(tree.Find("Connections"));
}

/// Models of one name cannot be told apart by connections. Each that ties the name to a parent takes the next
/// of them, so that all of them get into the tree; everything else goes to the first.
uint32_t ObjectTable::NextNamesake(uint32_t first) {
  const auto others = namesakes_.find(first);
  if (others == namesakes_.end()) return first;
  const size_t place = placed_[first]++;
  return place == 0 || place > others->second.size() ? first : others->second[place - 1];
}

/// Makes an object of its own from the attribute that a model's record holds along with the node.
void ObjectTable::AddAttributeOf(uint32_t model) {
  const FbxObject& node = objects_[model];
  FbxObject attribute;
  attribute.record = node.record;
  attribute.name = node.name;
  attribute.subType = node.subType;
  const bool isMesh = node.subType == "Mesh" || (node.subType.empty() && node.record.Child("Vertices") &&
                                                 node.record.Child("PolygonVertexIndex"));
  if (!isMesh && node.subType.empty()) return;
  // An empty object may say that it has no attribute at all.
  if (node.subType == "Null" && Properties(node.record).Integer("DefaultAttributeIndex", 0) < 0) return;
  attribute.kind = isMesh ? ObjectKind::Geometry : ObjectKind::NodeAttribute;
  if (isMesh) attribute.subType = "Mesh";
  const uint32_t index = AddObject(attribute);
  if (isMesh) geometryOf_.emplace(model, index);
  Connect(index, model);
}

}  // namespace scene

// SPDX-License-Identifier: MIT
#include "scene/document/object_table.h"

#include <algorithm>
#include <utility>

namespace scene {
namespace {

constexpr int kIdentifiedVersion = 7000;  ///< objects have identifiers from here on
constexpr int kNamedVersion = 6000;       ///< objects and connections stand in lists from here on

/// How connections name the root before version 7, in ASCII and binary.
constexpr std::string_view kAsciiRoot = "Model::Scene";
constexpr std::string_view kBinaryRoot("Scene\0\1Model", 12);

/// Keeps a connection that a file repeats a million times from being made more than once.
class RepeatGuard {
 public:
  bool Allow(const FbxConnection& connection, bool isMaterial) {
    std::vector<std::string_view>& seen = seen_[base::PairKey(connection.source, connection.destination)];
    if (seen.size() >= kMostOfPair) return false;
    // One material may fill several slots of a node.
    const bool isNew = std::find(seen.begin(), seen.end(), connection.property) == seen.end();
    if (!isNew && !isMaterial) return false;
    seen.push_back(connection.property);
    return true;
  }

 private:
  static constexpr size_t kMostOfPair = 256;
  std::unordered_map<uint64_t, std::vector<std::string_view>, base::MixedHash> seen_;
};

}  // namespace

bool FindObjectKind(std::string_view recordName, ObjectKind& kind) {
  static constexpr std::pair<std::string_view, ObjectKind> kKinds[] = {
      {"Model", ObjectKind::Model},
      {"NodeAttribute", ObjectKind::NodeAttribute},
      {"Geometry", ObjectKind::Geometry},
      {"Deformer", ObjectKind::Deformer},
      {"Material", ObjectKind::Material},
      {"Texture", ObjectKind::Texture},
      {"LayeredTexture", ObjectKind::LayeredTexture},
      {"Video", ObjectKind::Video},
      {"Pose", ObjectKind::Pose}};
  for (const auto& [name, known] : kKinds) {
    if (name != recordName) continue;
    kind = known;
    return true;
  }
  return false;
}

std::string_view ObjectNamePart(std::string_view text, bool ascii) {
  const size_t at = text.find(ascii ? std::string_view("::") : std::string_view("\0\1", 2));
  const bool isSplit = at != std::string_view::npos;
  std::string_view name =
      ascii && isSplit ? text.substr(at + 2) : text.substr(0, ascii ? std::string_view::npos : at);
  // Nothing that takes names can take a zero byte in one.
  return name.substr(0, name.find('\0'));
}

std::string_view WithoutSubTypePrefix(std::string_view subType) {
  if (subType.starts_with("Fbx")) subType.remove_prefix(3);
  return subType;
}

ObjectTable::ObjectTable(const RecordTree& tree) : ascii_(tree.ascii) {
  if (tree.version >= kIdentifiedVersion) {
    ReadIdentifiedObjects(tree);
  } else if (tree.version >= kNamedVersion) {
    ReadNamedObjects(tree);
  } else {
    ReadNestedObjects(tree);
  }
}

uint32_t ObjectTable::AddObject(const FbxObject& object) {
  objects_.push_back(object);
  return static_cast<uint32_t>(objects_.size()) - 1;
}

bool ObjectTable::Find(RecordRef record, size_t i, uint32_t& index) const {
  const Value* value = record.ValueAt(i);
  if (!value) return false;
  if (value->kind == Value::Kind::Integer) {
    const auto found = byId_.find(value->integer);
    if (found == byId_.end()) return false;
    index = found->second;
    return true;
  }
  const auto found = byName_.find(record.Text(i));
  if (found == byName_.end()) return false;
  index = found->second;
  return true;
}

/// The root may stand at either end: it can be the link of a cluster.
bool ObjectTable::FindEnd(RecordRef record, size_t i, uint32_t& index) const {
  if (Find(record, i, index)) return true;
  const Value* value = record.ValueAt(i);
  if (!value) return false;
  const bool isRoot = value->kind == Value::Kind::Integer
                          ? value->integer == 0
                          : record.Text(i) == (ascii_ ? kAsciiRoot : kBinaryRoot);
  if (isRoot) index = kRoot;
  return isRoot;
}

void ObjectTable::ReadConnections(RecordRef connections) {
  RepeatGuard repeats;
  for (const RecordRef record : connections) {
    const std::string_view type = record.Text(0);
    FbxConnection connection;
    if ((type != "OO" && type != "OP") || !FindEnd(record, 1, connection.source) ||
        !FindEnd(record, 2, connection.destination)) {
      continue;
    }
    if (type == "OP") connection.property = record.Text(3);
    if (type == "OP" && connection.property.empty()) continue;
    const bool isPlacement =
        IsA(ObjectKind::Model, connection.source) &&
        (connection.destination == kRoot || IsA(ObjectKind::Model, connection.destination));
    if (isPlacement && type == "OO") connection.source = NextNamesake(connection.source);
    // Before version 7 a skin is connected to the model whose geometry it deforms.
    const auto geometry = geometryOf_.find(connection.destination);
    if (geometry != geometryOf_.end() && connection.source != kRoot &&
        objects_[connection.source].kind == ObjectKind::Deformer) {
      connection.destination = geometry->second;
    }
    if (!repeats.Allow(connection, IsA(ObjectKind::Material, connection.source))) continue;
    connections_.push_back(connection);
  }
}

}  // namespace scene

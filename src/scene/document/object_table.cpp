// SPDX-License-Identifier: MIT
#include "scene/document/object_table.h"

#include <algorithm>
#include <optional>

namespace scene {
namespace {

std::optional<ObjectKind> KindOf(std::string_view recordName) {
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
  for (const auto& [name, kind] : kKinds) {
    if (name == recordName) return kind;
  }
  return std::nullopt;
}

/// Name part of "Class::Name" (ASCII) or "Name" 00 01 "Class" (binary); the whole text without a separator.
std::string_view NamePart(std::string_view text, bool ascii) {
  const size_t at = text.find(ascii ? std::string_view("::") : std::string_view("\0\1", 2));
  if (at == std::string_view::npos) return text;
  return ascii ? text.substr(at + 2) : text.substr(0, at);
}

std::string_view WithoutPrefix(std::string_view subType) {
  if (subType.starts_with("Fbx")) subType.remove_prefix(3);
  return subType;
}

}  // namespace

ObjectTable::ObjectTable(const RecordTree& tree) {
  ReadObjects(tree);
  ReadConnections(tree);
}

bool ObjectTable::Find(int64_t id, uint32_t& index) const {
  const auto found = byId_.find(id);
  if (found == byId_.end()) return false;
  index = found->second;
  return true;
}

void ObjectTable::ReadObjects(const RecordTree& tree) {
  for (const RecordRef record : tree.Find("Objects")) {
    const std::optional<ObjectKind> kind = KindOf(record.Name());
    const Value* id = record.ValueAt(0);
    if (!kind || record.ValueCount() < 3 || !id || id->kind != Value::Kind::Integer || id->integer == 0)
      continue;
    FbxObject object;
    object.kind = *kind;
    object.id = id->integer;
    object.name = NamePart(record.Text(1), tree.ascii);
    object.subType = WithoutPrefix(record.Text(2));
    object.record = record;
    if (byId_.emplace(object.id, static_cast<uint32_t>(objects_.size())).second) objects_.push_back(object);
  }
}

void ObjectTable::ReadConnections(const RecordTree& tree) {
  for (const RecordRef record : tree.Find("Connections")) {
    const std::string_view type = record.Text(0);
    if (type != "OO" && type != "OP") continue;
    FbxConnection connection;
    if (!Find(record.Integer(1, 0), connection.source)) {
      // The root may be used too: it can be the link of a cluster.
      if (record.Integer(1, -1) != 0) continue;
      connection.source = kRoot;
    }
    if (!Find(record.Integer(2, -1), connection.destination)) {
      if (record.Integer(2, -1) != 0) continue;
      connection.destination = kRoot;
    }
    if (type == "OP") connection.property = record.Text(3);
    if (type == "OO" || !connection.property.empty()) connections_.push_back(connection);
  }
}

}  // namespace scene

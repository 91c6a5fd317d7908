// SPDX-License-Identifier: MIT
#include "scene/document/object_table.h"

namespace scene {

void ObjectTable::ReadIdentifiedObjects(const RecordTree& tree) {
  for (const RecordRef record : tree.Find("Objects")) {
    FbxObject object;
    const Value* id = record.ValueAt(0);
    if (!FindObjectKind(record.Name(), object.kind) || record.ValueCount() < 3 || !id ||
        id->kind != Value::Kind::Integer || id->integer == 0) {
      continue;
    }
    object.name = ObjectNamePart(record.Text(1), tree.ascii);
    object.subType = WithoutSubTypePrefix(record.Text(2));
    object.record = record;
    if (byId_.emplace(id->integer, static_cast<uint32_t>(objects_.size())).second) AddObject(object);
  }
  ReadConnections(tree.Find("Connections"));
}

}  // namespace scene

// SPDX-License-Identifier: MIT
#include "scene/document/object_table.h"
#include "scene/model/scene.h"

namespace scene {
namespace {

constexpr size_t kMostMotions = 1000;

/// Whether a curve of version 7 has more keys than one.
bool Moves(RecordRef curve) {
  const RecordRef times = curve.Child("KeyTime"), text = times.Child("a");
  const RecordRef list = text ? text : times;
  const Value* first = list.ValueAt(0);
  return first && (first->IsList() ? first->count : list.ValueCount()) > 1;
}

bool AnyCurveMoves(RecordRef objects) {
  for (const RecordRef object : objects) {
    if (object.Name() == "AnimationCurve" && Moves(object)) return true;
  }
  return false;
}

/// Whether a take of version 6 or older has a channel with more keys than one.
bool AnyChannelMoves(RecordRef take) {
  for (uint32_t i = take.Index() + 1; take.Holds(i); ++i) {
    const RecordRef record(&take.Tree(), i);
    if (record.Name() == "KeyCount" && record.Integer(0, 0) > 1) return true;
  }
  return false;
}

}  // namespace

std::vector<KString> KFbxScene::GetMotions() const {
  std::vector<KString> names;
  if (!tree_) return names;
  const RecordRef objects = tree_->Find("Objects");
  const bool moves = AnyCurveMoves(objects);
  for (const RecordRef object : objects) {
    if (moves && object.Name() == "AnimationStack" && names.size() < kMostMotions)
      names.emplace_back(ObjectNamePart(object.Text(1), tree_->ascii));
  }
  for (const RecordRef take : tree_->Find("Takes")) {
    if (take.Name() == "Take" && names.size() < kMostMotions && AnyChannelMoves(take))
      names.emplace_back(take.Text(0));
  }
  return names;
}

}  // namespace scene

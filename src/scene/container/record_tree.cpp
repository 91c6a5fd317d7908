// SPDX-License-Identifier: MIT
#include "scene/container/record_tree.h"

#include <algorithm>
#include <cmath>

#include "scene/container/array_reader.h"
#include "scene/container/number_text.h"

namespace scene {

RecordRef RecordTree::Find(std::string_view name) const {
  for (uint32_t i = 0; i < records.size(); i = records[i].end) {
    if (records[i].name == name) return {this, i};
  }
  return {};
}

void RecordTree::NoteDamaged(uint32_t record) const {
  constexpr size_t kMostNoted = 100;
  if (damaged_.size() == kMostNoted) return;
  if (std::find(damaged_.begin(), damaged_.end(), record) == damaged_.end()) damaged_.push_back(record);
}

const Value* RecordRef::ValueAt(size_t i) const {
  return i < ValueCount() ? &tree_->values[Get().firstValue + i] : nullptr;
}

double RecordRef::Number(size_t i, double otherwise) const {
  if (const Value* value = ValueAt(i)) {
    switch (value->kind) {
      case Value::Kind::Integer:
        return static_cast<double>(value->integer);
      case Value::Kind::Real:
        return std::isfinite(value->real) ? value->real : 0.0;
      case Value::Kind::Text:
        // A word stands for the code of its letter.
        return value->size == 1 ? static_cast<double>(static_cast<unsigned char>(value->data[0])) : otherwise;
      case Value::Kind::Bytes:
        return otherwise;
      default:
        break;
    }
  }
  // A long list counts as its elements, but who asks for single ones never means an array of a mesh.
  constexpr size_t kMostElements = 1024;
  if (ValueCount() != 1) return otherwise;
  FbxArray<double> elements;
  if (!ReadArray(*this, elements, kMostElements) || i >= elements.size()) return otherwise;
  return elements[i];
}

int64_t RecordRef::Integer(size_t i, int64_t otherwise) const {
  const Value* value = ValueAt(i);
  if (value && value->kind == Value::Kind::Integer) return value->integer;
  return ToInteger(Number(i, static_cast<double>(otherwise)));
}

std::string_view RecordRef::Text(size_t i) const {
  const Value* value = ValueAt(i);
  return value && (value->kind == Value::Kind::Text || value->kind == Value::Kind::Bytes)
             ? value->Span()
             : std::string_view();
}

RecordRef RecordRef::Child(std::string_view name) const {
  for (const RecordRef child : *this) {
    if (child.Name() == name) return child;
  }
  return {};
}

}  // namespace scene

// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <unordered_map>

#include "scene/container/record_tree.h"
#include "scene/math/vector.h"

namespace scene {

/// The property template of one object class, indexed by name.
using PropertyTemplate = std::unordered_map<std::string_view, RecordRef>;

/// The properties of one object: its own, then those of its class's template. Looked up by name only; of
/// equal names the last one counts.
class Properties {
 public:
  Properties() = default;
  /// @param object  the record that may hold "Properties70" or, before version 7, "Properties60"
  /// @param defaults  the class's template or null; must outlive this object
  explicit Properties(RecordRef object, const PropertyTemplate* defaults = nullptr);

  bool Has(std::string_view name) const { return static_cast<bool>(Find(name)); }
  double Number(std::string_view name, double otherwise) const;
  int Integer(std::string_view name, int otherwise) const;
  /// Components that the property lacks are those of `otherwise`.
  KFbxVector4 Vector(std::string_view name, const KFbxVector4& otherwise) const;
  std::string_view Text(std::string_view name) const;
  /// All of the object's own properties that are numbers, by name.
  std::unordered_map<std::string_view, double> Numbers() const;

 private:
  RecordRef Find(std::string_view name) const;

  RecordRef list_;
  /// Values stand behind a property's name, type and flags; version 7 has a sub-type before the flags.
  size_t firstValue_ = 4;
  const PropertyTemplate* defaults_ = nullptr;
};

/// Templates of the document's "Definitions", by object class ("Model", "Material", ...).
std::unordered_map<std::string_view, PropertyTemplate> ReadTemplates(const RecordTree& tree);

}  // namespace scene

// SPDX-License-Identifier: MIT
#include "scene/document/properties.h"

#include <algorithm>

#include "scene/container/number_text.h"

namespace scene {

Properties::Properties(RecordRef object, const PropertyTemplate* defaults)
    : list_(object.Child("Properties70")), defaults_(defaults) {
  if (list_) return;
  list_ = object.Child("Properties60");
  if (list_) firstValue_ = 3;
}

RecordRef Properties::Find(std::string_view name) const {
  RecordRef found;
  for (const RecordRef property : list_) {
    if (property.Text(0) == name) found = property;
  }
  if (found || !defaults_) return found;
  const auto standard = defaults_->find(name);
  return standard == defaults_->end() ? RecordRef() : standard->second;
}

double Properties::Number(std::string_view name, double otherwise) const {
  return Find(name).Number(firstValue_, otherwise);
}

int Properties::Integer(std::string_view name, int otherwise) const {
  constexpr int64_t kLimit = 0x7fffffff;
  return static_cast<int>(std::clamp(Find(name).Integer(firstValue_, otherwise), -kLimit, kLimit));
}

KFbxVector4 Properties::Vector(std::string_view name, const KFbxVector4& otherwise) const {
  KFbxVector4 vector = otherwise;
  if (const RecordRef property = Find(name)) {
    for (size_t i = 0; i < 3; ++i) vector[i] = property.Number(firstValue_ + i, otherwise[i]);
  }
  return vector;
}

std::string_view Properties::Text(std::string_view name) const { return Find(name).Text(firstValue_); }

std::unordered_map<std::string_view, double> Properties::Numbers() const {
  std::unordered_map<std::string_view, double> numbers;
  for (const RecordRef property : list_) numbers[property.Text(0)] = property.Number(firstValue_, 0.0);
  return numbers;
}

std::unordered_map<std::string_view, PropertyTemplate> ReadTemplates(const RecordTree& tree) {
  std::unordered_map<std::string_view, PropertyTemplate> templates;
  for (const RecordRef type : tree.Find("Definitions")) {
    if (type.Name() != "ObjectType") continue;
    PropertyTemplate& properties = templates[type.Text(0)];
    for (const RecordRef property : type.Child("PropertyTemplate").Child("Properties70")) {
      properties[property.Text(0)] = property;
    }
  }
  return templates;
}

}  // namespace scene

// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <nlohmann/json.hpp>

#include "scene/gltf/document.h"

namespace scene::gltf {

/// A value of a glTF's JSON, or none: then it has no members, no elements and no text. What has another type
/// than it should counts as none; numbers that stand for places in the file are checked.
class JsonValue {
 public:
  JsonValue() = default;
  explicit JsonValue(const nlohmann::json& value) : value_(&value) {}

  explicit operator bool() const { return value_ != nullptr; }

  JsonValue operator[](const char* key) const {
    if (!value_ || !value_->is_object()) return {};
    const auto found = value_->find(key);
    return found == value_->end() ? JsonValue() : JsonValue(*found);
  }
  JsonValue operator[](const std::string& key) const { return (*this)[key.c_str()]; }
  size_t size() const { return value_ && value_->is_array() ? value_->size() : 0; }
  JsonValue At(size_t i) const { return i < size() ? JsonValue((*value_)[i]) : JsonValue(); }
  /// Calls `visit` with the key and the value of every member of an object.
  template <class Visit>
  void ForEachMember(const Visit& visit) const {
    if (!value_ || !value_->is_object()) return;
    for (const auto& [key, member] : value_->items()) visit(key, JsonValue(member));
  }

  std::string Text() const { return value_ && value_->is_string() ? value_->get<std::string>() : ""; }
  /// Text up to a zero byte, which nothing that takes names can take.
  std::string Name() const {
    std::string text = Text();
    return text.substr(0, text.find('\0'));
  }
  bool Flag() const { return value_ && value_->is_boolean() && value_->get<bool>(); }
  double Number(double otherwise) const {
    return value_ && value_->is_number() ? value_->get<double>() : otherwise;
  }
  /// @throws Fault for what is no number of something
  uint64_t Count(uint64_t otherwise = 0) const {
    if (!value_) return otherwise;
    constexpr double kMost = 9e15;
    const double number = Number(-1);
    if (!(number >= 0 && number <= kMost) || number != std::floor(number))
      throw Fault("a number in its JSON is not what it should be");
    return static_cast<uint64_t>(number);
  }
  /// An index below `count`; kNone when there is none.
  /// @throws Fault when it is too large, naming `what`
  uint32_t Index(size_t count, const char* what) const {
    if (!value_) return kNone;
    const uint64_t index = Count();
    if (index >= count) {
      throw Fault(std::string(what) + " " + std::to_string(index) + " does not exist; there are " +
                  std::to_string(count));
    }
    return static_cast<uint32_t>(index);
  }
  std::vector<double> Numbers() const {
    std::vector<double> numbers(size());
    for (size_t i = 0; i < numbers.size(); ++i) numbers[i] = At(i).Number(0);
    return numbers;
  }

 private:
  const nlohmann::json* value_ = nullptr;
};

/// Makes the list of what `values` holds.
template <class T, class Read>
std::vector<T> ReadList(JsonValue values, const Read& read) {
  std::vector<T> list;
  list.reserve(values.size());
  for (size_t i = 0; i < values.size(); ++i) list.push_back(read(values.At(i)));
  return list;
}

/// Indices below `count`.
/// @throws Fault for what is none, naming `what`
inline std::vector<uint32_t> ReadIndices(JsonValue values, size_t count, const char* what) {
  return ReadList<uint32_t>(values, [&](JsonValue value) { return value.Index(count, what); });
}

}  // namespace scene::gltf

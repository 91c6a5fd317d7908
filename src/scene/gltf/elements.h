// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstring>
#include <utility>

#include "scene/container/array_reader.h"

namespace scene::gltf {

/// Elements of an accessor: where they lie in the file, when it holds them as they are used, else converted.
class Elements {
 public:
  Elements() = default;
  /// @param first  stays as long as the object
  Elements(const char* first, size_t count, size_t stride) : first_(first), count_(count), stride_(stride) {}
  Elements(FbxArray<char> converted, size_t count, size_t stride)
      : converted_(std::move(converted)), first_(converted_.begin()), count_(count), stride_(stride) {}

  size_t size() const { return count_; }
  /// Bytes of those that were converted.
  size_t Memory() const { return converted_.size(); }

 protected:
  /// Number `number` of an element.
  template <class T>
  T Load(size_t element, size_t number) const {
    T value;
    std::memcpy(&value, first_ + element * stride_ + number * sizeof value, sizeof value);
    return value;
  }

 private:
  FbxArray<char> converted_;
  const char* first_ = nullptr;
  size_t count_ = 0, stride_ = 0;
};

class FloatElements : public Elements {
 public:
  FloatElements() = default;
  explicit FloatElements(Elements elements) : Elements(std::move(elements)) {}
  /// @param numberAt  gives number `number` of an element
  template <class NumberAt>
  static FloatElements Make(size_t count, size_t width, const NumberAt& numberAt) {
    FbxArray<char> bytes;
    auto* to = reinterpret_cast<float*>(bytes.Allocate(count * width * sizeof(float)));
    for (size_t element = 0; element < count; ++element) {
      for (size_t number = 0; number < width; ++number) *to++ = numberAt(element, number);
    }
    return FloatElements({std::move(bytes), count, width * sizeof(float)});
  }

  /// Number `number` of an element; 0 for what is not finite.
  float At(size_t element, size_t number) const {
    const auto value = Load<float>(element, number);
    return std::isfinite(value) ? value : 0.0f;
  }
};

class IntegerElements : public Elements {
 public:
  IntegerElements() = default;
  /// @param numberSize  bytes of each number: 1, 2 or 4
  IntegerElements(Elements elements, size_t numberSize)
      : Elements(std::move(elements)), numberSize_(numberSize) {}

  /// Calls `use` with a function that gives number `number` of an element, made for the size of the numbers.
  template <class Use>
  void UseNumbers(const Use& use) const {
    if (numberSize_ == 1)
      return use(
          [this](size_t element, size_t number) -> uint32_t { return Load<uint8_t>(element, number); });
    if (numberSize_ == 2)
      return use(
          [this](size_t element, size_t number) -> uint32_t { return Load<uint16_t>(element, number); });
    use([this](size_t element, size_t number) { return Load<uint32_t>(element, number); });
  }

 private:
  size_t numberSize_ = sizeof(uint32_t);
};

}  // namespace scene::gltf

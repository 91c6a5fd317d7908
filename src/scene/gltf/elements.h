// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cmath>
#include <cstring>
#include <utility>

#include "scene/container/array_reader.h"

namespace scene::gltf {

/// Four numbers of 32 bits, which are worked on at once.
using Quad = uint32_t __attribute__((vector_size(16)));
using FloatQuad = float __attribute__((vector_size(16)));

inline bool IsSame(const Quad& a, const Quad& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

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
  /// The first N numbers of an element.
  template <class T, size_t N>
  std::array<T, N> LoadAll(size_t element) const {
    std::array<T, N> values;
    std::memcpy(values.data(), first_ + element * stride_, sizeof values);
    return values;
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
  /// The bits of the first three numbers of an element, and 0; 0 for both zeros and for what is not finite.
  Quad Words(size_t element) const {
    constexpr uint32_t kExponent = 0x7f800000;
    const auto xyz = LoadAll<uint32_t, 3>(element);
    const Quad words = {xyz[0], xyz[1], xyz[2], 0};
    return words & reinterpret_cast<Quad>(((words & kExponent) != kExponent) & (words << 1 != 0));
  }
  /// The bits of the first four numbers of an element, as they are.
  std::array<uint32_t, 4> FirstWords(size_t element) const { return LoadAll<uint32_t, 4>(element); }
  /// Whether bits are a number above 0 that is finite.
  static bool IsPositive(uint32_t word) {
    constexpr uint32_t kInfinite = 0x7f800000;
    return word - 1 < kInfinite - 1;
  }
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

  /// The first four numbers of an element.
  std::array<uint32_t, 4> FirstFour(size_t element) const {
    std::array<uint32_t, 4> numbers;
    UseFour([&](const auto& fourAt) { numbers = fourAt(element); });
    return numbers;
  }
  /// Calls `use` with a function that gives the first number of an element, made for the size of the numbers.
  template <class Use>
  void UseFirst(const Use& use) const {
    if (numberSize_ == 1) return use([this](size_t i) -> uint32_t { return Load<uint8_t>(i, 0); });
    if (numberSize_ == 2) return use([this](size_t i) -> uint32_t { return Load<uint16_t>(i, 0); });
    use([this](size_t i) { return Load<uint32_t>(i, 0); });
  }
  /// The same for the first four numbers.
  template <class Use>
  void UseFour(const Use& use) const {
    if (numberSize_ == 1) return use([this](size_t i) { return Widened(LoadAll<uint8_t, 4>(i)); });
    if (numberSize_ == 2) return use([this](size_t i) { return Widened(LoadAll<uint16_t, 4>(i)); });
    use([this](size_t i) { return LoadAll<uint32_t, 4>(i); });
  }

 private:
  template <class T>
  static std::array<uint32_t, 4> Widened(const std::array<T, 4>& numbers) {
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
  }

  size_t numberSize_ = sizeof(uint32_t);
};

}  // namespace scene::gltf

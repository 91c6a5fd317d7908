// SPDX-License-Identifier: MIT
#include "scene/gltf/accessors.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include "base/byte_cursor.h"

namespace scene::gltf {
namespace {

/// Elements as they lie in a buffer.
struct Elements {
  std::string_view bytes;
  size_t count, width, stride;
  bool normalized;
};

template <class S, class T>
T ConvertNumber(S value, bool normalized) {
  if constexpr (std::is_same_v<T, uint32_t>) {
    if constexpr (std::is_same_v<S, float>)
      return value >= 0 && value < 4e9f ? static_cast<T>(value) : 0;
    else
      return value < 0 ? 0 : static_cast<T>(value);
  } else if constexpr (std::is_same_v<S, float>) {
    return std::isfinite(value) ? value : 0.0f;
  } else {
    constexpr float kFull = static_cast<float>(std::numeric_limits<S>::max());
    return normalized ? std::max(static_cast<float>(value) / kFull, -1.0f) : static_cast<float>(value);
  }
}

template <class S, class T>
void Convert(const Elements& from, T* to) {
  for (size_t i = 0; i < from.count; ++i) {
    const char* element = from.bytes.data() + i * from.stride;
    for (size_t k = 0; k < from.width; ++k) {
      *to++ = ConvertNumber<S, T>(base::LoadNumber<S>(element + k * sizeof(S), false), from.normalized);
    }
  }
}

template <class T>
void ConvertAny(Component component, const Elements& from, T* to) {
  switch (component) {
    case Component::I8:
      return Convert<int8_t>(from, to);
    case Component::U8:
      return Convert<uint8_t>(from, to);
    case Component::I16:
      return Convert<int16_t>(from, to);
    case Component::U16:
      return Convert<uint16_t>(from, to);
    case Component::U32:
      return Convert<uint32_t>(from, to);
    case Component::F32:
      return Convert<float>(from, to);
  }
}

}  // namespace

size_t SizeOf(Component component) {
  switch (component) {
    case Component::I8:
    case Component::U8:
      return 1;
    case Component::I16:
    case Component::U16:
      return 2;
    default:
      return 4;
  }
}

template <class T>
std::vector<T> AccessorReader::Read(uint32_t index, uint32_t width) const {
  const Accessor& accessor = document_.accessors[index];
  if (accessor.width != width) throw Fault("accessor " + std::to_string(index) + " is of the wrong type");
  constexpr uint64_t kMost = std::numeric_limits<int32_t>::max();
  if (accessor.count > kMost / (width * sizeof(T))) throw Fault("an accessor claims too many elements");
  budget_.Take(accessor.count * width * sizeof(T));
  Elements elements{{}, static_cast<size_t>(accessor.count), width, 0, accessor.normalized};
  std::vector<T> numbers;
  if (accessor.place.view != kNone && elements.count > 0) {
    const size_t size = width * SizeOf(accessor.component);
    elements.stride = document_.views[accessor.place.view].stride;
    if (elements.stride == 0) elements.stride = size;
    if (elements.stride < size) throw Fault("the elements of accessor " + std::to_string(index) + " overlap");
    // Looked for before there is room for them.
    elements.bytes = bytes_.At(document_, accessor.place, (accessor.count - 1) * elements.stride + size);
  }
  numbers.resize(elements.count * width);
  if (!elements.bytes.empty()) ConvertAny(accessor.component, elements, numbers.data());
  if (accessor.sparseCount > 0) ReadSparse(accessor, numbers);
  return numbers;
}

template <class T>
void AccessorReader::ReadSparse(const Accessor& accessor, std::vector<T>& out) const {
  const uint64_t count = accessor.sparseCount;
  const size_t width = accessor.width;
  if (count > accessor.count || accessor.sparseIndices.view == kNone || accessor.sparseValues.view == kNone)
    throw Fault("a sparse accessor is damaged");
  const uint64_t used = budget_.Used();
  budget_.Take(count * (sizeof(uint32_t) + width * sizeof(T)));
  const auto read = [&](const Place& place, Component component, size_t numbers, bool normalized, auto& to) {
    const size_t size = numbers * SizeOf(component);
    const Elements elements{bytes_.At(document_, place, count * size), static_cast<size_t>(count), numbers,
                            size, normalized};
    to.resize(elements.count * numbers);
    ConvertAny(component, elements, to.data());
  };
  std::vector<uint32_t> indices;
  std::vector<T> values;
  read(accessor.sparseIndices, accessor.sparseComponent, 1, false, indices);
  read(accessor.sparseValues, accessor.component, width, accessor.normalized, values);
  for (size_t i = 0; i < indices.size(); ++i) {
    if (indices[i] >= accessor.count) throw Fault("a sparse accessor leads out of its elements");
    std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(i * width), width,
                out.begin() + static_cast<std::ptrdiff_t>(indices[i] * width));
  }
  budget_.ReturnTo(used);
}

std::vector<float> AccessorReader::Floats(uint32_t accessor, uint32_t width) const {
  return Read<float>(accessor, width);
}

std::vector<uint32_t> AccessorReader::Integers(uint32_t accessor, uint32_t width) const {
  return Read<uint32_t>(accessor, width);
}

}  // namespace scene::gltf

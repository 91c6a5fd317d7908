// SPDX-License-Identifier: MIT
#include "scene/gltf/accessors.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <type_traits>
#include <vector>

#include "base/byte_cursor.h"

namespace scene::gltf {

/// Elements as they lie in a buffer; no bytes for zeros.
struct StoredElements {
  std::string_view bytes;
  size_t count, width, stride;
  bool normalized;
};

namespace {

template <class S, class T>
T ConvertNumber(S value, bool normalized) {
  if constexpr (std::is_same_v<T, uint32_t>) {
    if constexpr (std::is_same_v<S, float>) {
      return value >= 0 && value < 4e9f ? static_cast<T>(value) : 0;
    } else {
      return value < 0 ? 0 : static_cast<T>(value);
    }
  } else if constexpr (std::is_same_v<S, float>) {
    return std::isfinite(value) ? value : 0.0f;
  } else {
    constexpr float kFull = static_cast<float>(std::numeric_limits<S>::max());
    return normalized ? std::max(static_cast<float>(value) / kFull, -1.0f) : static_cast<float>(value);
  }
}

template <class S, class T>
void Convert(const StoredElements& from, T* to) {
  for (size_t i = 0; i < from.count; ++i) {
    const char* element = from.bytes.data() + i * from.stride;
    for (size_t k = 0; k < from.width; ++k) {
      *to++ = ConvertNumber<S, T>(base::LoadNumber<S>(element + k * sizeof(S), false), from.normalized);
    }
  }
}

template <class T>
void ConvertAny(Component component, const StoredElements& from, T* to) {
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

/// Whether the numbers stand in the file as a T has them, or as smaller whole numbers.
template <class T>
bool IsReady(const Accessor& accessor) {
  if (std::endian::native == std::endian::big || accessor.sparseCount > 0) return false;
  const Component component = accessor.component;
  if (std::is_same_v<T, float>) return component == Component::F32;
  return component == Component::U8 || component == Component::U16 || component == Component::U32;
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

StoredElements AccessorReader::Find(uint32_t index, uint32_t width) const {
  const Accessor& accessor = document_.accessors[index];
  if (accessor.width != width) throw Fault("accessor " + std::to_string(index) + " is of the wrong type");
  constexpr uint64_t kMost = std::numeric_limits<int32_t>::max();
  if (accessor.count > kMost / (width * sizeof(float))) throw Fault("an accessor claims too many elements");
  StoredElements stored{{}, static_cast<size_t>(accessor.count), width, 0, accessor.normalized};
  if (accessor.place.view == kNone || stored.count == 0) return stored;
  const size_t size = width * SizeOf(accessor.component);
  stored.stride = document_.views[accessor.place.view].stride;
  if (stored.stride == 0) stored.stride = size;
  if (stored.stride < size) throw Fault("the elements of accessor " + std::to_string(index) + " overlap");
  stored.bytes = bytes_.At(document_, accessor.place, (accessor.count - 1) * stored.stride + size);
  return stored;
}

template <class T>
Elements AccessorReader::Read(uint32_t index, uint32_t width) const {
  const StoredElements stored = Find(index, width);
  const Accessor& accessor = document_.accessors[index];
  if (!stored.bytes.empty() && IsReady<T>(accessor))
    return {stored.bytes.data(), stored.count, stored.stride};
  const size_t numbers = stored.count * width;
  budget_.Take(numbers * sizeof(T));
  FbxArray<char> converted;
  T* const to = reinterpret_cast<T*>(converted.Allocate(numbers * sizeof(T)));
  if (stored.bytes.empty()) {
    std::fill_n(to, numbers, T{});
  } else {
    ConvertAny(accessor.component, stored, to);
  }
  if (accessor.sparseCount > 0) ReadSparse(accessor, to);
  return {std::move(converted), stored.count, width * sizeof(T)};
}

template <class T>
void AccessorReader::ReadSparse(const Accessor& accessor, T* out) const {
  const uint64_t count = accessor.sparseCount;
  const size_t width = accessor.width;
  if (count > accessor.count || accessor.sparseIndices.view == kNone || accessor.sparseValues.view == kNone)
    throw Fault("a sparse accessor is damaged");
  const uint64_t used = budget_.Used();
  budget_.Take(count * (sizeof(uint32_t) + width * sizeof(T)));
  const auto read = [&](const Place& place, Component component, size_t numbers, bool normalized, auto& to) {
    const size_t size = numbers * SizeOf(component);
    const StoredElements stored{bytes_.At(document_, place, count * size), static_cast<size_t>(count),
                                numbers, size, normalized};
    to.resize(stored.count * numbers);
    ConvertAny(component, stored, to.data());
  };
  std::vector<uint32_t> indices;
  std::vector<T> values;
  read(accessor.sparseIndices, accessor.sparseComponent, 1, false, indices);
  read(accessor.sparseValues, accessor.component, width, accessor.normalized, values);
  for (size_t i = 0; i < indices.size(); ++i) {
    if (indices[i] >= accessor.count) throw Fault("a sparse accessor leads out of its elements");
    std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(i * width), width, out + indices[i] * width);
  }
  budget_.ReturnTo(used);
}

FloatElements AccessorReader::Floats(uint32_t accessor, uint32_t width) const {
  return FloatElements(Read<float>(accessor, width));
}

IntegerElements AccessorReader::Integers(uint32_t accessor, uint32_t width) const {
  Elements elements = Read<uint32_t>(accessor, width);
  const bool isConverted = elements.Memory() > 0;
  return {std::move(elements),
          isConverted ? sizeof(uint32_t) : SizeOf(document_.accessors[accessor].component)};
}

}  // namespace scene::gltf

// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>
#include <nlohmann/json.hpp>
#include <span>
#include <string>

namespace actor {

/// The binary part of a .glb file under construction, and the JSON that describes it.
class GltfBuffer {
 public:
  using Json = nlohmann::ordered_json;

  enum Target { None = 0, Vertices = 34962, Indices = 34963 };

  /// Adds an accessor over `values`: `components` of them make one element of the glTF type `type`.
  /// @return its number
  template <class T>
  size_t Add(std::span<const T> values, size_t components, const char* type, Target target) {
    const size_t view = AddView(values.data(), values.size_bytes(), target);
    accessors_.push_back({{"bufferView", view},
                          {"componentType", ComponentType(T{})},
                          {"count", values.size() / components},
                          {"type", type}});
    return accessors_.size() - 1;
  }

  /// Adds the lowest and highest values of an accessor, which positions need.
  void SetBounds(size_t accessor, const Json& low, const Json& high) {
    accessors_[accessor]["min"] = low;
    accessors_[accessor]["max"] = high;
  }

  /// Adds `size` bytes. @return the number of their view
  size_t AddView(const void* data, size_t size, Target target) {
    bytes_.resize((bytes_.size() + 3) / 4 * 4);  // every element starts at a multiple of its size
    views_.push_back({{"buffer", 0}, {"byteOffset", bytes_.size()}, {"byteLength", size}});
    if (target != None) views_.back()["target"] = static_cast<int>(target);
    bytes_.append(static_cast<const char*>(data), size);
    return views_.size() - 1;
  }

  const Json& Accessors() const { return accessors_; }
  const Json& Views() const { return views_; }
  const std::string& Bytes() const { return bytes_; }

 private:
  static int ComponentType(uint8_t) { return 5121; }
  static int ComponentType(uint16_t) { return 5123; }
  static int ComponentType(uint32_t) { return 5125; }
  static int ComponentType(float) { return 5126; }

  Json accessors_ = Json::array(), views_ = Json::array();
  std::string bytes_;
};

}  // namespace actor

// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "base/vectors.h"
#include "export/gltf_list.h"

namespace actor {

/// The binary part of a .glb file under construction, and the JSON that describes it.
class GltfBuffer {
 public:
  enum Target { None = 0, Vertices = 34962, Indices = 34963 };

  /// Adds an accessor over `values`: `components` of them make one element of the glTF type `type`.
  /// @param bounds  of positions, which need them
  /// @return its number
  template <class T>
  size_t Add(std::span<const T> values, size_t components, const char* type, Target target,
             const base::Box* bounds = nullptr) {
    const size_t view = AddView(values.data(), values.size_bytes(), target);
    ts3d::JsonWriter& json = accessors_.Open();
    json.Member("bufferView", view);
    json.Member("componentType", ComponentType(T{}));
    json.Member("count", values.size() / components);
    json.Member("type", type);
    if (bounds) {
      json.Member("min", bounds->low);
      json.Member("max", bounds->high);
    }
    return accessors_.Close();
  }

  /// Adds `size` bytes. @return the number of their view
  size_t AddView(const void* data, size_t size, Target target) {
    bytes_.resize((bytes_.size() + 3) / 4 * 4);  // every element starts at a multiple of its size
    ts3d::JsonWriter& json = views_.Open();
    json.Member("buffer", 0);
    json.Member("byteOffset", bytes_.size());
    json.Member("byteLength", size);
    if (target != None) json.Member("target", static_cast<int>(target));
    bytes_.append(static_cast<const char*>(data), size);
    return views_.Close();
  }

  GltfList& Accessors() { return accessors_; }
  GltfList& Views() { return views_; }
  const std::string& Bytes() const { return bytes_; }

 private:
  static int ComponentType(uint8_t) { return 5121; }
  static int ComponentType(uint16_t) { return 5123; }
  static int ComponentType(uint32_t) { return 5125; }
  static int ComponentType(float) { return 5126; }

  GltfList accessors_, views_;
  std::string bytes_;
};

}  // namespace actor

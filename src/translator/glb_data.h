// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "translator/json_text.h"

namespace translator {

/// The numbers of a GLB file, and what its JSON says of them.
class GlbData {
 public:
  enum Component : uint32_t { kU16 = 5123, kU32 = 5125, kFloat = 5126 };

  /// Adds bytes as they are.
  /// @return the number of their view
  size_t AddView(std::string_view bytes) {
    bytes_.resize((bytes_.size() + 3) / 4 * 4);
    const size_t offset = bytes_.size();
    bytes_ += bytes;
    return views_.Add("{\"buffer\":0,\"byteOffset\":" + std::to_string(offset) +
                      ",\"byteLength\":" + std::to_string(bytes.size()) + "}");
  }

  /// Adds elements of `width` numbers each.
  /// @param type  as "VEC3"
  /// @return the number of their accessor
  template <class T>
  size_t Add(std::span<const T> numbers, Component component, const char* type, size_t width) {
    const size_t view = AddView({reinterpret_cast<const char*>(numbers.data()), numbers.size_bytes()});
    return accessors_.Add("{\"bufferView\":" + std::to_string(view) +
                          ",\"componentType\":" + std::to_string(component) + ",\"type\":\"" + type +
                          "\",\"count\":" + std::to_string(numbers.size() / width) + "}");
  }

  const std::string& Bytes() const { return bytes_; }

  /// The members of the JSON that describe the numbers.
  std::string Members() const {
    return "\"buffers\":[{\"byteLength\":" + std::to_string(bytes_.size()) +
           "}],\"bufferViews\":" + views_.Text() + ",\"accessors\":" + accessors_.Text();
  }

 private:
  std::string bytes_;
  JsonList views_, accessors_;
};

}  // namespace translator

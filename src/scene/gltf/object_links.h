// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "scene/gltf/record_writer.h"

namespace scene::gltf {

/// Identifiers of objects and who is connected to whom.
class ObjectLinks {
 public:
  int64_t NewId() { return ++last_; }
  /// @param destination  0: the root of the scene
  /// @param property     of the destination; stays, as literals do. Empty: the object itself
  void Connect(int64_t source, int64_t destination, std::string_view property = {}) {
    links_.push_back({source, destination, property});
  }
  void Write(RecordWriter& writer) const {
    writer.Begin("Connections");
    for (const auto& [source, destination, property] : links_) {
      writer.Begin("C").Bytes(property.empty() ? "OO" : "OP").Integer(source).Integer(destination);
      if (!property.empty()) writer.Bytes(property);
      writer.End();
    }
    writer.End();
  }

 private:
  struct Link {
    int64_t source, destination;
    std::string_view property;
  };

  int64_t last_ = 0;
  std::vector<Link> links_;
};

}  // namespace scene::gltf

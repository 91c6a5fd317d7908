// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "core/json_writer.h"

namespace actor {

/// An array of a glTF document under construction, whose entries are known by their numbers.
class GltfList {
 public:
  GltfList() { json_.OpenArray(); }

  /// Opens the next entry, an object: write its members, then Close().
  ts3d::JsonWriter& Open() {
    json_.OpenObject();
    return json_;
  }
  /// @return the entry's number
  size_t Close() {
    json_.CloseObject();
    return count_++;
  }

  size_t Count() const { return count_; }
  /// Ends the list. What it holds as JSON.
  const std::string& Finish() {
    json_.CloseArray();
    return json_.Text();
  }

 private:
  ts3d::JsonWriter json_{ts3d::JsonWriter::Layout::Compact};
  size_t count_ = 0;
};

}  // namespace actor

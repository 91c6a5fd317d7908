// SPDX-License-Identifier: MIT
#include "scene/gltf/json_limits.h"

#include "scene/gltf/document.h"

namespace scene::gltf {
namespace {

/// The place behind the string that starts before `at`.
size_t SkipString(std::string_view json, size_t at) {
  while (at < json.size() && json[at] != '"') at += json[at] == '\\' ? 2 : 1;
  return at + 1;
}

}  // namespace

void CheckJsonClaims(std::string_view json, uint64_t fileSize) {
  // Parsed, a number takes a place in a list that grows; a list, an object or a text takes a block of its own.
  constexpr uint64_t kValue = 40, kBlock = 112, kDeepest = 256;
  const uint64_t most = 6 * fileSize + (uint64_t{24} << 20);
  uint64_t claim = 0, depth = 0;
  for (size_t i = 0; i < json.size(); ++i) {
    switch (json[i]) {
      case '"':
        i = SkipString(json, i + 1) - 1;
        claim += kBlock;
        break;
      case '{':
      case '[':
        if (++depth > kDeepest) throw Fault("its JSON is nested too deep");
        claim += kBlock;
        break;
      case '}':
      case ']':
        depth -= depth > 0 ? 1 : 0;
        break;
      case ',':
        claim += kValue;
        break;
      default:
        break;
    }
    if (claim > most) throw Fault("its JSON has too many values for a file of this size");
  }
}

}  // namespace scene::gltf

// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace translator {

/// Names of the nodes that a B3D file calls bones. The library keeps of bones those with weights.
inline std::set<std::string> FindB3dBones(std::string_view file) {
  struct Node {
    std::string name;
    size_t end;
  };
  constexpr size_t kChunkHead = 8, kFileHead = 12, kTransform = 40;
  std::set<std::string> bones;
  std::vector<Node> open;
  for (size_t at = kFileHead; at <= file.size() && file.size() - at >= kChunkHead;) {
    while (!open.empty() && at >= open.back().end) open.pop_back();
    uint32_t size = 0;
    for (size_t i = 4; i-- > 0;) size = size << 8 | static_cast<unsigned char>(file[at + 4 + i]);
    const std::string_view kind = file.substr(at, 4);
    at += kChunkHead;
    if (size > file.size() - at) break;
    if (kind == "NODE") {
      const size_t nameEnd = file.find('\0', at);
      if (nameEnd == file.npos) break;
      open.push_back({std::string(file.substr(at, nameEnd - at)), at + size});
      at = nameEnd + 1 + kTransform;
      continue;
    }
    if (kind == "BONE" && !open.empty()) bones.insert(open.back().name);
    at += size;
  }
  return bones;
}

}  // namespace translator

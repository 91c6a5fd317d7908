// SPDX-License-Identifier: MIT
//
// Bytes -> records -> scene -> everything that a conversion reads of it.
#include <cstdint>
#include <memory>
#include <string>

#include "read_scene.h"
#include "scene/assemble/build_scene.h"
#include "scene/fbx_reader.h"

namespace {

constexpr size_t kLargestInput = 1 << 20;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kLargestInput) return 0;
  auto tree = std::make_shared<scene::RecordTree>();
  auto bytes = std::make_shared<std::string>(reinterpret_cast<const char*>(data), size);
  tree->bytes = *bytes;
  tree->storage = bytes;
  if (!ReadFbxRecords(*tree).Succeeded()) return 0;
  scene::KFbxScene loaded("");
  BuildScene(tree, loaded);
  fuzz::ReadScene(loaded);
  return 0;
}

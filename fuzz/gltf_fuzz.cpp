// SPDX-License-Identifier: MIT
//
// The bytes of a ".glb" or ".gltf" -> scene -> everything that a conversion reads of it.
#include <cstdint>
#include <string_view>

#include "read_scene.h"
#include "scene/gltf/gltf_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kLargestInput = 1 << 20;
  if (size > kLargestInput) return 0;
  const scene::GltfReader reader;
  scene::KFbxFileVersion version;
  scene::KFbxImportStatus status;
  scene::KFbxIOSettings settings;
  settings.SetStringProp(scene::kModelFolderSetting, "");
  settings.SetBoolProp(scene::kExtractEmbeddedSetting, false);
  const auto file =
      reader.OpenMemory("", {reinterpret_cast<const char*>(data), size}, nullptr, version, status);
  scene::KFbxScene loaded("");
  if (file && file->Read(loaded, settings).Succeeded()) fuzz::ReadScene(loaded);
  return 0;
}

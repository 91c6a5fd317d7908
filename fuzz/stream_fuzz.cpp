// SPDX-License-Identifier: MIT
//
// The stream of a process that translates models -> scene -> everything that a conversion reads of it. The first byte
// says which format the model is taken to be of.
#include <cstdint>
#include <string>

#include "read_scene.h"
#include "scene/gltf/open_translated.h"
#include "scene/other/translate.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kLargestInput = 1 << 20;
  if (size == 0 || size > kLargestInput) return 0;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  // Formats without marks are told by what stands in their files.
  for (const scene::other::ModelKind& known : scene::other::ModelKinds()) known.detects(input.substr(1));
  scene::other::ColladaUnit(input);
  const auto kinds = scene::other::ModelKinds();
  const scene::other::ModelKind& kind = kinds[data[0] % kinds.size()];
  const auto translation = std::make_shared<scene::translation::Answer>();
  try {
    *translation = scene::translation::ReadStream(std::string(input.substr(1)));
  } catch (const scene::translation::Fault&) {
    return 0;
  }
  scene::gltf::Conventions conventions;
  conventions.centimetres = kind.centimetres;
  conventions.turn = {kind.turn[0], kind.turn[1], 0};
  conventions.model = input;
  scene::KFbxImportStatus status;
  scene::KFbxIOSettings settings;
  settings.SetStringProp(scene::kModelFolderSetting, "");
  settings.SetBoolProp(scene::kExtractEmbeddedSetting, false);
  const auto file =
      scene::gltf::OpenTranslated(translation->Data(), translation, conventions, "", nullptr, status);
  scene::KFbxScene loaded("");
  if (file && file->Read(loaded, settings).Succeeded()) fuzz::ReadScene(loaded);
  return 0;
}

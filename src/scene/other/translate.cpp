// SPDX-License-Identifier: MIT
#include "scene/other/translate.h"

namespace scene::other {
namespace {

#ifdef _WIN32
constexpr const char* kNoLibrary = "system has none for it: export the model as FBX or glTF";
#else
constexpr const char* kNoLibrary =
    "was built without it: install libassimp-dev and build again, or export the model as FBX or glTF";
#endif

}  // namespace

translation::Answer Translate(const ModelKind& kind, std::string_view model, const std::string& folder,
                              const std::function<void()>& wait) {
  if (!translation::IsThere()) {
    throw translation::Fault(std::string(kind.name) + " models are read by the library assimp, and this " +
                             kNoLibrary);
  }
  // What it becomes takes part of the memory that the rest of the import has.
  const uint64_t mostOutput = translation::MostMemory(model.size()) / 4;
  return translation::Run(kind.ending, folder, model, model.size(), mostOutput, wait);
}

}  // namespace scene::other

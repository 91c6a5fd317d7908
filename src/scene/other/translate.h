// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "scene/other/model_kinds.h"

namespace scene::other {

/// Why a model could not be translated, in words for its user.
struct Fault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A model as a GLB file in memory.
struct Translation {
  std::string stream;                   ///< as the translating process wrote it
  size_t start = 0;                     ///< of the GLB file in `stream`
  std::vector<std::string> otherFiles;  ///< below the model's folder, which it read as well; with slashes

  std::string_view Glb() const { return std::string_view(stream).substr(start); }
};

/// Has a model translated by a process of its own.
/// @param folder  of the model; nothing outside is read. Empty: no other file is
/// @param wait    called several times a second; may throw
/// @throws Fault
Translation Translate(const ModelKind& kind, std::string_view model, const std::string& folder,
                      const std::function<void()>& wait);

/// Takes the stream of a translating process apart.
/// @throws Fault with the reason that it gives, or for what is no stream
Translation ReadStream(std::string stream);

}  // namespace scene::other

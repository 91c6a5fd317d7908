// SPDX-License-Identifier: MIT
#pragma once

#include "scene/other/model_kinds.h"
#include "scene/readers/translator.h"

namespace scene::other {

/// Has a model translated into a GLB file by a process of its own.
/// @param folder  of the model; nothing outside is read. Empty: no other file is
/// @param wait    called several times a second; may throw
/// @throws translation::Fault
translation::Answer Translate(const ModelKind& kind, std::string_view model, const std::string& folder,
                              const std::function<void()>& wait);

}  // namespace scene::other

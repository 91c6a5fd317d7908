// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "skeleton/bone_node.h"
#include "skeleton/model_source.h"

namespace ts3d {

/// Whether the document, which takes the names of meshes and bones as they are, cannot be read with this one.
bool BreaksDocument(std::string_view name);

/// Whether the rename lines of the document name the bone as it
/// is: they do the root and those without weight.
bool IsNamedAsItIs(const BoneNode& bone, int32_t id);

/// The names of meshes and bones that make the document of this conversion unreadable, each once.
std::vector<std::string> NamesThatBreakDocument(const ModelSource& model, const BoneTree& bones);

}  // namespace ts3d

// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "skeleton/bone_node.h"

namespace ts3d {

/// One rename line of the document, with its line feed. Nothing is escaped.
std::string BoneRenameLine(std::string_view oldName, std::string_view newName);

/// The rename lines of a conversion: the root bone's, then those of the host's list, or of all unweighted
/// bones when the host gave none. Bones that carry no weight get the "!" form of their name.
std::string BoneRenameLines(const BoneTree& bones, std::string_view boneRenameList);

/// Rename lines of the final settings for the unweighted bones that the host's list does not name: the
/// product's name where it has one, else the "!" form of their own.
std::string MappedBoneRenameLines(const BoneTree& bones, std::string_view boneRenameList);

}  // namespace ts3d

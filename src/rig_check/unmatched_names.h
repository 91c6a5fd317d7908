// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "scene/model/node.h"
#include "skeleton/bone_node.h"

namespace ts3d {

/// Names that the options of a conversion can be about.
struct OptionTargets {
  std::vector<std::string> meshes;   ///< of all meshes
  std::vector<std::string> outputs;  ///< of all mesh files and materials, those that are left out as well
  std::vector<std::string> bones;
};

/// The names of the scene below `root` and of the skeleton taken from it.
OptionTargets CollectOptionTargets(const scene::KFbxNode& root, const BoneTree& bones);

/// A name that was asked for and is not there.
struct UnmatchedName {
  std::string name;
  std::vector<std::string> nearest;  ///< names that are there, the most similar first
};

enum class LetterCase { Any, Exact };

/// Those of `asked` that `existing` does not hold.
std::vector<UnmatchedName> FindUnmatchedNames(const std::vector<std::string>& asked,
                                              const std::vector<std::string>& existing,
                                              LetterCase letterCase = LetterCase::Any);

}  // namespace ts3d

// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "scene/model/scene.h"

namespace corpus {

/// One thing that two scenes do not share.
struct Difference {
  std::string aspect;  ///< "node", "transform", "points", "uv", ...
  std::string where;   ///< names from the root down to the node, joined by slashes
  std::string text;    ///< expected and found value
};

using Differences = std::vector<Difference>;

/// Numbers are alike when they differ by no more than this share of the largest number around them.
inline constexpr double kTolerance = 1e-4;

/// All that a conversion reads of two scenes that should be one and the same.
/// Nodes are paired by name first and by place where names differ. Control
/// points are compared without and with the blend shapes of the default take.
Differences CompareScenes(scene::KFbxScene& expected, scene::KFbxScene& actual);

/// The scene in the file `path`, without unpacking what is embedded in it; null, with `error` set, when the
/// file cannot be read.
std::unique_ptr<scene::KFbxScene> LoadScene(const std::string& path, std::string& error);

/// Control points of `mesh` with its blend shapes at their default weights; x, y, z each.
std::vector<double> ShapedPoints(const scene::KFbxMesh& mesh);

/// Name of the file that `path` leads to, whichever slashes it has.
std::string BaseName(std::string_view path);

/// `name` without the suffix "_ncl1_<number>" that writers of version 6 make names unique with.
std::string WithoutUniqueSuffix(std::string_view name);

}  // namespace corpus

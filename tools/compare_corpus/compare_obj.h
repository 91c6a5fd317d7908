// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>
#include <vector>

#include "compare_corpus/scene_compare.h"

namespace corpus {

/// One corner of a polygon in world space.
struct WorldCorner {
  std::array<double, 3> point{};
  std::array<double, 2> uv{};
  bool hasUv = false;
};

/// Polygons without shared points, as a reference mesh has them.
struct WorldMesh {
  std::vector<std::vector<WorldCorner>> polygons;
};

/// Reads the positions, texture coordinates and faces of the .obj file `path`. A comment with "bad_uvs" says
/// that its texture coordinates do not count. False, with `error` set, when it cannot be read.
bool ReadObj(const std::string& path, WorldMesh& mesh, std::string& error);

/// All polygons of the scene in the default take: blend shapes, then skins as linear blends of the links'
/// present transforms, then the node's transform for points that no bone holds.
WorldMesh WorldPolygons(scene::KFbxScene& scene);

/// What of `expected` is not in `actual`: numbers of polygons, polygons in their places, texture coordinates.
/// The order of the polygons and their first corners do not count. A mesh that agrees only after a quarter
/// turn about x or in another unit differs in its "axes" alone.
Differences CompareWithObj(const WorldMesh& expected, const WorldMesh& actual);

}  // namespace corpus

// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/conversion_job.h"
#include "package/actor_package.h"
#include "scene/model/node.h"

namespace ts3d {

/// What the walk over the scene's meshes produces for each listed name.
enum class MeshListMode : int32_t {
  MeshLines = 2,        ///< a mesh line
  MaterialLines = 3,    ///< a material line, with the next thread identifier
  AddMeshFiles = 4,     ///< "<name>.cmf" added to the package
  AddMaterialFiles = 5  ///< "<name>.xrf" added to the package
};

/// The result of a walk that found no mesh.
inline constexpr int32_t kNoMeshListed = 5;

/// A mesh or material that the document lists.
struct ListedName {
  std::string name;
  std::string mesh;  ///< the name of the mesh that it is a part of
};

/// Calls `visit` with everything that the document lists for the scene below `root`, in its order; also with
/// what is left out.
/// @param baseNameLast  whether a mesh's own name comes after those of its further materials
/// @return the number of meshes
int32_t ForEachListedName(const scene::KFbxNode& root, bool baseNameLast,
                          const std::function<void(const ListedName&)>& visit);

/// Whether the job leaves it out: by its own name, or with the whole mesh that was asked to be left out.
bool IsLeftOut(const ListedName& listed, const ConversionJob& job);

/// Walks all nodes below the scene's root, parents first, children in order. A mesh without control points is
/// not listed and hides the nodes below it.
/// @param lines  receives the lines of the first two modes
/// @return 0, or kNoMeshListed
int32_t WriteMeshListForScene(ConversionJob& job, MeshListMode mode, PackagedNameSet& packagedNames,
                              AfterAdding afterAdding, std::string& lines);

}  // namespace ts3d

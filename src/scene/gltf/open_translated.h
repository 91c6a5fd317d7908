// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "scene/math/matrix.h"
#include "scene/readers/reader_registry.h"

namespace scene::gltf {

/// How a model stands, and in what unit. FBX characters stand in centimetres; glTF has metres, whatever some
/// exporters think.
struct Conventions {
  double centimetres = 100;  ///< in a unit of the GLB file
  double unitsTaken = 1;     ///< units of the GLB file in one of the model, which it tells itself
  KFbxVector4 turn;          ///< degrees about X, then Y, to stand along Y and look along +Z
  std::string axes;          ///< what is told of them
  std::string_view model;    ///< the file that a GLB file was made of; empty when it is the model itself
};

/// What lengths are multiplied by to be centimetres.
/// @param unit  that the user says the model is in: "m", "cm", "mm" or "inch"; empty: its own
double CentimetresIn(std::string_view unit, const Conventions& conventions);

/// Folder, with a separator at its end, of the files that belong to the model `path`; empty: there are none.
std::string FolderOfModel(const KFbxIOSettings& settings, std::string_view path);

/// Opens a model that was translated into a GLB file, which is checked like any other.
/// @param storage  keeps `glb` and `conventions.model` alive
/// @return null with `status` set when it cannot be read
std::unique_ptr<KFbxOpenFile> OpenTranslated(std::string_view glb, std::shared_ptr<const void> storage,
                                             Conventions conventions, std::string_view path,
                                             const KFbxProgress& progress, KFbxImportStatus& status);

}  // namespace scene::gltf

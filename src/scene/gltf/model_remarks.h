// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "scene/gltf/document.h"
#include "scene/gltf/open_translated.h"

namespace scene {
class KFbxScene;
}

namespace scene::gltf {

/// What was found out while a model was read.
struct ModelFacts {
  double scale = 1.0;     ///< what its lengths are multiplied by to be centimetres
  double height = 0.0;    ///< in centimetres; 0: not known
  bool isPosed = false;   ///< its joints stand otherwise than when they were bound
  std::string addedRoot;  ///< name of the bone that joins several top bones; empty: none
};

/// Tells users what became of a model that is no FBX file.
void AddRemarks(const Document& document, const Conventions& conventions, const ModelFacts& facts,
                KFbxScene& scene);

}  // namespace scene::gltf

// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "scene/model/scene.h"

namespace scene {

/// Fills the empty `scene` with what the records describe. Damaged objects, connections and elements lose
/// only themselves; nothing of the scene is converted or repaired.
/// @param tell  told how much of it is done, from 0 to 1; may be empty
/// @return why the file is refused because it has an absurd number of objects, or no error; the scene is empty then
ParseError BuildScene(std::shared_ptr<const RecordTree> tree, KFbxScene& scene,
                      const std::function<void(double done)>& tell = {});

}  // namespace scene

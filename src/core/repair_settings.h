// SPDX-License-Identifier: MIT
#pragma once

namespace ts3d {

/// What a conversion puts right beyond the rules of the exported functions, which leave all of it off.
struct RepairSettings {
  bool rigidBones = false;    ///< bones lose their scale and keep their place in the world
  bool bindFromSkin = false;  ///< the pose in which the skins were bound takes the place of the bind pose
  bool openGroups = false;    ///< nodes without an attribute do not hide the bones below them
  bool joinRoots = false;     ///< several top-level skeletons go below one new root bone
  bool attachRigid = false;   ///< meshes without a skin keep their place and follow the bone they hang on

  bool operator==(const RepairSettings&) const = default;
};

}  // namespace ts3d

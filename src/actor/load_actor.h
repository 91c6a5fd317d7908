// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "actor/actor.h"
#include "actor/finding.h"
#include "actor/package_contents.h"

namespace actor {

/// Builds the actor of a package from its members; what is damaged is left out and becomes a finding.
/// Afterwards every index is in range: faces name vertices, influences name bones (vertices have none when
/// there is no skeleton), and all numbers are finite, of meshes and bones at most 1e9. The bytes of pictures
/// move from `contents` to `actor`.
/// @return false, with an `error`, when there is no skeleton, no mesh and no document: then it is no actor
bool BuildActor(PackageContents& contents, Actor& actor, Findings& findings, std::string& error);

/// Reads the package or folder `path` and builds its actor.
/// @return false, with an `error`, when it cannot be read or holds no actor
bool LoadActor(const std::string& path, const ReadLimits& limits, Actor& actor, Findings& findings,
               std::string& error);

}  // namespace actor

// SPDX-License-Identifier: MIT
#pragma once

#include "actor/actor.h"
#include "actor/finding.h"
#include "actor/package_contents.h"

namespace actor {

/// Adds what does not fit together in a package to `findings`: its files, its document, skeleton and meshes.
/// What cannot be read at all is found by BuildActor.
void CheckActor(const PackageContents& contents, const Actor& actor, Findings& findings);

// The parts of CheckActor, one file each.
void CheckMembers(const PackageContents& contents, const Actor& actor, Findings& findings);
void CheckDocument(const PackageContents& contents, const Actor& actor, Findings& findings);
void CheckSkeleton(const Skeleton& skeleton, Findings& findings);
void CheckMeshes(const Actor& actor, Findings& findings);

}  // namespace actor

// SPDX-License-Identifier: MIT
#include "inspect/check_actor.h"

namespace actor {

void CheckActor(const PackageContents& contents, const Actor& actor, Findings& findings) {
  CheckMembers(contents, actor, findings);
  CheckDocument(contents, actor, findings);
  CheckSkeleton(actor.skeleton, findings);
  CheckMeshes(actor, findings);
}

}  // namespace actor

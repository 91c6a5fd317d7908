// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "core/conversion_job.h"
#include "package/actor_package.h"

namespace ts3d {

/// What the document calls the model: its actor type or, without one, the document's name.
std::string ObjectId(ActorType actorType, const std::string& documentPath);

/// What every document begins with.
std::string DocumentHead();

/// Writes the document that tells the product how to assemble the actor, beside the package. When it cannot
/// be written nothing happens: adding it to the package then fails and says so.
void WriteActorConfig(ConversionJob& job, const std::string& packagePath, PackagedNameSet& packagedNames);

}  // namespace ts3d

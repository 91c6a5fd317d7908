// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "config/mesh_list.h"
#include "core/conversion_job.h"

namespace ts3d {

/// What the document calls the model: its actor type or, without one, the document's name.
std::string ObjectId(ActorType actorType, const std::string& documentPath);

/// What every document begins with.
std::string DocumentHead();

/// Writes the document that tells the product how to assemble the actor, beside the package. When it cannot
/// be written nothing happens: adding it to the package then fails and says so.
void WriteActorConfig(ConversionJob& job, const std::string& packagePath, const MeshList& meshes);

}  // namespace ts3d

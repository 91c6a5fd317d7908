// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "core/actor_type.h"

namespace ts3d {

/// One line of the document's materials, with its line feed. Nothing is escaped.
std::string MaterialLine(std::string_view name, int threadId, std::string_view file);

/// The material lines that every actor of a type has for the
/// product's own head, hair and body; none without a type.
std::string FixedMaterialLines(ActorType actorType);

}  // namespace ts3d

// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "core/actor_type.h"

namespace ts3d {

/// The actor type that a model's path asks for, folder included, in any letter case.
ActorType DetectActorType(std::string_view path);

}  // namespace ts3d

// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "actor/actor.h"

namespace actor {

/// Reads a skeleton file from memory. Afterwards parents come before their children and the lists of children
/// say what the parents say; numbers may be infinite or none.
/// @return false when the bytes are no such file from first to last; `error` tells why, `skeleton` is empty
bool ReadSkeleton(std::string_view bytes, Skeleton& skeleton, std::string& error);

}  // namespace actor

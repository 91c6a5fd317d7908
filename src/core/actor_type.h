// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace ts3d {

/// Which human actor a model is; chosen from its path. The numbers are part of the host's interface.
enum class ActorType : int32_t { None = 0, Male = 1, Female = 2, Boy = 3, Girl = 4, Teenager = 5, Baby = 6 };

}  // namespace ts3d

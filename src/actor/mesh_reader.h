// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "actor/actor.h"

namespace actor {

/// Reads a mesh file from memory; `mesh.name` stays. Afterwards every face names vertices of the mesh and
/// every vertex its part of `influences`; bone numbers are not negative, numbers may be infinite or none.
/// @return false when the bytes are no such file from first to last; `error` tells why, `mesh` is empty
bool ReadMesh(std::string_view bytes, Mesh& mesh, std::string& error);

}  // namespace actor

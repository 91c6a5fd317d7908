// SPDX-License-Identifier: MIT
//
// Where the library Draco is not installed.
#include <stdexcept>

#include "translator/unpack_meshes.h"

namespace translator {

std::string UnpackMeshes(std::string_view) {
  throw std::runtime_error(
      "its meshes are compressed with KHR_draco_mesh_compression, and this was built without the library for "
      "it: "
      "install libdraco-dev and build again, or export the model without compression");
}

}  // namespace translator

// SPDX-License-Identifier: MIT
#pragma once

#include <new>

namespace scene {

/// A mesh takes more memory than a file of its size can honestly ask for.
class KFbxMeshExcess : public std::bad_alloc {
 public:
  const char* what() const noexcept override {
    return "a mesh unpacks to far more than a file of this size can hold";
  }
};

}  // namespace scene

// SPDX-License-Identifier: MIT
// Exports the plug-in function, but ends the process that loads it.
#include <cstdlib>

#include "scene/readers/reader_registry.h"

namespace {

[[maybe_unused]] const int crash = (std::abort(), 0);

}  // namespace

extern "C" __attribute__((visibility("default"))) void FbxSceneRegisterReaders(scene::KFbxReaderRegistry&) {}

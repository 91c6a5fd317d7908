// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "scene/gltf/bytes.h"
#include "scene/gltf/document.h"

namespace scene::gltf {

/// Whether there is a library that unpacks views.
bool CanUnpackViews();

/// Unpacks a view that is compressed with EXT_meshopt_compression, by the library meshoptimizer, which is loaded when
/// the first such view comes.
/// @param packed  the bytes that `view.packed` names
/// @param budget  what the view unpacks to is taken from it before there is room for it
/// @throws Fault when it is damaged, or the library is not installed
std::string UnpackView(const BufferView& view, std::string_view packed, Budget& budget);

}  // namespace scene::gltf

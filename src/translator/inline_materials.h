// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace translator {

/// An X file as text in which meshes have their materials themselves: the library takes the first materials of the file
/// for those that a mesh refers to by name. Other files are given back as they are.
std::string InlineMaterials(std::string file);

}  // namespace translator

// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace translator {

/// A Collada file in which no two joints that skins may mean have the same name: the library takes the first one of the
/// file for all, whatever skeleton a skin is said to hang on.
std::string WithOwnJoints(std::string_view collada);

}  // namespace translator

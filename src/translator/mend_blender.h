// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace translator {

/// Whether the exporter of Blender itself wrote a Collada file; that of 2.4 and others name themselves otherwise.
bool IsFromBlender(std::string_view collada);

/// Such a file as it is meant. The exporter writes
/// - names of bones as they are, with characters that end an attribute or begin an element,
/// - transforms that are not matrices from the scale to the translation, although the last one comes first,
/// - where a skinned mesh stands into the shape of its skin, but relative to its parent; here the node has it,
/// - what hangs on a bone relative to the bone's tail, although the bone's node stands at its head.
std::string MendBlenderFile(std::string collada);

}  // namespace translator

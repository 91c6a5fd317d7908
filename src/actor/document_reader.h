// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "actor/actor.h"

namespace actor {

/// Reads a document from memory; `document.memberName` stays.
/// Names keep their bytes, whatever their encoding.
/// @return false when the bytes are no well-formed document; `error` tells where, `document` holds what came
/// before. Also false when a number is none: it keeps its default, and all else is read
bool ReadDocument(std::string_view bytes, Document& document, std::string& error);

}  // namespace actor

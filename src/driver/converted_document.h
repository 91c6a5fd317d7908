// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/actor_type.h"

namespace ts3d {

/// `text` with the line ends of this program, whatever system has written it.
std::string WithLineFeeds(std::string text);

/// The document as the conversion wrote it, of all that a package has under one name: the first.
/// A package that was repacked has lost that one: its latest without what final settings add stands in.
std::string ConvertedDocument(const std::vector<std::string>& documents);

/// The actor type that the conversion of `document` found.
ActorType ActorTypeOf(std::string_view document);

}  // namespace ts3d

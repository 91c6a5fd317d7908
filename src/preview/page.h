// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "export/export_model.h"
#include "preview/vectors.h"

namespace preview {

/// The page without an actor, in pieces; none in a build without it.
std::vector<std::string_view> PageTemplate();

/// One page, complete in itself, that shows an actor in a browser.
/// @param title shown above it
/// @param up as FindStand takes it
/// @throws std::logic_error in a build without the page
std::string WritePage(const actor::Actor& source, const std::string& title,
                      const actor::PictureEncoder& encode, const std::optional<Vector>& up = std::nullopt);

}  // namespace preview

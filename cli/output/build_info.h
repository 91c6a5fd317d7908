// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace cli {

/// Which source this tool was built of; empty when nobody knew.
std::string BuildCommit();
/// Kinds of pictures that are converted, as "png".
std::vector<std::string> PictureKinds();
/// Names and versions of the libraries that it was built with.
std::vector<std::pair<std::string, std::string>> LibraryVersions();

/// All of that as JSON without a line end, see docs/json.md.
std::string VersionAsJson();

}  // namespace cli

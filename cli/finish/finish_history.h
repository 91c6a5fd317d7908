// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "finish/finish_settings.h"

namespace cli {

/// Where a package stands with its final settings.
struct FinishHistory {
  std::optional<std::string> converted;  ///< the document as the conversion wrote it
  std::string latest;                    ///< the document that holds now; empty without `converted`
  FinishSettings settings;               ///< what has made `latest` of `converted`
};

/// Reads it from the documents called `documentName` in the package; the first of them is the conversion's.
/// A package that was repacked has lost that one: its latest without what final settings add stands in.
FinishHistory ReadFinishHistory(const std::filesystem::path& package, const std::string& documentName);

/// `text` with the line ends of this program, whatever system has written it.
std::string WithLineFeeds(std::string text);

}  // namespace cli

// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "platform/file_system.h"
#include "settings/finish_settings.h"

namespace cli {

/// Where a package stands with its final settings.
struct FinishHistory {
  std::optional<std::string> converted;  ///< the document as the conversion wrote it
  std::string latest;                    ///< the document that holds now; empty without `converted`
  FinishSettings settings;               ///< what has made `latest` of `converted`
};

/// Reads it from the documents called `documentName` in the package.
FinishHistory ReadFinishHistory(const platform::fs::path& package, const std::string& documentName);

}  // namespace cli

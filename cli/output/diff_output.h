// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "inspect/compare_packages.h"
#include "output/inspection.h"

namespace cli {

/// Two packages and what is different in the second.
struct PackageDiff {
  Inspection before, after;
  actor::Differences differences;  ///< none when one of them cannot be read

  bool IsReadable() const { return before.error.empty() && after.error.empty(); }
  bool IsSame() const { return IsReadable() && differences.empty(); }
};

/// For a person: counts side by side, then the differences, part by part. Ends with a line end.
std::string DiffAsText(const PackageDiff& diff);

/// For programs; docs/inspect.md describes it.
std::string DiffAsJson(const PackageDiff& diff);

}  // namespace cli

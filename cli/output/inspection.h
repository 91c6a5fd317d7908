// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "actor/actor.h"
#include "actor/finding.h"
#include "actor/package_contents.h"

namespace cli {

/// Everything that "fbx2czp inspect" tells about a package.
struct Inspection {
  std::string path;
  actor::PackageContents contents;
  actor::Actor actor;
  actor::Findings findings;
  std::string error;   ///< why it cannot be read; empty when it can
  int exitStatus = 0;  ///< that belongs to the error
};

/// Reads and checks the package `path`, or a folder with the files of one.
/// @return its `error` is set when it cannot be read or holds no actor
Inspection Inspect(const std::string& path);

/// For a person. Ends with a line end.
std::string InspectionAsText(const Inspection& inspection);

/// All of them as one JSON text; docs/inspect.md describes it.
std::string InspectionsAsJson(const std::vector<Inspection>& inspections);

/// How many findings are problems.
size_t CountProblems(const actor::Findings& findings);

}  // namespace cli

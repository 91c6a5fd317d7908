// SPDX-License-Identifier: MIT
#pragma once

#include <string>

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
};

/// Reads and checks the package `path`, or a folder with the files of one.
/// @return false, with an `error`, when it cannot be read or holds no actor
bool Inspect(const std::string& path, Inspection& inspection, std::string& error);

/// Number of the layout of InspectionAsJson; raised when a member changes its meaning or goes.
inline constexpr int kInspectionSchema = 1;

/// For a person, or for programs. Both end with a line end.
std::string InspectionAsText(const Inspection& inspection);
std::string InspectionAsJson(const Inspection& inspection);

/// How many findings are problems.
size_t CountProblems(const actor::Findings& findings);

}  // namespace cli

// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/finding.h"
#include "package/read_member.h"
#include "results/step_times.h"
#include "textures/texture_converter.h"

namespace cli {

/// A file in a package.
using ts3d::MemberSize;

/// A name that an option gives and that nothing in the model has.
struct UnmatchedOption {
  std::string option;                ///< "--exclude", ...
  std::string name;                  ///< as the user gave it
  std::vector<std::string> nearest;  ///< names that the model has, the most similar first
};

/// What became of one model.
struct ModelResult {
  std::string model;                        ///< as the user wrote it
  int code = 0;                             ///< result code; 0 is success
  std::string reason;                       ///< why it failed; empty on success
  std::vector<std::string> status;          ///< status lines in order, without line ends
  std::string readerOutput;                 ///< what the reader said of a file that it cannot load
  std::vector<std::string> damage;          ///< arrays of the model that could not be unpacked
  std::vector<std::string> malformedNames;  ///< names that make the document unreadable
  std::vector<ts3d::Finding> said;          ///< what the status lines tell, and no other finding does
  std::vector<ts3d::Finding> notes;         ///< advice in plain words
  std::vector<ts3d::Finding> faults;        ///< of the rig, which show in the package
  std::vector<textures::TextureProblem> textureProblems;
  std::vector<UnmatchedOption> unmatchedOptions;
  int32_t vertices = 0, triangles = 0;
  double seconds = 0.0;
  StepSeconds steps;       ///< of the conversion
  bool isCurrent = false;  ///< not converted: the package is newer than all that it is made of
  std::vector<std::string> shrunkPictures;  ///< ".tga" files that are smaller than their pictures
  std::vector<std::string> inputs;          ///< files that it is made of, and where missing pictures would be
  std::vector<std::string> beside;  ///< names of the other files that are left in the package's folder
  std::string package;              ///< path; empty on failure
  uint64_t packageBytes = 0;
  std::vector<MemberSize> members;

  /// What is wrong with the package, in words: damaged arrays, missing pictures and names.
  std::vector<std::string> Losses() const;
};

/// All of it, for the way from the process that converts.
std::string ToJson(const ModelResult& result);
/// The opposite. @throws nlohmann::json::exception on anything else
ModelResult ResultFromJson(std::string_view json);

struct Totals {
  size_t succeeded = 0;
  int64_t vertices = 0, triangles = 0;
  uint64_t packageBytes = 0;
  int warnings = 0;  ///< coded ones, pictures that are missing, damage and faults of rigs
};
Totals Sum(const std::vector<ModelResult>& results);

}  // namespace cli

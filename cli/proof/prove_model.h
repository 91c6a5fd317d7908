// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

#include "prove/prove.h"

namespace cli {

inline constexpr int kMostPoses = 10000;

/// What became of one model that is to be proven.
struct ProvenModel {
  std::string name;   ///< as the user wrote it
  std::string error;  ///< why there is no proof; empty when there is one
  int status = 0;     ///< exit status of that
  prove::Proof proof;
};

/// Compares the model with `package`; no `package`: with the one that it is converted into, in memory and
/// without pictures.
/// @param model  absolute
ProvenModel ProveModelFile(const std::string& name, const std::filesystem::path& model,
                           const std::filesystem::path& package, const prove::ProofOptions& options);

}  // namespace cli

// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "options/convert_options.h"
#include "platform/file_system.h"
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

/// An error in parts of the model's diagonal, as people read it.
std::string ErrorText(double error);

/// Converts a model in memory, without its pictures.
/// @param model  absolute
/// @param options  what counts for meshes and bones
/// @param error  gets why that failed
/// @return the package, of which no one has a file
/// @throws std::bad_alloc
std::string ConvertInMemory(const platform::fs::path& model, const ConvertOptions& options,
                            std::string& error);

/// Compares the model with `package`; no `package`: with the one that it is converted into in memory.
/// @param model  absolute
/// @param convert  what it is converted with
ProvenModel ProveModelFile(const std::string& name, const platform::fs::path& model,
                           const platform::fs::path& package, const prove::ProofOptions& options,
                           const ConvertOptions& convert = {});

}  // namespace cli

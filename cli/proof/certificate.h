// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/file_system.h"
#include "proof/prove_model.h"

namespace cli {

/// Writes what was proven of which files to `path`, in one step.
/// @throws Failure when a file cannot be read or the certificate not be written
void WriteCertificate(const platform::fs::path& path, const platform::fs::path& model,
                      const platform::fs::path& package, const prove::Proof& proof);

/// What the check of a certificate came to.
struct Verification {
  std::string model, package;  ///< that were looked at
  std::string problem;         ///< why the certificate does not hold; empty when it does
  std::string result;          ///< that it certifies, as `result` in JSON
  double worst = 0.0;          ///< error of the certificate
};

/// Compares the files with the hashes of the certificate `path` and proves them again, in the same poses.
/// @param model, package  empty: those that the certificate names, beside it
/// @throws Failure when the certificate or a file cannot be read
Verification VerifyCertificate(const platform::fs::path& path, const platform::fs::path& model,
                               const platform::fs::path& package);

}  // namespace cli

// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "core/conversion_job.h"

namespace ts3d {

/// The content of a member.
struct MemberSource {
  const std::string& name;  ///< of the member
  std::string path;         ///< of the file; empty when the name leads out of the model's folder
  bool isHeld = false;      ///< the job has the bytes, which are not in the folder
};

/// Adds the member to the job's open package, deflated as the job's `packLevel` says. One whose file cannot
/// be read becomes an empty one.
/// @return 0, or a negative code after its status line
int32_t AddMember(ConversionJob& job, const MemberSource& source);

}  // namespace ts3d

// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/file_system.h"

namespace cli {

/// One model of a command line.
struct ModelTask {
  std::string name;           ///< as the user wrote it
  platform::fs::path model;   ///< absolute
  platform::fs::path folder;  ///< where package and document go; absolute
  std::string stem = {};      ///< of the names of both; empty: the model's

  platform::fs::path Package() const;
  /// What the model is called in its work folder.
  std::string NameInWork() const;
};

}  // namespace cli

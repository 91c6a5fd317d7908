// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "platform/file_system.h"

namespace cli {

/// A picture on a contact sheet.
struct SheetEntry {
  std::string title;
  platform::fs::path picture;  ///< below the folder of the sheet
};

/// A page for any browser that shows all pictures with their titles.
std::string ContactSheet(const std::vector<SheetEntry>& entries);

}  // namespace cli

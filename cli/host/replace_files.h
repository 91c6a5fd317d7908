// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "export/export_model.h"
#include "platform/file_system.h"

namespace cli {

/// What to tell of `name`, which could not be written for the reason `error`, a value of `errno`: that the
/// disk is full comes first.
std::string WhyNotWritten(const std::string& name, int error);

/// Writes all of `files` into `folder`, over any files of their names: first under other names, then, when
/// each is complete, under their own, in their order.
/// @throws Failure with the reason when one cannot be written; then no file is left that was not
/// there before, and none is gone. A name that is a folder's is found before anything is written.
void ReplaceFiles(const platform::fs::path& folder, const std::vector<actor::ExportedFile>& files);

}  // namespace cli

// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "driver/conversion_job.h"

namespace ts3d {

/// What becomes of the meshes and bone renames of a document that the lists of the settings do not name: the
/// exports drop them, but for what the skeleton knows.
enum class Unnamed { Drop, Keep };

/// The artist's last choices, beside those in the job.
struct FinalSettings {
  std::string sourcePath;     ///< the model; its last three characters give way to "xfg" and "czp"
  float scalePercent = 0.0f;  ///< above 0: the scale is a hundredth of it; else 1
  std::string meshList;       ///< "mesh=friendly" entries separated by "|"
  Unnamed unnamed = Unnamed::Drop;
  std::optional<std::string> document = std::nullopt;  ///< to start from, in place of the one on the disk
};

/// Rewrites the document that a conversion left beside the package and adds it to the package again.
ConversionResult ApplyFinalSettings(ConversionJob& job, const FinalSettings& settings);

/// Rewrites the document inside the package `settings.sourcePath`, as it was converted, and adds it to the
/// package again, which is replaced in one step. Nothing else is read or written, and no status lines are
/// sent.
ConversionResult ApplySettingsToPackage(ConversionJob& job, const FinalSettings& settings);

/// The document `text` with the settings applied; none when a
/// marker that the rewrite needs is missing from it.
std::optional<std::string> RewriteDocument(std::string_view text, const ConversionJob& job,
                                           std::string_view meshList, Unnamed unnamed = Unnamed::Drop);

}  // namespace ts3d

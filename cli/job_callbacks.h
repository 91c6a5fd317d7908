// SPDX-License-Identifier: MIT
#pragma once

#include "core/conversion_job.h"
#include "status_printer.h"
#include "textures/texture_converter.h"

namespace cli {

/// What a job calls while it runs: the context of all its callbacks. Must outlive every run of the job.
class JobCallbacks {
 public:
  /// @param textures provides the pictures, or null where none are asked for
  JobCallbacks(ts3d::ConversionJob& job, StatusPrinter& printer, TextureConverter* textures = nullptr);
  JobCallbacks(const JobCallbacks&) = delete;
  JobCallbacks& operator=(const JobCallbacks&) = delete;

 private:
  static void FBX_TO_TS3D_CALL OnStatus(void* context, const char* line);
  static void FBX_TO_TS3D_CALL OnTexture(void* context, const char* source, uint8_t* converted);

  const ts3d::ConversionJob& job_;
  StatusPrinter& printer_;
  TextureConverter* textures_;
};

}  // namespace cli

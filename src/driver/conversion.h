// SPDX-License-Identifier: MIT
#pragma once

#include "driver/convert.h"
#include "driver/final_settings.h"

namespace ts3d {

/// One job and what it holds from one call to the next. Conversions have nothing in common: several may run
/// at once, each in a thread of its own.
class Conversion {
 public:
  Conversion() = default;
  ~Conversion() { Release(); }
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;

  ConversionJob& Job() { return job_; }
  const ConversionJob& Job() const { return job_; }

  ConversionResult Convert(const ConversionRequest& request) { return RunConversion(job_, request); }
  ConversionResult Finish(const FinalSettings& settings) { return ApplyFinalSettings(job_, settings); }
  ConversionResult FinishPackage(const FinalSettings& settings) {
    return ApplySettingsToPackage(job_, settings);
  }
  /// Frees the scene that a failed run has left.
  void Release() { ReleaseScene(job_); }

 private:
  ConversionJob job_;
};

}  // namespace ts3d

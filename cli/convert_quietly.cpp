// SPDX-License-Identifier: MIT
#include "convert_quietly.h"

#include "driver/convert.h"
#include "host_paths.h"
#include "job_callbacks.h"

namespace cli {
namespace fs = std::filesystem;

int ConvertQuietly(const fs::path& model, const WorkFolder& work, fs::path& package) {
  StatusPrinter printer(Verbosity::Quiet);
  TextureConverter textures(model, kDefaultLongestSide);
  ts3d::ConversionJob job;
  const JobCallbacks callbacks(job, printer, &textures);
  const CurrentFolder current(work.Model().parent_path());
  package = WithExtension(work.Model(), "czp");
  return static_cast<int>(ts3d::RunConversion(job, {ConverterPath(work.Model()), ConverterPath(model)}));
}

}  // namespace cli

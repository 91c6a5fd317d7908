// SPDX-License-Identifier: MIT
#include "finish_command.h"

#include <cstdio>
#include <filesystem>

#include "exit_codes.h"
#include "host_paths.h"

namespace cli {
namespace {

void Append(std::vector<std::string>& to, const std::vector<std::string>& from) {
  to.insert(to.end(), from.begin(), from.end());
}

/// The file's settings, with those of the command line behind or in place of them.
FinishSettings Combine(const FinishOptions& options) {
  FinishSettings settings;
  if (!options.settingsFile.empty()) ReadFinishSettings(options.settingsFile, settings);
  const FinishSettings& given = options.settings;
  if (given.scalePercent != FinishSettings().scalePercent) settings.scalePercent = given.scalePercent;
  if (given.rotationX) settings.rotationX = given.rotationX;
  if (given.rotationY) settings.rotationY = given.rotationY;
  Append(settings.boneRenames, given.boneRenames);
  Append(settings.meshes, given.meshes);
  return settings;
}

}  // namespace

int RunFinish(const FinishOptions& options) {
  const FinishSettings settings = Combine(options);
  const std::filesystem::path model = std::filesystem::absolute(options.model);
  StatusPrinter printer(options.verbosity);
  ts3d::ConversionJob job;
  printer.Attach(job);
  // The converter deletes the packed document from the current directory; from here it cannot, so that it
  // stays beside the package for the next change.
  const TemporaryFolder nowhere;
  const CurrentFolder current(nowhere.Path());
  const int code = ApplyFinishSettings(model.string(), settings, job);
  if (code != 0) {
    std::fprintf(stderr, "fbx2czp: error: %s: %s\n", options.model.c_str(), DescribeExitCode(code));
  } else {
    std::printf("%s: updated\n", WithExtension(options.model, "czp").c_str());
  }
  return code;
}

}  // namespace cli

// SPDX-License-Identifier: MIT
#include "convert_command.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <optional>

#include "core/names.h"
#include "driver/convert.h"
#include "exit_codes.h"
#include "status_printer.h"
#include "work_folder.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

/// The converter splits paths at the backslash.
std::string ConverterPath(const fs::path& path) {
  std::string text = path.string();
  std::replace(text.begin(), text.end(), '/', '\\');
  return text;
}

std::string Join(const std::vector<std::string>& entries) {
  std::string list;
  for (const std::string& entry : entries) list += (list.empty() ? "" : "|") + entry;
  return list;
}

void FBX_TO_TS3D_CALL PrintStatus(void* printer, const char* line) {
  static_cast<StatusPrinter*>(printer)->Print(line);
}

ts3d::ConversionJob MakeJob(const ConvertOptions& options, StatusPrinter& printer) {
  ts3d::ConversionJob job;
  job.callbackContext = &printer;
  job.statusCallback = PrintStatus;
  job.rotationY = options.rotationY;
  job.rotationX = options.rotationX;
  job.boneRenameList = Join(options.boneRenames);
  job.meshOptionMode = options.meshMode;
  std::vector<std::string> meshes = options.meshes;
  for (const std::string& mesh : options.doubleSidedMeshes) meshes.push_back("!" + mesh);
  job.meshOptionList = Join(meshes);
  job.exclusionList = options.excludedNames;
  return job;
}

/// Makes `folder` the current directory as long as it lives: the converter deletes its work files there.
class CurrentFolder {
 public:
  explicit CurrentFolder(const fs::path& folder) : before_(fs::current_path()) {
    fs::current_path(folder, failed_);
  }
  ~CurrentFolder() { fs::current_path(before_, failed_); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
  fs::path before_;
  std::error_code failed_;
};

int ConvertIn(const fs::path& model, const fs::path& original, ts3d::ConversionJob& job) {
  const CurrentFolder current(model.parent_path());
  return static_cast<int>(ts3d::RunConversion(job, {ConverterPath(model), ConverterPath(original)}));
}

fs::path WithExtension(const fs::path& path, const char* extension) {
  return ts3d::ReplaceExtension(path.string(), extension);
}

/// A package without meshes, or one that was not completed, is of no use to anybody.
void RemoveOutputs(const fs::path& model) {
  std::error_code ignored;
  for (const char* extension : {"czp", "xfg"}) fs::remove(WithExtension(model, extension), ignored);
}

void ReportSuccess(const fs::path& package, const ts3d::ConversionJob& job) {
  std::printf("%s: %d vertices, %d triangles, %ju bytes\n", package.c_str(), job.vertexTotal,
              job.polygonTotal, static_cast<uintmax_t>(fs::file_size(package)));
  std::fflush(stdout);
}

void ReportFailure(const std::string& model, const char* reason) {
  std::fprintf(stderr, "fbx2czp: error: %s: %s\n", model.c_str(), reason);
}

int ConvertModel(const std::string& name, const ConvertOptions& options) {
  const fs::path model = fs::absolute(name);
  if (model.string().find('\\') != std::string::npos) {
    ReportFailure(name, "a path with a backslash cannot be converted; rename the file or its folder");
    return FBX_TO_TS3D_NO_FILE;
  }
  StatusPrinter printer(options.verbosity);
  ts3d::ConversionJob job = MakeJob(options, printer);
  fs::path package = WithExtension(model, "czp");
  int code = 0;
  if (options.outputFolder.empty() || !fs::exists(model)) {
    code = ConvertIn(model, model, job);
    if (code == FBX_TO_TS3D_PACKAGE_FAILED || code == FBX_TO_TS3D_NO_MESH) RemoveOutputs(model);
  } else {
    const WorkFolder work(model);
    code = ConvertIn(work.Model(), model, job);
    if (code == 0) {
      fs::create_directories(options.outputFolder);
      work.MoveTo(options.outputFolder, WithExtension(model.filename(), "xfg"));
      work.MoveTo(options.outputFolder, package.filename());
    }
    package = fs::path(options.outputFolder) / package.filename();
  }
  printer.ClearBar();
  if (code == 0) {
    ReportSuccess(package, job);
  } else {
    ReportFailure(name, DescribeExitCode(code));
  }
  return code;
}

}  // namespace

int RunConvert(const ConvertOptions& options) {
  int firstFailure = 0;
  for (const std::string& model : options.models) {
    int code = 0;
    try {
      code = ConvertModel(model, options);
    } catch (const fs::filesystem_error& error) {
      ReportFailure(model, error.what());
      code = FBX_TO_TS3D_PACKAGE_FAILED;
    } catch (const std::bad_alloc&) {
      ReportFailure(model, "there is not enough memory");
      code = FBX_TO_TS3D_LOAD_FAILED;
    }
    if (firstFailure == 0) firstFailure = code;
  }
  return firstFailure;
}

}  // namespace cli

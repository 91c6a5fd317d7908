// SPDX-License-Identifier: MIT
#include "convert_command.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>

#include "driver/convert.h"
#include "exit_codes.h"
#include "finish_settings.h"
#include "host_paths.h"
#include "job_callbacks.h"
#include "terminal.h"
#include "textures/image_reader.h"
#include "work_folder.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

constexpr const char* kExamples =
    "  fbx2czp convert hero.fbx\n"
    "      writes hero.czp, and hero.xfg for later final settings, beside the model\n"
    "  fbx2czp convert \"Actor (Female).fbx\" --rotation-y 180 --output packages\n"
    "      the file name makes it a female actor; nothing is written beside the model\n"
    "  fbx2czp convert hero.fbx --double-sided Hair --exclude Helper --rename L_femur=\"left femur\"\n"
    "  fbx2czp convert hero.fbx --finish-settings hero.json\n"
    "      converts and applies final settings, so that bone renames know the skeleton\n";

/// What "fbx2czp convert" was asked for.
struct ConvertOptions {
  std::vector<std::string> models;
  std::string outputFolder;  ///< empty: beside each model
  int32_t rotationY = 0;
  int32_t rotationX = 0;
  std::vector<std::string> boneRenames;  ///< "old=new"
  int32_t meshMode = 0;
  std::vector<std::string> meshes;
  std::vector<std::string> doubleSidedMeshes;
  std::vector<std::string> excludedNames;
  bool rigidBones = false;
  int longestTextureSide = kDefaultLongestSide;  ///< pixels
  std::string finishSettings;                    ///< JSON file with final settings, or empty
  Verbosity verbosity = Verbosity::Normal;
};

ts3d::ConversionJob MakeJob(const ConvertOptions& options) {
  ts3d::ConversionJob job;
  job.rotationY = options.rotationY;
  job.rotationX = options.rotationX;
  job.boneRenameList = JoinList(options.boneRenames);
  job.meshOptionMode = options.meshMode;
  std::vector<std::string> meshes = options.meshes;
  for (const std::string& mesh : options.doubleSidedMeshes) meshes.push_back("!" + mesh);
  job.meshOptionList = JoinList(meshes);
  job.exclusionList = options.excludedNames;
  job.rigidBones = options.rigidBones;
  return job;
}

/// Runs in the model's folder, where the converter deletes its work files.
int ConvertIn(const fs::path& model, const fs::path& original, const std::optional<FinishSettings>& finish,
              ts3d::ConversionJob& job) {
  int code = 0;
  {
    const CurrentFolder current(model.parent_path());
    code = static_cast<int>(ts3d::RunConversion(job, {ConverterPath(model), ConverterPath(original)}));
  }
  if (code != 0 || !finish) return code;
  const TemporaryFolder nowhere;
  const CurrentFolder current(nowhere.Path());
  return ApplyFinishSettings(model, *finish, job);
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
  PrintMessage(model, Severity::Error, reason);
}

/// Says what becomes of the textures of `model` while it is converted.
void ReportTextures(const std::string& model, StatusPrinter& printer, TextureConverter& textures) {
  textures.onConvert = [&printer](const fs::path& picture) {
    printer.Print("Converting Texture: " + picture.string());
  };
  textures.onProblem = [&printer, model](const TextureProblem& problem) {
    printer.ClearBar();
    PrintMessage(model, Severity::Warning, "texture " + problem.source + " " + problem.text);
  };
}

int ConvertModel(const std::string& name, const ConvertOptions& options,
                 const std::optional<FinishSettings>& finish) {
  const fs::path model = fs::absolute(name);
  if (model.string().find('\\') != std::string::npos) {
    ReportFailure(name, "a path with a backslash cannot be converted; rename the file or its folder");
    return FBX_TO_TS3D_NO_FILE;
  }
  StatusPrinter printer(options.verbosity);
  TextureConverter textures(model, options.longestTextureSide);
  ReportTextures(name, printer, textures);
  ts3d::ConversionJob job = MakeJob(options);
  const JobCallbacks callbacks(job, printer, &textures);
  fs::path package = WithExtension(model, "czp");
  int code = 0;
  if (options.outputFolder.empty() || !fs::exists(model)) {
    code = ConvertIn(model, model, finish, job);
    if (code == FBX_TO_TS3D_PACKAGE_FAILED || code == FBX_TO_TS3D_NO_MESH) RemoveOutputs(model);
  } else {
    const WorkFolder work(model);
    code = ConvertIn(work.Model(), model, finish, job);
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

int RunConvert(const ConvertOptions& options) {
  std::optional<FinishSettings> finish;
  if (!options.finishSettings.empty()) ReadFinishSettings(options.finishSettings, finish.emplace());
  int firstFailure = 0;
  for (const std::string& model : options.models) {
    int code = 0;
    try {
      code = ConvertModel(model, options, finish);
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

}  // namespace

void AddConvertCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<ConvertOptions>();
  CLI::App& convert = AddCommand(app, "convert", "Convert models into packages", run,
                                 [options] { return RunConvert(*options); });
  convert.add_option("MODEL", options->models, "FBX files, binary or ASCII")->required();
  convert.add_option("-o,--output", options->outputFolder,
                     "Folder for the package and its .xfg document (default: beside each model)");
  convert.add_option("--rotation-y", options->rotationY,
                     "Turn about the up axis in degrees, for the document (0)");
  convert.add_option("--rotation-x", options->rotationX,
                     "Turn about the side axis in degrees, for the document (0)");
  Repeatable(convert.add_option("--rename", options->boneRenames, "Product name of a bone; repeat for more"))
      ->check(ListPair("OLD=NEW"));
  convert
      .add_option(
          "--mesh-mode", options->meshMode,
          "Which meshes get inward normals. Without --mesh: 1 all, 0 and 2 none. With --mesh: 2 those, "
          "0 and 1 all others (0)")
      ->check(CLI::Range(0, 2));
  Repeatable(convert.add_option("--mesh", options->meshes, "Mesh that --mesh-mode is about; repeat for more"))
      ->check(ListEntry());
  Repeatable(convert.add_option("--double-sided", options->doubleSidedMeshes,
                                "Mesh to draw from both sides; repeat for more"))
      ->check(ListEntry());
  Repeatable(convert.add_option("--exclude", options->excludedNames,
                                "Mesh or material to leave out; repeat for more"));
  convert.add_flag(
      "--rigid-bones", options->rigidBones,
      "Take the scale out of the bones and keep their places; for models whose root has a scale");
  convert
      .add_option("--max-texture", options->longestTextureSide,
                  "Longest side in pixels of a texture that is converted (8192)")
      ->check(CLI::Range(1, kLargestSide));
  convert.add_option("--finish-settings", options->finishSettings,
                     "JSON file with final settings to apply as well");
  AddVerbosity(convert, options->verbosity);
  SetFooter(convert, kExamples);
}

}  // namespace cli

// SPDX-License-Identifier: MIT
#include "commands/export_command.h"

#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>

#include "actor/load_actor.h"
#include "core/names.h"
#include "export/export_gltf.h"
#include "export/export_obj.h"
#include "export/place_actor.h"
#include "host/find_packages.h"
#include "host/host_paths.h"
#include "host/load_package.h"
#include "host/replace_files.h"
#include "output/package_pictures.h"
#include "platform/file_system.h"
#include "preview/model.h"
#include "preview/stand.h"
#include "terminal/exit_codes.h"
#include "terminal/terminal.h"

namespace cli {
namespace fs = platform::fs;
namespace {

bool IsExportFile(const fs::path& path) {
  const std::string extension = ts3d::LowerCase(path.extension().string());
  return extension == ".glb" || extension == ".gltf" || extension == ".obj";
}

struct ExportOptions {
  std::vector<std::string> packages;
  std::string output;          ///< file or folder; empty: beside each package
  std::string format = "glb";  ///< of what goes into folders
  std::string unit;            ///< of the package's lengths; empty: by the size of the model
  std::string up;              ///< axis; empty: concluded from the model
  bool raw = false;            ///< numbers and axes of the package
  bool strict = false;

  bool HasFolder() const { return !output.empty() && !IsExportFile(output); }
};

const std::map<std::string, double> kMetres = {{"mm", 0.001}, {"cm", 0.01}, {"inch", 0.0254}, {"m", 1.0}};

/// Packages do not tell their unit. Most models are in centimetres, as all that were not FBX files are, however tall;
/// small ones are in metres, and those that would be people in millimetres are.
std::string LikelyUnit(double height) {
  constexpr double kTallest = 8.0, kSmallest = 1000.0, kLargest = 3000.0;
  const bool isPerson = height >= kSmallest && height <= kLargest;
  return height <= kTallest ? "m" : isPerson ? "mm" : "cm";
}

/// Stands the model up along +Y, facing +Z, in metres. @return what was done, in words
std::string StandUp(const ExportOptions& options, actor::Actor& actor) {
  if (options.raw) return "numbers and axes of the package";
  const actor::Actor drawable = preview::Drawable(actor);
  const std::optional<preview::Vector> up =
      options.up.empty() ? std::nullopt : std::optional(preview::AxisNames().at(options.up));
  const preview::Stand stand = preview::FindStand(drawable, up);
  const double height = std::abs(preview::Dot(preview::ModelBounds(drawable).Extent(), stand.up));
  const std::string unit = options.unit.empty() ? LikelyUnit(height) : options.unit;
  PlaceActor({{stand.side, stand.up, stand.front}, kMetres.at(unit)}, actor);
  char text[120];
  std::snprintf(text, sizeof text, "%.3g m tall", height * kMetres.at(unit));
  return text + (options.unit.empty() ? " if its lengths are in " + unit + " (--unit)" : std::string());
}

std::vector<actor::ExportedFile> Export(const actor::Actor& actor, const fs::path& output,
                                        Messages& messages) {
  if (HasExtension(output, ".obj")) {
    return ExportObj(actor, output.stem().string(), PngEncoder(messages));
  }
  const std::string generator = "fbx2czp " FBX_TO_TS3D_VERSION;
  if (HasExtension(output, ".gltf")) {
    return ExportGltf(actor, generator, output.stem().string(), PngEncoder(messages));
  }
  return {{output.filename().string(), ExportGlb(actor, generator, PngEncoder(messages))}};
}

/// Writes one package's model to the file `output`. @throws Failure
void ExportOne(const ExportOptions& options, const std::string& package, const fs::path& output,
               Messages& messages) {
  actor::Actor actor;
  LoadPackage(package, actor, messages);
  std::string placement;
  try {
    placement = StandUp(options, actor);
    if (options.HasFolder() && output.has_parent_path()) fs::create_directories(output.parent_path());
    ReplaceFiles(output.parent_path(), Export(actor, output, messages));
  } catch (const std::runtime_error& reason) {
    throw Failure(kNotWritten, reason.what());
  }
  std::printf("%s: %zu meshes, %zu bones, %s\n", Printable(output.string()).c_str(), actor.meshes.size(),
              actor.skeleton.bones.size(), placement.c_str());
}

int RunExport(const ExportOptions& options) {
  const std::vector<PackageInput> inputs = FindPackages(options.packages);
  if (inputs.size() > 1 && !options.output.empty() && !options.HasFolder()) {
    throw Failure(kUsageError, options.output + " is one file, but there are " +
                                   std::to_string(inputs.size()) + " packages; name a folder");
  }
  Messages messages;
  ExitStatus all;
  OutputPaths outputs(options.HasFolder() ? options.output : "", options.format);
  for (const PackageInput& input : inputs) {
    if (inputs.size() > 1) messages.About(input.name);
    try {
      const bool isNamed = !options.output.empty() && !options.HasFolder();
      ExportOne(options, input.name, isNamed ? fs::path(options.output) : outputs.Of(input), messages);
    } catch (const Failure& failure) {
      PrintMessage(input.name, Severity::Error, failure.what());
      all.Add(failure.exitStatus);
    }
  }
  if (options.strict && messages.Warnings() > 0) all.Add(kWarnings);
  return all.Get();
}

std::string CheckExportOutput(const std::string& path) {
  std::error_code unknown;
  if (IsExportFile(path) || !fs::path(path).has_extension() || fs::is_directory(path, unknown)) return {};
  return "\"" + path +
         "\": models are written as .glb (one file), .gltf (separate files) or .obj (no skeleton)";
}

}  // namespace

void AddExportCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<ExportOptions>();
  CLI::App& command = AddCommand(app, "export", "Write the model of a package for other programs", run,
                                 [options] { return RunExport(*options); });
  command
      .add_option("PACKAGE", options->packages,
                  "Packages (.czp), folders of them, and folders with the files of one")
      ->required()
      ->type_name("");
  command
      .add_option("-o,--output", options->output,
                  "OUT.glb: skeleton, skin and pictures in one file; OUT.gltf: the same in separate files;\n"
                  "OUT.obj: shape, colours and pictures; or a folder (default: beside each package)")
      ->check(CLI::Validator(CheckExportOutput, "FILE"));
  command.add_option("--format", options->format, "glb, gltf or obj, for what goes into folders (glb)")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({"glb", "gltf", "obj"}).description(""));
  CLI::Option* raw =
      command.add_flag("--raw", options->raw, "Keep the numbers and axes of the package as they are");
  TakesOneOf(
      command
          .add_option("--unit", options->unit,
                      "What the package's lengths are: cm, m, mm or inch (concluded from the model's size)")
          ->type_name("UNIT"),
      KeysOf(kMetres))
      ->excludes(raw);
  TakesOneOf(
      command
          .add_option("--up", options->up,
                      "Axis of the package that leads upwards: x, y, z, -x, -y or -z (concluded from bones\n"
                      "and bounds)")
          ->type_name("AXIS"),
      KeysOf(preview::AxisNames()))
      ->excludes(raw);
  AddStrict(command, options->strict);
  SetFooter(command,
            "  fbx2czp export hero.czp -o hero.glb\n"
            "      the model with its skeleton, upright and in metres, for viewers and modelling programs\n"
            "  fbx2czp export hero.czp -o hero.glb --unit inch\n"
            "      for a model that was made in inches\n"
            "  fbx2czp export packages/ -o models --format gltf\n"
            "      all packages below a folder\n"
            "  fbx2czp export hero.czp -o hero.obj\n"
            "      the model at rest, with hero.mtl and a .png file for each picture beside it\n");
}

}  // namespace cli

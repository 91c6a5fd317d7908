// SPDX-License-Identifier: MIT
#include "commands/export_command.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "actor/load_actor.h"
#include "core/names.h"
#include "export/export_gltf.h"
#include "export/export_obj.h"
#include "host/replace_files.h"
#include "output/package_pictures.h"
#include "output/terminal.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

constexpr int kWritten = 0, kNotWritten = 1, kUnreadable = 2;

struct ExportOptions {
  std::string package;
  std::string output;
};

std::vector<actor::ExportedFile> Export(const actor::Actor& actor, const fs::path& output) {
  if (ts3d::EqualsIgnoreCase(output.extension().string(), ".obj")) {
    return ExportObj(actor, output.stem().string(), PngEncoder());
  }
  return {{output.filename().string(), ExportGlb(actor, "fbx2czp " FBX_TO_TS3D_VERSION, PngEncoder())}};
}

int RunExport(const ExportOptions& options) {
  actor::Actor actor;
  actor::Findings findings;
  std::string error;
  if (!LoadActor(options.package, actor::ReadLimits(), actor, findings, error)) {
    PrintMessage(options.package, Severity::Error, error);
    return kUnreadable;
  }
  for (const actor::Finding& finding : findings) {
    PrintMessage(finding.subject, Severity::Warning, finding.text);
  }
  try {
    const fs::path output = options.output;
    ReplaceFiles(output.parent_path(), Export(actor, output));
  } catch (const std::runtime_error& reason) {
    PrintMessage(options.output, Severity::Error, reason.what());
    return kNotWritten;
  }
  std::printf("%s: %zu meshes, %zu bones\n", Printable(options.output).c_str(), actor.meshes.size(),
              actor.skeleton.bones.size());
  return kWritten;
}

std::string CheckExportOutput(const std::string& path) {
  const std::string extension = ts3d::LowerCase(fs::path(path).extension().string());
  return extension == ".glb" || extension == ".obj" ? std::string()
                                                    : "\"" + path + "\" is no .glb or .obj file";
}

}  // namespace

void AddExportCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<ExportOptions>();
  CLI::App& command = AddCommand(app, "export", "Write the model of a package for other programs", run,
                                 [options] { return RunExport(*options); });
  command.add_option("PACKAGE", options->package, "The .czp file, or a folder with the files of one")
      ->required();
  command
      .add_option("-o,--output", options->output,
                  "OUT.glb: skeleton, skin and pictures in one file; OUT.obj: shape, colours and pictures")
      ->required()
      ->check(CLI::Validator(CheckExportOutput, "FILE"));
  command.footer(
      "Examples:\n"
      "  fbx2czp export hero.czp -o hero.glb\n"
      "      the model with its skeleton, for viewers and modelling programs\n"
      "  fbx2czp export hero.czp -o hero.obj\n"
      "      the model at rest, with hero.mtl and a .png file for each picture beside it\n"
      "\nExit codes:\n"
      "    0  the model is written\n"
      "    1  it could not be written; nothing is left of it\n"
      "    2  the package cannot be read\n"
      "   64  wrong command line\n");
}

}  // namespace cli

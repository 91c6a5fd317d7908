// SPDX-License-Identifier: MIT
#include "commands/preview_command.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <list>
#include <map>
#include <memory>
#include <stdexcept>

#include "convert/convert_with_settings.h"
#include "core/work_files.h"
#include "host/find_files.h"
#include "host/find_packages.h"
#include "host/host_paths.h"
#include "host/input_problem.h"
#include "host/load_package.h"
#include "host/replace_files.h"
#include "output/contact_sheet.h"
#include "output/drawn_png.h"
#include "output/package_pictures.h"
#include "platform/desktop.h"
#include "platform/file_system.h"
#include "platform/replacement.h"
#include "preview/canvas.h"
#include "preview/heat_actor.h"
#include "preview/model.h"
#include "preview/page.h"
#include "preview/picture.h"
#include "preview/stand.h"
#include "proof/prove_model.h"
#include "settings/model_settings.h"
#include "terminal/exit_codes.h"
#include "terminal/terminal.h"

namespace cli {
namespace fs = platform::fs;
namespace {

constexpr const char* kPreviewExamples =
    "  fbx2czp preview hero.czp -o hero.png --bones\n"
    "      a picture with the bones drawn over the model\n"
    "  fbx2czp preview hero.fbx -o hero.png --view front --size 1024\n"
    "      converts the model in a temporary folder first and shows the result\n"
    "  fbx2czp preview hero.czp -o turn.png --turntable 24\n"
    "      writes turn_000.png to turn_023.png, once around the model\n"
    "  fbx2czp preview hero.czp -o heat.html --heat-map\n"
    "      where the package does not move as hero.fbx does, on a page to be turned around\n"
    "  fbx2czp preview packages/ -o pictures\n"
    "      a picture of each, and contact-sheet.html with all of them\n"
    "  fbx2czp preview hero.czp -o hero.html\n"
    "      one page for any browser: turn the model around, bend its bones, see their weights\n";

const std::map<std::string, preview::View> kViews = {
    {"front", {0, 0}}, {"side", {90, 0}}, {"top", {0, 90}}, {"three-quarter", {32, 12}}};

/// What "fbx2czp preview" was asked for.
struct PreviewOptions {
  std::vector<std::string> inputs;
  std::string output;          ///< file or folder; empty: beside each input
  std::string format = "png";  ///< of what goes into folders
  std::string view = "three-quarter";
  int size = 512;
  int turntable = 0;  ///< number of pictures; 0: one
  bool bones = false;
  bool loadsPlugins = true;
  bool strict = false;
  bool opens = false;        ///< shows what was written to the user
  std::string settingsFile;  ///< of a model; empty: the nearest
  bool takesSettings = true;
  std::vector<std::string> textureFolders;  ///< of a model
  std::string up;                           ///< axis; empty: concluded from the model
  std::string modelUnit;                    ///< of a model; empty: that of its format
  bool heatMap = false;
  std::string model;  ///< that the heat map compares with; empty: the one beside the package

  bool HasFile() const { return HasExtension(output, ".png") || HasExtension(output, ".html"); }
  bool WantsPage() const { return HasFile() ? HasExtension(output, ".html") : format == "html"; }
  std::optional<preview::Vector> Up() const {
    return up.empty() ? std::nullopt : std::optional(preview::AxisNames().at(up));
  }
  /// Heat maps stand upright.
  std::optional<preview::Vector> UpToDraw() const {
    return heatMap ? std::optional(preview::AxisNames().at("y")) : Up();
  }
};

/// What the model is converted with.
ConvertOptions ConversionOf(const PreviewOptions& preview) {
  ConvertOptions options;
  options.loadsPlugins = preview.loadsPlugins;
  options.settingsFile = preview.settingsFile;
  options.takesSettings = preview.takesSettings;
  options.textureFolders = preview.textureFolders;
  options.modelUnit = preview.modelUnit;
  if (!preview.modelUnit.empty()) options.given.insert("--unit");
  return options;
}

/// @return the package, inside `work`
fs::path ConvertQuietly(const ModelTask& task, const WorkFolder& work, const PreviewOptions& preview,
                        Messages& messages) {
  const ModelResult result = ConvertWithSettings(task, work.Model(), ConversionOf(preview), std::nullopt,
                                                 [](const ts3d::StatusLine&) {});
  for (const std::string& loss : result.Losses()) messages.Warning(task.name, loss);
  if (result.code != 0) throw Failure(result.code, result.reason);
  return WithExtension(work.Model(), "czp");
}

actor::Actor LoadInput(const std::string& input, const PreviewOptions& options, Messages& messages) {
  actor::Actor actor;
  if (!IsModelName(input)) {
    LoadPackage(input, actor, messages);
    return actor;
  }
  if (const auto problem = FindInputProblem(input)) throw Failure(problem->exitStatus, problem->text);
  const fs::path model = fs::absolute(input);
  const WorkFolder work(model);
  LoadPackage(ConvertQuietly({input, model, model.parent_path()}, work, options, messages), actor, messages);
  return actor;
}

fs::path ModelOf(const PreviewOptions& options, const std::string& input) {
  if (IsModelName(input)) return input;
  fs::path model = options.model;
  std::error_code unknown;
  for (const char* extension : kModelExtensions) {
    if (options.model.empty() && (model.empty() || !fs::exists(model, unknown)))
      model = fs::path(input).replace_extension(extension);
  }
  if (options.model.empty() && !fs::exists(model, unknown)) model.replace_extension(".fbx");
  if (const auto problem = FindInputProblem(model)) {
    throw Failure(problem->exitStatus, "the model to compare with, " + model.string() + ": " + problem->text +
                                           "; --model names another");
  }
  return model;
}

/// Puts the worst pose of the package's proof into its place.
/// @return what it is
std::string ShowHeat(const PreviewOptions& options, const std::string& input, actor::Actor& actor) {
  const fs::path model = fs::absolute(ModelOf(options, input));
  prove::Proof proof;
  prove::HeatMap heat;
  std::string error;
  const ConvertOptions convert = OptionsOf(model, ConversionOf(options), std::nullopt).options;
  const prove::ProofOptions proofOptions{.modelUnit = convert.modelUnit};
  if (!prove::ProveModel(ConverterPath(model), actor, proofOptions, proof, error, &heat))
    throw Failure(kUnreadable, error);
  if (heat.meshes.empty()) throw Failure(kUnreadable, "package and model have no mesh in common");
  actor = preview::HeatActor(actor, heat, preview::FindStand(preview::Drawable(actor), options.Up()),
                             proof.diagonal);
  std::string caption = "pose \"" + heat.pose +
                        "\": left the model, right the package, whose vertices are off by up to " +
                        ErrorText(proof.worst.error);
  std::printf("%s: %s\n", Printable(input).c_str(), caption.c_str());
  return caption;
}

/// Files that get to their places together, when all of them are written.
class FileGroup {
 public:
  void Write(const fs::path& path, const std::string& bytes) {
    platform::Replacement& file = files_.emplace_back(path.string());
    platform::FilePtr stream = file.Create("wb");
    if (!stream || !ts3d::WriteAndClose(std::move(stream), bytes)) Fail(path);
  }

  void TakePlaces() {
    for (platform::Replacement& file : files_) {
      if (!file.TakePlace()) Fail(file.Target());
    }
  }

 private:
  [[noreturn]] static void Fail(const fs::path& path) {
    throw Failure(kNotWritten, WhyNotWritten("\"" + path.filename().string() + "\"", errno));
  }

  std::list<platform::Replacement> files_;
};

/// "picture.png" -> "picture_007.png"
fs::path NumberedName(const fs::path& path, size_t index) {
  std::string number = std::to_string(index);
  number.insert(0, 3 - std::min<size_t>(number.size(), 3), '0');
  return path.parent_path() / (path.stem().string() + "_" + number + path.extension().string());
}

void WritePictures(const PreviewOptions& options, const actor::Actor& actor, const fs::path& output,
                   Messages& messages) {
  const bool hasFaces = std::any_of(actor.meshes.begin(), actor.meshes.end(),
                                    [](const actor::Mesh& mesh) { return !mesh.faces.empty(); });
  if (!hasFaces && (!options.bones || actor.skeleton.bones.empty()))
    throw Failure(kNothingToDo, "there is nothing to draw: no mesh has a face");
  preview::PictureOptions picture;
  picture.size = options.size;
  picture.bones = options.bones;
  picture.up = options.UpToDraw();
  picture.views = {kViews.at(options.view)};
  for (int i = 1; i < options.turntable; ++i) {
    preview::View view = picture.views.front();
    view.turn += 360.0 * i / options.turntable;
    picture.views.push_back(view);
  }
  FileGroup files;
  preview::DrawPictures(
      actor, picture, PixelDecoder(messages), [&](size_t index, const preview::Image& image) {
        files.Write(options.turntable > 0 ? NumberedName(output, index) : output, ToPng(image));
      });
  files.TakePlaces();
}

void WritePage(const PreviewOptions& options, const actor::Actor& actor, const std::string& title,
               const fs::path& output, Messages& messages) {
  FileGroup files;
  files.Write(output, preview::WritePage(actor, title, PngEncoder(messages), options.UpToDraw()));
  files.TakePlaces();
}

/// @throws Failure
void PreviewOne(const PreviewOptions& options, const std::string& input, const fs::path& output,
                Messages& messages) {
  actor::Actor actor = LoadInput(input, options, messages);
  std::string title = fs::path(input).filename().string();
  if (options.heatMap) title += ": " + ShowHeat(options, input, actor);
  std::error_code failed;
  if (!options.HasFile() && output.has_parent_path()) fs::create_directories(output.parent_path(), failed);
  try {
    if (options.WantsPage()) {
      WritePage(options, actor, title, output, messages);
    } else {
      WritePictures(options, actor, output, messages);
    }
  } catch (const preview::TooMuchToDraw& failure) {
    throw Failure(kUnreadable, failure.what());
  }
}

void CheckPreview(const PreviewOptions& options, size_t inputs) {
  if (options.WantsPage() && preview::PageTemplate().empty()) {
    throw Failure(kUsageError,
                  "this fbx2czp was built without the page, which takes three.js: run \"scripts/prepare && "
                  "scripts/build fbx2czp\" in its source folder, or write a .png picture");
  }
  if (inputs > 1 && options.HasFile()) {
    throw Failure(kUsageError, options.output + " is one file, but there are " + std::to_string(inputs) +
                                   " inputs; name a folder");
  }
  if (!options.model.empty() && (inputs > 1 || !options.heatMap))
    throw Failure(kUsageError, "--model is for the --heat-map of one package");
  RequireFolders(options.textureFolders);
}

/// The folder that gets a contact sheet: the output's or the only input's; empty when it is neither.
std::string SheetFolder(const PreviewOptions& options) {
  if (options.HasFile() || options.WantsPage() || options.turntable > 0) return {};
  if (!options.output.empty()) return options.output;
  std::error_code unknown;
  const bool isFolder = options.inputs.size() == 1 && fs::is_directory(options.inputs[0], unknown);
  return isFolder ? options.inputs[0] : "";
}

/// @return its path
fs::path WriteSheet(const fs::path& folder, const std::vector<SheetEntry>& entries) {
  fs::path path = folder / "contact-sheet.html";
  FileGroup files;
  files.Write(path, ContactSheet(entries));
  files.TakePlaces();
  std::printf("%s: %zu pictures\n", Printable(path.string()).c_str(), entries.size());
  return path;
}

void Open(const std::vector<fs::path>& files, Messages& messages) {
  std::error_code failed;
  for (const fs::path& file : files) {
    if (!platform::OpenForUser(fs::absolute(file, failed).string()))
      messages.Warning(file.string(), "there is no program here to open it with");
  }
}

int RunPreview(const PreviewOptions& options) {
  const std::vector<PackageInput> inputs = FindPackages(options.inputs, true);
  CheckPreview(options, inputs.size());
  Messages messages;
  ExitStatus all;
  OutputPaths outputs(options.output, options.format);
  const std::string sheetFolder = inputs.size() > 1 ? SheetFolder(options) : "";
  std::vector<SheetEntry> sheet;
  std::vector<fs::path> written;
  for (const PackageInput& input : inputs) {
    if (inputs.size() > 1) messages.About(input.name);
    try {
      const fs::path output = options.HasFile() ? fs::path(options.output) : outputs.Of(input);
      PreviewOne(options, input.name, output, messages);
      if (!options.HasFile()) std::printf("%s\n", Printable(output.string()).c_str());
      sheet.push_back({input.name, output.lexically_relative(sheetFolder)});
      written.push_back(options.turntable > 0 ? NumberedName(output, 0) : output);
    } catch (const Failure& failure) {
      PrintMessage(input.name, Severity::Error, failure.what());
      all.Add(failure.exitStatus);
    }
  }
  messages.About("");
  if (!sheetFolder.empty() && !sheet.empty()) written = {WriteSheet(sheetFolder, sheet)};
  if (options.opens) Open(written, messages);
  if (options.strict && messages.Warnings() > 0) all.Add(kWarnings);
  return all.Get();
}

std::string CheckPreviewOutput(const std::string& path) {
  std::error_code unknown;
  if (HasExtension(path, ".png") || HasExtension(path, ".html")) return {};
  if (!fs::path(path).has_extension() || fs::is_directory(path, unknown)) return {};
  return "the output has to end in .png or .html, or to be a folder";
}

/// A page has no fixed view, so options of pictures would be without effect.
void CheckOptionsOfPage(const CLI::App& preview, const PreviewOptions& options) {
  if (!options.WantsPage()) return;
  for (const char* name : {"--size", "--bones", "--view", "--turntable"}) {
    if (preview.count(name) == 0) continue;
    throw CLI::ValidationError(name, "is for .png pictures; a page (.html) does not take it");
  }
}

}  // namespace

void AddPreviewCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<PreviewOptions>();
  CLI::App& preview = AddCommand(app, "preview", "Show what is in a package, as a picture or a page", run,
                                 [options] { return RunPreview(*options); });
  preview.parse_complete_callback([&preview, options] { CheckOptionsOfPage(preview, *options); });
  preview
      .add_option(
          "INPUT", options->inputs,
          "Packages (.czp), models (.fbx, .glb, .vrm, .dae, ...) to convert for it, and folders of them")
      ->required()
      ->type_name("");
  preview
      .add_option("-o,--output", options->output,
                  "The picture (.png) or page (.html) to write, or a folder (default: beside each input);\n"
                  "a folder of pictures gets a contact sheet as well")
      ->check(CLI::Validator(CheckPreviewOutput, "FILE"));
  preview.add_option("--format", options->format, "png or html, for what goes into folders (png)")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({"png", "html"}).description(""));
  preview.add_option("--size", options->size, "Pixels of each side of the picture (512)")
      ->check(CLI::Range(preview::kSmallestPicture, preview::kLargestPicture));
  preview.add_flag("--bones", options->bones, "Draw the bones over the model");
  TakesOneOf(preview
                 .add_option("--view", options->view,
                             "front, side (the model's left), top or three-quarter (the default)")
                 ->type_name("VIEW"),
             KeysOf(kViews));
  TakesOneOf(
      preview
          .add_option("--up", options->up,
                      "Axis that leads upwards: x, y, z, -x, -y or -z (concluded from bones and bounds)")
          ->type_name("AXIS"),
      KeysOf(preview::AxisNames()));
  preview
      .add_option("--turntable", options->turntable,
                  "That many pictures once around the model; their names get numbers from _000")
      ->check(CLI::Range(1, 360));
  preview.add_flag(
      "--heat-map", options->heatMap,
      "Show the pose of 66 in which package and model are farthest apart: the model in grey, beside\n"
      "it the package, from blue (no difference) to red (a tenth of its size)");
  preview
      .add_option("--model", options->model,
                  "The model that --heat-map compares a package with (default: the one beside it)")
      ->type_name("FILE");
  AddModelUnit(preview, options->modelUnit);
  preview.add_flag("--open", options->opens,
                   "Open what was written, as \"fbx2czp hero.czp\" does with a page");
  AddTextureFolders(preview, options->textureFolders);
  AddSettingsOptions(preview, options->settingsFile, options->takesSettings);
  AddNoPlugins(preview, options->loadsPlugins);
  AddStrict(preview, options->strict);
  SetFooter(preview, kPreviewExamples);
}

}  // namespace cli

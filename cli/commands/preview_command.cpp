// SPDX-License-Identifier: MIT
#include "commands/preview_command.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>

#include "convert/convert_model.h"
#include "core/names.h"
#include "host/input_problem.h"
#include "host/load_package.h"
#include "host/replace_files.h"
#include "output/drawn_png.h"
#include "output/exit_codes.h"
#include "output/package_pictures.h"
#include "output/terminal.h"
#include "preview/canvas.h"
#include "preview/page.h"
#include "preview/picture.h"
#include "preview/stand.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

constexpr const char* kPreviewExamples =
    "  fbx2czp preview hero.czp -o hero.png --bones\n"
    "      a picture with the bones drawn over the model\n"
    "  fbx2czp preview hero.fbx -o hero.png --view front --size 1024\n"
    "      converts the model in a temporary folder first and shows the result\n"
    "  fbx2czp preview hero.czp -o turn.png --turntable 24\n"
    "      writes turn_000.png to turn_023.png, once around the model\n"
    "  fbx2czp preview hero.czp -o hero.html\n"
    "      one page for any browser: turn the model around, bend its bones, see their weights\n";

const std::map<std::string, preview::View> kViews = {
    {"front", {0, 0}}, {"side", {90, 0}}, {"top", {0, 90}}, {"three-quarter", {32, 12}}};

/// What "fbx2czp preview" was asked for.
struct PreviewOptions {
  std::string input;
  std::string output;
  std::string view = "three-quarter";
  int size = 512;
  int turntable = 0;  ///< number of pictures; 0: one
  bool bones = false;
  bool loadsPlugins = true;
  bool strict = false;
  std::vector<std::string> textureFolders;  ///< of a model
  std::string up;                           ///< axis; empty: concluded from the model

  std::optional<preview::Vector> Up() const {
    return up.empty() ? std::nullopt : std::optional(preview::AxisNames().at(up));
  }
};

bool HasExtension(const fs::path& path, const char* extension) {
  return ts3d::EqualsIgnoreCase(path.extension().string(), extension);
}

/// @return the package, inside `work`
fs::path ConvertQuietly(const ModelTask& task, const WorkFolder& work, const PreviewOptions& preview,
                        Messages& messages) {
  ConvertOptions options;
  options.loadsPlugins = preview.loadsPlugins;
  options.textureFolders = preview.textureFolders;
  const ModelResult result = ConvertInWorkFolder(task, work, options, std::nullopt, [](std::string_view) {});
  for (const std::string& loss : result.Losses()) messages.Warning(task.name, loss);
  if (result.code != 0) throw Failure(result.code, result.reason);
  return WithExtension(work.Model(), "czp");
}

actor::Actor LoadInput(const PreviewOptions& options, Messages& messages) {
  const std::string& input = options.input;
  actor::Actor actor;
  if (!HasExtension(input, ".fbx")) {
    LoadPackage(input, actor, messages);
    return actor;
  }
  if (const auto problem = FindInputProblem(input)) throw Failure(problem->exitStatus, problem->text);
  const fs::path model = fs::absolute(input);
  const WorkFolder work(model);
  LoadPackage(ConvertQuietly({input, model, model.parent_path()}, work, options, messages), actor, messages);
  return actor;
}

void WriteFile(const fs::path& path, std::string bytes) {
  try {
    ReplaceFiles(path.parent_path(), {{path.filename().string(), std::move(bytes)}});
  } catch (const std::runtime_error& error) {
    throw Failure(kNotWritten, error.what());
  }
}

/// "picture.png" -> "picture_007.png"
fs::path NumberedName(const fs::path& path, size_t index) {
  std::string number = std::to_string(index);
  number.insert(0, 3 - std::min<size_t>(number.size(), 3), '0');
  return path.parent_path() / (path.stem().string() + "_" + number + path.extension().string());
}

void WritePictures(const PreviewOptions& options, const actor::Actor& actor, Messages& messages) {
  const bool hasFaces = std::any_of(actor.meshes.begin(), actor.meshes.end(),
                                    [](const actor::Mesh& mesh) { return !mesh.faces.empty(); });
  if (!hasFaces && (!options.bones || actor.skeleton.bones.empty()))
    throw Failure(kNothingToDo, "there is nothing to draw: no mesh has a face");
  preview::PictureOptions picture;
  picture.size = options.size;
  picture.bones = options.bones;
  picture.up = options.Up();
  picture.views = {kViews.at(options.view)};
  for (int i = 1; i < options.turntable; ++i) {
    preview::View view = picture.views.front();
    view.turn += 360.0 * i / options.turntable;
    picture.views.push_back(view);
  }
  preview::DrawPictures(
      actor, picture, PixelDecoder(messages), [&](size_t index, const preview::Image& image) {
        WriteFile(options.turntable > 0 ? NumberedName(options.output, index) : fs::path(options.output),
                  ToPng(image));
      });
}

void WritePage(const PreviewOptions& options, const actor::Actor& actor, Messages& messages) {
  const std::string title = fs::path(options.input).filename().string();
  WriteFile(options.output, preview::WritePage(actor, title, PngEncoder(messages), options.Up()));
}

int RunPreview(const PreviewOptions& options) {
  try {
    const bool wantsPage = HasExtension(options.output, ".html");
    if (wantsPage && preview::PageTemplate().empty()) {
      throw Failure(kUsageError,
                    "this fbx2czp was built without the page, which takes three.js: run \"scripts/prepare && "
                    "scripts/build fbx2czp\" in its source folder, or write a .png picture");
    }
    RequireFolders(options.textureFolders);
    Messages messages;
    const actor::Actor actor = LoadInput(options, messages);
    if (wantsPage) {
      WritePage(options, actor, messages);
    } else {
      WritePictures(options, actor, messages);
    }
    return options.strict && messages.Warnings() > 0 ? kWarnings : kSuccess;
  } catch (const Failure& failure) {
    PrintMessage(options.input, Severity::Error, failure.what());
    return failure.exitStatus;
  } catch (const preview::TooMuchToDraw& failure) {
    PrintMessage(options.input, Severity::Error, failure.what());
    return kUnreadable;
  }
}

std::string CheckPreviewOutput(const std::string& path) {
  if (HasExtension(path, ".png") || HasExtension(path, ".html")) return {};
  return "the output has to end in .png or .html";
}

/// A page has no fixed view, so options of pictures would be without effect.
void CheckOptionsOfPage(const CLI::App& preview, const PreviewOptions& options) {
  if (!HasExtension(options.output, ".html")) return;
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
  preview.add_option("INPUT", options->input, "A package (.czp), or a model (.fbx) to convert for it")
      ->required();
  preview.add_option("-o,--output", options->output, "The picture (.png) or page (.html) to write")
      ->required()
      ->check(CLI::Validator(CheckPreviewOutput, "FILE"));
  preview.add_option("--size", options->size, "Pixels of each side of the picture (512)")
      ->check(CLI::Range(preview::kSmallestPicture, preview::kLargestPicture));
  preview.add_flag("--bones", options->bones, "Draw the bones over the model");
  preview
      .add_option("--view", options->view,
                  "front, side (the model's left), top or three-quarter (the default)")
      ->check(CLI::IsMember(kViews));
  preview
      .add_option("--up", options->up,
                  "Axis that leads upwards: x, y, z, -x, -y or -z (concluded from bones and bounds)")
      ->check(CLI::IsMember(preview::AxisNames()));
  preview
      .add_option("--turntable", options->turntable,
                  "That many pictures once around the model; their names get numbers from _000")
      ->check(CLI::Range(1, 360));
  AddTextureFolders(preview, options->textureFolders);
  AddNoPlugins(preview, options->loadsPlugins);
  AddStrict(preview, options->strict);
  SetFooter(preview, kPreviewExamples);
}

}  // namespace cli

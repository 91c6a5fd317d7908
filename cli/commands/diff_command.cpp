// SPDX-License-Identifier: MIT
#include "commands/diff_command.h"

#include <cstdio>
#include <memory>

#include "host/host_paths.h"
#include "host/replace_files.h"
#include "output/diff_output.h"
#include "output/drawn_png.h"
#include "output/package_pictures.h"
#include "platform/file_system.h"
#include "preview/picture.h"
#include "preview/side_by_side.h"
#include "terminal/exit_codes.h"
#include "terminal/terminal.h"

namespace cli {
namespace fs = platform::fs;
namespace {

struct DiffOptions {
  std::string before, after;
  std::string picture;
  bool json = false;
};

/// Draws both as "preview" does, the old package to the left.
void WritePicture(const PackageDiff& diff, const fs::path& path) {
  std::vector<preview::Image> pictures;
  Messages messages;
  for (const Inspection* package : {&diff.before, &diff.after}) {
    preview::PictureOptions options;
    options.views = {preview::View{32, 12}};
    preview::DrawPictures(package->actor, options, PixelDecoder(messages),
                          [&](size_t, const preview::Image& image) { pictures.push_back(image); });
  }
  ReplaceFiles(path.parent_path(), {{path.filename().string(), ToPng(preview::SideBySide(pictures))}});
}

int RunDiff(const DiffOptions& options) {
  PackageDiff diff{Inspect(options.before), Inspect(options.after), {}};
  if (diff.IsReadable()) {
    diff.differences = actor::ComparePackages({diff.before.contents, diff.before.actor},
                                              {diff.after.contents, diff.after.actor});
  }
  if (options.json) std::fputs(DiffAsJson(diff).c_str(), stdout);
  if (!diff.IsReadable()) {
    ExitStatus status;
    for (const Inspection* package : {&diff.before, &diff.after}) {
      if (!package->error.empty()) PrintMessage(package->path, Severity::Error, package->error);
      status.Add(package->exitStatus);
    }
    return status.Get();
  }
  if (!options.json) std::fputs(DiffAsText(diff).c_str(), stdout);
  try {
    if (!options.picture.empty()) WritePicture(diff, options.picture);
  } catch (const std::runtime_error& error) {
    PrintMessage(options.picture, Severity::Error, error.what());
    return kNotWritten;
  }
  return diff.IsSame() ? kSuccess : kWarnings;
}

std::string CheckPicture(const std::string& path) {
  const bool isPng = HasExtension(path, ".png");
  return isPng ? "" : "the picture has to end in .png";
}

}  // namespace

void AddDiffCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<DiffOptions>();
  CLI::App& diff = AddCommand(app, "diff", "Show what is different in another version of a package", run,
                              [options] { return RunDiff(*options); });
  diff.add_option("OLD", options->before, "A .czp file, or a folder with the files of one")
      ->required()
      ->type_name("");
  diff.add_option("NEW", options->after, "The other version of it")->required()->type_name("");
  diff.add_flag("--json", options->json, "Print JSON for programs instead of text");
  diff.add_option("--picture", options->picture,
                  "Draw both side by side, as a .png file, the old one to the left")
      ->type_name("FILE")
      ->check(CLI::Validator(CheckPicture, ""));
  SetFooter(diff,
            "  fbx2czp diff old/hero.czp hero.czp\n"
            "      bones, weights, counts, materials, pictures and document: what is new, gone or changed\n"
            "  fbx2czp diff old/hero.czp hero.czp --picture both.png\n"
            "  fbx2czp diff old/hero.czp hero.czp --json\n");
}

}  // namespace cli

// SPDX-License-Identifier: MIT
#include "commands/settings_command.h"

#include <cstdio>
#include <memory>
#include <stdexcept>

#include "convert/find_models.h"
#include "output/settings_output.h"
#include "settings/model_settings.h"
#include "terminal/exit_codes.h"
#include "terminal/terminal.h"

namespace cli {
namespace {

struct ShowSettingsOptions {
  std::vector<std::string> models;
  ConvertOptions convert;
  bool json = false;
};

int RunSettings(const ShowSettingsOptions& options) {
  std::vector<ModelSettings> models;
  int status = 0;
  for (const ModelTask& task : FindModels(options.models)) {
    ModelSettings& model = models.emplace_back(ModelSettings{task.name, std::nullopt, {}});
    try {
      model.file = FindSettings(task.model, options.convert);
    } catch (const std::runtime_error& error) {
      model.error = error.what();
      PrintMessage(task.name, Severity::Error, model.error);
      status = kUsageError;
      continue;
    }
    if (!options.json) std::fputs(SettingsAsText(model).c_str(), stdout);
  }
  if (options.json) std::fputs(SettingsAsJson(models).c_str(), stdout);
  return status;
}

}  // namespace

void AddSettingsCommand(CLI::App& app, RunCommand& run) {
  const auto options = std::make_shared<ShowSettingsOptions>();
  CLI::App& settings =
      AddCommand(app, "settings", "Show which settings hold for models, and where they come from", run,
                 [options] { return RunSettings(*options); });
  settings.add_option("MODEL", options->models, "Models, which need not exist, and folders")
      ->required()
      ->type_name("");
  settings
      .add_option("--settings", options->convert.settingsFile,
                  "Settings file in place of the nearest fbx2czp.json")
      ->type_name("FILE");
  settings.add_flag("--json", options->json, "Print JSON for programs instead of text");
  SetFooter(
      settings,
      "  fbx2czp settings hero.fbx\n"
      "      what fbx2czp.json beside the model, or in a folder above, says of it\n"
      "\n"
      "Settings file (JSON), every part optional, others are refused; \"models\" has more for some:\n"
      "  {\"exclude\": [\"Helper\"], \"renames\": {\"L_femur\": \"left femur\"}, \"rename_preset\": "
      "\"mixamo\",\n"
      "   \"double_sided\": [\"Hair\"], \"inward\": [], \"outward\": [], \"repair\": true,\n"
      "   \"actor_type\": \"female\", \"rotation\": {\"x\": 0, \"y\": 180}, \"textures\": [\"../art\"],\n"
      "   \"max_texture\": 2048, \"pack\": \"small\", \"final\": {\"scale\": 95},\n"
      "   \"models\": {\"hero*.fbx\": {\"exclude\": [\"Sword\"]}}}\n");
}

}  // namespace cli

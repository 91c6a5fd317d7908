// SPDX-License-Identifier: MIT
#include "convert/convert_order.h"

#include <nlohmann/json.hpp>

#include "convert/convert_with_settings.h"
#include "convert/job_host.h"
#include "core/json_writer.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace {

constexpr char kStatusMessage = 'S', kResultMessage = 'R';

}  // namespace

std::string ToJson(const ConvertOrder& order) {
  ts3d::JsonWriter json(ts3d::JsonWriter::Layout::Compact);
  json.OpenObject();
  json.Member("name", order.task.name);
  json.Member("model", order.task.model.string());
  json.Member("folder", order.task.folder.string());
  json.Member("stem", order.task.stem);
  json.Member("shown", order.shown.string());
  json.Member("tells_status", order.tellsStatus);
  json.Member("options", order.options);
  json.CloseObject();
  return json.Text();
}

ConvertOrder OrderFromJson(std::string_view text) {
  const nlohmann::json json = nlohmann::json::parse(text);
  const auto path = [&](const char* key) { return platform::fs::path(json.at(key).get<std::string>()); };
  return {
      {json.at("name").get<std::string>(), path("model"), path("folder"), json.at("stem").get<std::string>()},
      path("shown"),
      json.at("tells_status").get<bool>(),
      json.at("options").get<std::vector<std::string>>()};
}

void CarryOut(const ConvertOrder& order, const ConvertOptions& options,
              const std::optional<FinishSettings>& finish, const ChildProcess::Send& send) {
  // Each message wakes the other process: thousands of them cost more than a small model.
  const auto onStatus = [&](const ts3d::StatusLine& line) {
    if (order.tellsStatus) send(kStatusMessage + PackedLine(line));
  };
  ModelResult result;
  try {
    result = ConvertWithSettings(order.task, order.shown, options, finish, onStatus);
  } catch (const std::exception& error) {
    result.code = kNotWritten;
    result.reason = error.what();
  }
  send(kResultMessage + ToJson(result));
}

void TakeMessage(std::string_view message, const TakeStatus& onStatus,
                 const std::function<void(ModelResult result)>& onResult) {
  if (message.starts_with(kStatusMessage)) {
    onStatus(UnpackedLine(message.substr(1)));
  } else if (message.starts_with(kResultMessage)) {
    onResult(ResultFromJson(message.substr(1)));
  }
}

}  // namespace cli

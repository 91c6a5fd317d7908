// SPDX-License-Identifier: MIT
#include "convert/convert_order.h"

#include <nlohmann/json.hpp>
#include <type_traits>

#include "convert/convert_with_settings.h"
#include "convert/job_host.h"
#include "core/json_writer.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace {

constexpr char kStatusMessage = 'S', kResultMessage = 'R';

/// Calls `visit` with the key and the field for everything in an order.
template <typename Order, typename Visit>
void ForEachField(Order& order, const Visit& visit) {
  visit("name", order.task.name);
  visit("model", order.task.model);
  visit("folder", order.task.folder);
  visit("stem", order.task.stem);
  visit("shown", order.shown);
  visit("tells_status", order.tellsStatus);
  visit("options", order.options);
}

template <typename Field>
constexpr bool kIsPath = std::is_same_v<Field, platform::fs::path>;

}  // namespace

std::string ToJson(const ConvertOrder& order) {
  ts3d::JsonWriter json(ts3d::JsonWriter::Layout::Compact);
  json.OpenObject();
  ForEachField(order, [&]<typename Field>(const char* key, const Field& field) {
    if constexpr (kIsPath<Field>) {
      json.Member(key, field.string());
    } else {
      json.Member(key, field);
    }
  });
  json.CloseObject();
  return json.Text();
}

ConvertOrder OrderFromJson(std::string_view text) {
  const nlohmann::json json = nlohmann::json::parse(text);
  ConvertOrder order;
  ForEachField(order, [&]<typename Field>(const char* key, Field& field) {
    field = json.at(key).get<std::conditional_t<kIsPath<Field>, std::string, Field>>();
  });
  return order;
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

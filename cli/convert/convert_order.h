// SPDX-License-Identifier: MIT
//
// The conversion of one model as a process of its own is told to do it, and what it tells of it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "convert/convert_model.h"
#include "convert/job_host.h"
#include "host/child_process.h"

namespace cli {

struct ConvertOrder {
  ModelTask task;
  platform::fs::path shown;          ///< the model in its work folder
  bool tellsStatus = false;          ///< whether anybody looks at the status lines
  std::vector<std::string> options;  ///< ConvertOptions::words
};

std::string ToJson(const ConvertOrder& order);
/// The opposite. @throws nlohmann::json::exception on anything else
ConvertOrder OrderFromJson(std::string_view json);

/// Converts the model and sends messages with status lines and the result.
void CarryOut(const ConvertOrder& order, const ConvertOptions& options,
              const std::optional<FinishSettings>& finish, const ChildProcess::Send& send);

/// Hands what CarryOut has sent in `message` to one of these.
void TakeMessage(std::string_view message, const TakeStatus& onStatus,
                 const std::function<void(ModelResult result)>& onResult);

}  // namespace cli

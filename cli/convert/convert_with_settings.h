// SPDX-License-Identifier: MIT
#pragma once

#include "convert/convert_model.h"

namespace cli {

/// ConvertInWorkFolder with the model's settings; a file that holds no settings is a failure of the model.
ModelResult ConvertWithSettings(const ModelTask& task, const platform::fs::path& shown,
                                const ConvertOptions& options, const std::optional<FinishSettings>& finish,
                                const TakeStatus& onStatus);

}  // namespace cli

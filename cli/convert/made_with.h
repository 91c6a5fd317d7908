// SPDX-License-Identifier: MIT
//
// What `--update` remembers of the options that a package was made with: ".hero.czp.options" beside it. Packages
// themselves have no place for it.
#pragma once

#include "convert/model_task.h"
#include "options/convert_options.h"

namespace cli {

/// Whether the package of `task` was made with the options that the command line has now. Where nothing is
/// remembered it was, as far as is known, made without any.
/// @param options  of the command line alone
bool WasMadeWith(const ModelTask& task, const ConvertOptions& options);

/// Remembers the options for the package of `task`, which has just been made; forgets them when there are none.
void RememberOptions(const ModelTask& task, const ConvertOptions& options);

}  // namespace cli

// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "compare_corpus/scene_compare.h"

namespace corpus {

/// Why `difference`, found in the file called `file`, is no mistake of ours; null when nothing is known.
const char* ReasonFor(std::string_view file, const Difference& difference);

}  // namespace corpus

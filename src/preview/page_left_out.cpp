// SPDX-License-Identifier: MIT
//
// Takes the place of the page in a build without it.
#include "preview/page.h"

namespace preview {

std::vector<std::string_view> PageTemplate() { return {}; }

}  // namespace preview

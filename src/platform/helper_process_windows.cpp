// SPDX-License-Identifier: MIT
#include "platform/helper_process.h"

namespace platform {

HelperAnswer RunHelper(const std::string& program, const std::vector<std::string>&, std::string_view, size_t,
                       const std::function<void()>&) {
  return {{}, "\"" + program + "\" cannot be started: there is none for Windows"};
}

std::string FindOwnPart(const std::string&) { return {}; }

}  // namespace platform

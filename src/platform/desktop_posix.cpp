// SPDX-License-Identifier: MIT
#include "platform/desktop.h"

#include <spawn.h>
#include <unistd.h>

namespace platform {

bool OwnsConsole() { return false; }

void WaitForKey() {}

bool OpenForUser(const std::string& path) {
#ifdef __APPLE__
  std::string program = "open";
#else
  std::string program = "xdg-open";
#endif
  std::string file = path;
  char* const words[] = {program.data(), file.data(), nullptr};
  pid_t process = 0;
  // Not waited for: it may be the browser itself.
  return posix_spawnp(&process, words[0], nullptr, nullptr, words, environ) == 0;
}

}  // namespace platform

// SPDX-License-Identifier: MIT
// Runs a program and prints "CPU-milliseconds wall-milliseconds peak-KiB". A script cannot tell the peak of a
// child that needs less memory than the script itself.
//
//   measure PROGRAM ARGUMENTS...
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    execvp(argv[1], argv + 1);
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  if (child < 0 || wait4(child, &status, 0, &usage) != child) return 2;
  const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
  const auto milliseconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_usec) / 1e3;
  };
  std::printf("%.3f %.3f %ld\n", milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime), wall.count(),
              usage.ru_maxrss);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

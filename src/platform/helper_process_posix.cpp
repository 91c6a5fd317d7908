// SPDX-License-Identifier: MIT
#include "platform/helper_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>

#include "platform/process.h"

extern char** environ;

namespace platform {
namespace {

constexpr int kWaitMilliseconds = 200;

/// A running program, which goes with the object.
class Helper {
 public:
  Helper() = default;
  ~Helper() {
    if (process_ > 0) {
      kill(process_, SIGKILL);
      Reap();
    }
    if (ours_ >= 0) close(ours_);
  }
  Helper(const Helper&) = delete;
  Helper& operator=(const Helper&) = delete;

  /// Both directions are one socket: writing to a program that has ended is an error there, and no signal.
  /// @return 0, or the error
  int Start(const std::string& program, const std::vector<std::string>& arguments) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return errno;
    ours_ = ends[0];
    std::vector<char*> words{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
#ifdef __GLIBC__
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
#endif
    const int error = posix_spawn(&process_, program.c_str(), &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (error != 0) process_ = -1;
    return error;
  }

  void Send(std::string_view input, const std::function<void()>& wait) {
    while (!input.empty()) {
      Wait(POLLOUT, wait);
      const ssize_t sent = send(ours_, input.data(), input.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
      if (sent < 0 && errno != EINTR && errno != EAGAIN) break;  // it has ended, and says why
      input.remove_prefix(sent > 0 ? static_cast<size_t>(sent) : 0);
    }
    shutdown(ours_, SHUT_WR);
  }

  /// @return whether all was taken
  bool Receive(std::string& output, size_t most, const std::function<void()>& wait) {
    constexpr size_t kChunk = size_t{1} << 18;
    for (;;) {
      Wait(POLLIN, wait);
      const size_t known = output.size();
      if (known > most) return false;
      // Lists that grow hold themselves twice while they do.
      if (output.capacity() < known + kChunk) output.reserve(std::max(known + kChunk, known + known / 2));
      output.resize(known + kChunk);
      const ssize_t size = recv(ours_, output.data() + known, kChunk, MSG_DONTWAIT);
      output.resize(known + (size > 0 ? static_cast<size_t>(size) : 0));
      if (size == 0 || (size < 0 && errno != EINTR && errno != EAGAIN)) return true;
    }
  }

  /// The exit status as waitpid gives it; 0 where the host has it taken by the system.
  int Reap() {
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    process_ = -1;
    return status;
  }

 private:
  void Wait(short event, const std::function<void()>& wait) const {
    for (pollfd query{ours_, event, 0}; poll(&query, 1, kWaitMilliseconds) <= 0;) wait();
  }

  pid_t process_ = -1;
  int ours_ = -1;
};

std::string DescribeEnd(int status) {
  if (WIFSIGNALED(status)) {
    const int signal = WTERMSIG(status);
    if (signal == SIGXCPU || signal == SIGKILL) return "it took longer than a file of its size may";
    return std::string("it made the library that reads it crash (") + strsignal(signal) + ")";
  }
  return WEXITSTATUS(status) == 0 ? ""
                                  : "what reads it ended with status " + std::to_string(WEXITSTATUS(status));
}

}  // namespace

HelperAnswer RunHelper(const std::string& program, const std::vector<std::string>& arguments,
                       std::string_view input, size_t mostOutput, const std::function<void()>& wait) {
  HelperAnswer answer;
  Helper helper;
  if (const int error = helper.Start(program, arguments); error != 0) {
    answer.problem = "\"" + program + "\" cannot be started: " + std::strerror(error);
    return answer;
  }
  helper.Send(input, wait);
  if (!helper.Receive(answer.output, mostOutput, wait)) {
    answer.problem = "it becomes more than a file of its size may";
    return answer;
  }
  answer.problem = DescribeEnd(helper.Reap());
  return answer;
}

std::string FindOwnPart(const std::string& name) {
  std::string path;
  for (const char* folder : {"fbx_to_ts3d/", "fbx2czp/", "../lib/fbx2czp/"}) {
    path = OwnFolder() + folder + name;
    if (access(path.c_str(), R_OK) == 0) break;
  }
  return path;
}

}  // namespace platform

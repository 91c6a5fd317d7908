// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

#include <array>
#include <cerrno>
#include <cstdio>
#include <mutex>
#include <set>
#include <system_error>

#include "host/child_process.h"
#include "host/message_frames.h"

namespace cli {
namespace {

constexpr int kWaitMilliseconds = 200;

/// The processes that run now. The watch for signals ends them, which knows nothing else of the batch.
struct RunningProcesses {
  std::mutex mutex;
  std::set<pid_t> processes;
};

RunningProcesses& TheRunning() {
  static RunningProcesses running;
  return running;
}

[[noreturn]] void Fail(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

/// Reading and writing end.
std::array<int, 2> MakePipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) Fail("a process cannot be started");
  return ends;
}

struct FileCloser {
  int file;
  ~FileCloser() { close(file); }
};

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

[[noreturn]] void RunChild(const ChildProcess::Order& order, int messages, int output, bool keepsInput) {
  // Ctrl-C reaches the whole group; what then becomes of this process is the parent's business.
  signal(SIGINT, SIG_IGN);
  signal(SIGHUP, SIG_IGN);
  signal(SIGTERM, SIG_DFL);
#ifdef __linux__
  prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
  dup2(output, STDOUT_FILENO);
  // What belongs to the other conversions is none of this one's business.
  for (int file = STDERR_FILENO + 1; file < messages; ++file) close(file);
  close_range(static_cast<unsigned>(messages) + 1, ~0U, 0);
  if (!keepsInput) {
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (nothing >= 0) dup2(nothing, STDIN_FILENO);
  }
  try {
    order.work([messages](std::string_view message) { return WriteAll(messages, FrameOf(message)); });
  } catch (...) {
    // The missing result tells; going on would make a second parent of this process.
  }
  std::fflush(stdout);
  // Without destructors and exit handlers, which belong to the parent.
  _exit(0);
}

/// Appends what is there to `buffer`. @return false at the end
bool ReadAvailable(int file, std::string& buffer) {
  std::array<char, 1 << 14> chunk;
  const ssize_t size = read(file, chunk.data(), chunk.size());
  if (size > 0) buffer.append(chunk.data(), static_cast<size_t>(size));
  return size > 0 || (size < 0 && (errno == EINTR || errno == EAGAIN));
}

bool IsReadable(int file) {
  pollfd query{file, POLLIN, 0};
  return poll(&query, 1, 0) > 0;
}

}  // namespace

struct ChildProcess::State {
  pid_t process = -1;
  int messages = -1, output = -1;
  std::string unfinished;  ///< beginning of a message whose rest has not arrived
  int signal = 0;

  ~State() {
    if (process > 0) {
      const std::lock_guard lock(TheRunning().mutex);
      kill(process, SIGKILL);
      waitpid(process, nullptr, 0);
      TheRunning().processes.erase(process);
    }
    for (const int file : {messages, output}) {
      if (file >= 0) close(file);
    }
  }

  void Reap() {
    const std::lock_guard lock(TheRunning().mutex);
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    TheRunning().processes.erase(process);
    process = -1;
    signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  }

  /// Reads one end if something is there; closes it at its end.
  static void Drain(int& file, std::string& buffer) {
    if (file < 0 || !IsReadable(file) || ReadAvailable(file, buffer)) return;
    close(file);
    file = -1;
  }
};

ChildProcess::ChildProcess(const Order& order, bool keepsInput) : state_(std::make_unique<State>()) {
  const auto [messages, sendMessages] = MakePipe();
  state_->messages = messages;
  const FileCloser closeMessages{sendMessages};
  const auto [output, sendOutput] = MakePipe();
  state_->output = output;
  const FileCloser closeOutput{sendOutput};
  std::fflush(stdout);
  const std::lock_guard lock(TheRunning().mutex);
  state_->process = fork();
  if (state_->process == 0) RunChild(order, sendMessages, sendOutput, keepsInput);
  if (state_->process < 0) Fail("a process cannot be started");
  TheRunning().processes.insert(state_->process);
}

void ChildProcess::EndAll() {
  TheRunning().mutex.lock();
  for (const pid_t process : TheRunning().processes) {
    kill(process, SIGKILL);
    siginfo_t end{};
    waitid(P_PID, static_cast<id_t>(process), &end, WEXITED | WNOWAIT);
  }
}

ChildProcess::~ChildProcess() = default;
ChildProcess::ChildProcess(ChildProcess&&) noexcept = default;

bool ChildProcess::Receive(const Receiver& receiver) {
  std::string text;
  State::Drain(state_->output, text);
  if (!text.empty()) receiver.output(text);
  State::Drain(state_->messages, state_->unfinished);
  TakeMessages(state_->unfinished, receiver.message);
  if (state_->messages >= 0 || state_->output >= 0) return true;
  if (state_->process > 0) state_->Reap();
  return false;
}

ChildProcess::Ending ChildProcess::HowItEnded() const {
  const std::string text = "signal " + std::to_string(state_->signal);
  switch (state_->signal) {
    case SIGKILL:
      return {text + ": it was killed, perhaps for lack of memory"};
    case SIGTERM:
      return {text + ": somebody ended it"};
    case SIGXFSZ:
      return {text + ": a file would have become larger than allowed"};
    default:
      return {text, true};
  }
}

void ChildProcess::WaitForAny(const std::vector<ChildProcess*>& children) {
  std::vector<pollfd> queries;
  for (const ChildProcess* child : children) {
    for (const int file : {child->state_->messages, child->state_->output}) {
      if (file >= 0) queries.push_back({file, POLLIN, 0});
    }
  }
  poll(queries.data(), queries.size(), kWaitMilliseconds);
}

bool ChildProcess::Obey(const std::vector<std::string>&,
                        const std::function<void(const std::string& order, const Send& send)>&) {
  return false;
}

}  // namespace cli

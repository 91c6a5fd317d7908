// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <set>
#include <thread>

#include "host/child_process.h"
#include "host/message_frames.h"
#include "host/start_again_windows.h"

namespace cli {
namespace {

/// The first word of a process that is started for an order; behind it stand the pipes that it reads the order from and
/// sends messages to.
constexpr const char* kObey = "--obey";

/// A quarter of the time that an interrupted process has for a graceful end.
constexpr auto kWait = std::chrono::milliseconds(50);

/// Processes that this one has started, and what arrives from them. The handler of interruptions ends them, which
/// knows nothing else of the batch.
struct Workers {
  std::mutex mutex;
  std::condition_variable arrival;
  std::set<void*> processes;
  Handle job = MakeJob();
};

Workers& TheWorkers() {
  static Workers& workers = *new Workers;  // never destroyed: threads may be at work when the process ends
  return workers;
}

bool WriteAll(void* file, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto size = static_cast<DWORD>(std::min<size_t>(bytes.size(), 1 << 20));
    if (!WriteFile(file, bytes.data(), size, &written, nullptr) || written == 0) return false;
    bytes.remove_prefix(written);
  }
  return true;
}

/// Hands everything up to the end of the pipe to `take`.
template <typename Take>
void ReadAll(void* pipe, const Take& take) {
  std::array<char, 1 << 14> chunk;
  DWORD size = 0;
  while (ReadFile(pipe, chunk.data(), chunk.size(), &size, nullptr))
    take(std::string_view(chunk.data(), size));
}

BOOL WINAPI IgnoreEvent(DWORD) { return TRUE; }

}  // namespace

struct ChildProcess::State {
  /// Collects what comes out of a pipe. A thread waits for it, as pipes here cannot be waited for together.
  struct Inbox {
    explicit Inbox(Handle source) : pipe(std::move(source)) {}
    ~Inbox() {
      if (reader.joinable()) reader.join();
    }

    void Open() {
      reader = std::thread([this] {
        ReadAll(pipe.get(), [&](std::string_view some) {
          const std::lock_guard lock(TheWorkers().mutex);
          bytes += some;
          TheWorkers().arrival.notify_all();
        });
        const std::lock_guard lock(TheWorkers().mutex);
        isAtEnd = true;
        TheWorkers().arrival.notify_all();
      });
    }

    Handle pipe;
    // With the lock of TheWorkers().
    std::string bytes;
    bool isAtEnd = false;
    std::thread reader;
  };

  State(Handle messagePipe, Handle outputPipe)
      : messages(std::move(messagePipe)), output(std::move(outputPipe)) {}
  ~State() {
    if (!process) return;
    TerminateProcess(process.get(), 1);
    Reap();
  }

  void Reap() {
    WaitForSingleObject(process.get(), INFINITE);
    GetExitCodeProcess(process.get(), &exitCode);
    const std::lock_guard lock(TheWorkers().mutex);
    TheWorkers().processes.erase(process.get());
    process.reset();
  }

  // With the lock of TheWorkers().
  bool IsOver() const { return messages.isAtEnd && output.isAtEnd; }
  bool HasSomething() const { return IsOver() || !messages.bytes.empty() || !output.bytes.empty(); }

  Inbox messages, output;  ///< end when the process does
  Handle process;
  std::string unfinished;  ///< beginning of a message whose rest has not arrived
  DWORD exitCode = 0;
};

ChildProcess::ChildProcess(const Order& order, bool keepsInput) {
  const std::string text = order.text();
  Pipe messages = MakePipe(), output = MakePipe(), orders = MakePipe(static_cast<DWORD>(text.size()));
  state_ = std::make_unique<State>(std::move(messages.reading), std::move(output.reading));
  const Handle input = CopyOf(STD_INPUT_HANDLE, keepsInput), errors = CopyOf(STD_ERROR_HANDLE);
  std::fflush(stdout);
  {
    const std::lock_guard lock(TheWorkers().mutex);
    state_->process = StartAgain(
        kObey,
        {input.get(), output.writing.get(), errors.get(), orders.reading.get(), messages.writing.get()},
        TheWorkers().job.get());
    TheWorkers().processes.insert(state_->process.get());
  }
  // The end of a pipe is told when the process alone has the other side.
  messages.writing.reset();
  output.writing.reset();
  orders.reading.reset();
  state_->messages.Open();
  state_->output.Open();
  WriteAll(orders.writing.get(), text);
}

ChildProcess::~ChildProcess() = default;
ChildProcess::ChildProcess(ChildProcess&&) noexcept = default;

bool ChildProcess::Receive(const Receiver& receiver) {
  std::string text;
  bool isOver = false;
  {
    const std::lock_guard lock(TheWorkers().mutex);
    text.swap(state_->output.bytes);
    state_->unfinished += state_->messages.bytes;
    state_->messages.bytes.clear();
    isOver = state_->IsOver();
  }
  if (!text.empty()) receiver.output(text);
  TakeMessages(state_->unfinished, receiver.message);
  if (isOver && state_->process) state_->Reap();
  return !isOver;
}

ChildProcess::Ending ChildProcess::HowItEnded() const {
  constexpr DWORD kAborted = 3, kFirstException = 0x80000000, kByCtrlC = 0xc000013a;
  const DWORD code = state_->exitCode;
  char number[16];
  std::snprintf(number, sizeof number, code < kFirstException ? "%lu" : "0x%08lx", code);
  const std::string text = std::string("exit code ") + number;
  const bool isFault = code == 0 || code == kAborted || (code >= kFirstException && code != kByCtrlC);
  return {isFault ? text : text + ": somebody ended it", isFault};
}

void ChildProcess::WaitForAny(const std::vector<ChildProcess*>& children) {
  std::unique_lock lock(TheWorkers().mutex);
  TheWorkers().arrival.wait_for(lock, kWait, [&] {
    return std::any_of(children.begin(), children.end(),
                       [](const ChildProcess* child) { return child->state_->HasSomething(); });
  });
}

void ChildProcess::EndAll() {
  TheWorkers().mutex.lock();
  for (void* process : TheWorkers().processes) {
    TerminateProcess(process, 1);
    WaitForSingleObject(process, INFINITE);
  }
}

bool ChildProcess::Obey(const std::vector<std::string>& words,
                        const std::function<void(const std::string& order, const Send& send)>& work) {
  if (words.size() != 3 || words.front() != kObey) return false;
  const auto pipe = [&](size_t word) {
    return Handle(
        reinterpret_cast<void*>(static_cast<uintptr_t>(std::strtoull(words[word].c_str(), nullptr, 10))));
  };
  // Ctrl-C reaches all processes of the console; what then becomes of this one is the parent's business.
  SetConsoleCtrlHandler(IgnoreEvent, TRUE);
  // A crash is the parent's to tell, and not for a window that waits for somebody.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  _setmode(_fileno(stdout), _O_BINARY);
  std::string order;
  ReadAll(pipe(1).get(), [&](std::string_view bytes) { order += bytes; });
  const Handle messages = pipe(2);
  try {
    work(order, [&](std::string_view message) { return WriteAll(messages.get(), FrameOf(message)); });
  } catch (...) {
    // The missing result tells.
  }
  return true;
}

}  // namespace cli

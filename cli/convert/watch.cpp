// SPDX-License-Identifier: MIT
#include "convert/watch.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <exception>
#include <map>
#include <optional>
#include <set>
#include <thread>
#include <utility>

#include "convert/find_models.h"
#include "convert/model_inputs.h"
#include "host/interrupt.h"
#include "terminal/exit_codes.h"
#include "terminal/terminal.h"

namespace cli {
namespace fs = platform::fs;
namespace {

/// Size and time of each file; nothing for one that is not there. Looking at them now and then works everywhere,
/// on network drives as well.
using Stamp = std::map<fs::path, std::optional<std::pair<uintmax_t, fs::file_time_type>>>;

Stamp StampOf(const std::set<fs::path>& files) {
  Stamp stamp;
  for (const fs::path& file : files) {
    std::error_code failed;
    auto& entry = stamp[file];
    const fs::file_time_type time = fs::last_write_time(file, failed);
    if (failed) continue;
    const uintmax_t size = fs::file_size(file, failed);
    if (!failed) entry.emplace(size, time);
  }
  return stamp;
}

/// A model that was converted, or is to be.
struct Watched {
  std::set<fs::path> inputs;
  Stamp converted;            ///< when its last conversion began
  std::optional<Stamp> last;  ///< when it was looked at last

  /// Whether it has changed, and then not for a while.
  bool IsDue() {
    Stamp now = StampOf(inputs);
    const bool rests = last == now;
    last = std::move(now);
    return rests && *last != converted;
  }
};

class Watcher {
 public:
  Watcher(const ConvertOptions& options, const ConvertModels& convert)
      : options_(options), convert_(convert) {}

  /// @return the exit status when it was interrupted, else 0
  int ConvertDue() {
    std::vector<ModelTask> due;
    const bool isFirst = watched_.empty();
    for (ModelTask& task : Find()) {
      const auto [entry, isNew] = watched_.try_emplace(task.model);
      if (isNew) entry->second.inputs = FixedInputs(task, options_);
      // A new file may still be on its way here.
      if (isFirst || entry->second.IsDue()) due.push_back(std::move(task));
    }
    return due.empty() ? 0 : Convert(due);
  }

  size_t Count() const { return watched_.size(); }

 private:
  std::vector<ModelTask> Find() const try {
    return FindModels(options_, Unread::LeaveOut);
  } catch (const std::exception&) {
    return {};
  }

  int Convert(const std::vector<ModelTask>& due) {
    for (const ModelTask& task : due) {
      Watched& model = watched_[task.model];
      model.inputs.merge(FixedInputs(task, options_));
      model.last = model.converted = StampOf(model.inputs);
    }
    try {
      const auto begin = fs::file_time_type::clock::now();
      const ConvertedModels done = convert_(due);
      std::fflush(stdout);
      if (done.isInterrupted) return done.exitStatus;
      for (size_t i = 0; i < done.results.size(); ++i) TakeInputs(due[i], done.results[i], begin);
    } catch (const std::exception& error) {
      PrintMessage("", Severity::Error, error.what());
    }
    return 0;
  }

  /// Files that came to light only now count from now on. Those that changed meanwhile may have been read before.
  void TakeInputs(const ModelTask& task, const ModelResult& result, fs::file_time_type begin) {
    Watched& model = watched_[task.model];
    std::set<fs::path> found;
    for (const std::string& input : result.inputs) {
      if (model.inputs.insert(input).second) found.insert(input);
    }
    Stamp stamp = StampOf(found);
    model.last->insert(stamp.begin(), stamp.end());
    for (auto& [file, state] : stamp) {
      if (state && state->second >= begin) state.reset();
    }
    model.converted.merge(stamp);
  }

  const ConvertOptions& options_;
  const ConvertModels& convert_;
  std::map<fs::path, Watched> watched_;
};

void WaitAWhile() {
  constexpr int kSlices = 10;
  for (int i = 0; i < kSlices && InterruptSignal() == 0; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

}  // namespace

int WatchModels(const ConvertOptions& options, const ConvertModels& convert) {
  const GracefulEnd graceful;
  Watcher watcher(options, convert);
  int status = watcher.ConvertDue();
  if (status != 0) return status;
  PrintMessage("", Severity::Note,
               "watching " + std::to_string(watcher.Count()) + (watcher.Count() == 1 ? " model" : " models") +
                   "; Ctrl-C ends it");
  while (status == 0 && InterruptSignal() == 0) {
    WaitAWhile();
    if (InterruptSignal() == 0) status = watcher.ConvertDue();
  }
  return status != 0 ? status : kInterrupted - SIGINT + InterruptSignal();
}

}  // namespace cli

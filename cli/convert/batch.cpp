// SPDX-License-Identifier: MIT
#include "convert/batch.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <list>
#include <map>
#include <thread>

#include "convert/convert_order.h"
#include "convert/convert_with_settings.h"
#include "convert/foreign_package.h"
#include "convert/made_with.h"
#include "core/names.h"
#include "host/child_process.h"
#include "host/host_paths.h"
#include "host/input_problem.h"
#include "host/interrupt.h"
#include "platform/files.h"
#include "results/message_groups.h"
#include "results/result_messages.h"
#include "terminal/exit_codes.h"
#include "terminal/terminal.h"

namespace cli {
namespace fs = platform::fs;
namespace {

using Clock = std::chrono::steady_clock;

/// A model whose conversion runs.
class Running {
 public:
  Running(size_t index, const ModelTask& task, const ConvertOptions& options,
          const std::optional<FinishSettings>& finish, const StatusPrinter& printer, bool keepsInput)
      : index_(index),
        work_(task.model, task.model.parent_path(), task.NameInWork()),
        child_(OrderFor({task, work_.Model(), printer.WantsLines(), options.words}, options, finish),
               keepsInput) {}

  size_t Index() const { return index_; }
  ChildProcess& Child() { return child_; }
  const WorkFolder& Work() const { return work_; }
  double Seconds() const { return std::chrono::duration<double>(Clock::now() - begin_).count(); }

  ModelResult result;
  bool hasResult = false;
  std::string output;

 private:
  static ChildProcess::Order OrderFor(const ConvertOrder& order, const ConvertOptions& options,
                                      const std::optional<FinishSettings>& finish) {
    return {
        [=, &options, &finish](const ChildProcess::Send& send) { CarryOut(order, options, finish, send); },
        [=] { return ToJson(order); }};
  }

  size_t index_;
  Clock::time_point begin_ = Clock::now();
  WorkFolder work_;
  ChildProcess child_;
};

class Batch {
 public:
  Batch(const std::vector<ModelTask>& tasks, const ConvertOptions& options,
        const std::optional<FinishSettings>& finish)
      : tasks_(tasks), options_(options), finish_(finish), printer_(options.verbosity, tasks.size()) {
    results_.resize(tasks.size());
  }

  std::vector<ModelResult> Run(int& signal) {
    const GracefulEnd graceful;
    // A process of its own takes a millisecond, which a single model need not pay: nothing else can suffer.
    if (tasks_.size() == 1 && options_.report.empty()) return RunHere(signal);
    const size_t atATime = options_.jobs ? options_.jobs : std::max(1u, std::thread::hardware_concurrency());
    while ((next_ < tasks_.size() || !running_.empty()) && InterruptSignal() == 0) {
      while (next_ < tasks_.size() && running_.size() < atATime && Start(next_)) ++next_;
      TakeMessages();
    }
    signal = InterruptSignal();
    printer_.ClearBar();
    running_.clear();
    groups_.Print(options_.verbosity != Verbosity::Quiet);
    return Finished();
  }

 private:
  struct InterruptedRun {};

  /// Converts the only model in this process.
  std::vector<ModelResult> RunHere(int& signal) {
    const ModelTask& task = tasks_.front();
    const auto onStatus = [&](const ts3d::StatusLine& line) {
      if (InterruptSignal() != 0) throw InterruptedRun();
      printer_.Print(task.name, line);
    };
    try {
      if (const auto problem = Refusal(task)) {
        Fail(0, problem->exitStatus, problem->text);
      } else if (!RefuseForeignPackage(0)) {
        const WorkFolder work(task.model, task.model.parent_path(), task.NameInWork());
        Complete(0, work, ConvertWithSettings(task, work.Model(), options_, finish_, onStatus));
      }
    } catch (const InterruptedRun&) {
      signal = InterruptSignal();
    } catch (const std::exception& error) {
      Fail(0, kNotWritten, error.what());
    }
    printer_.ClearBar();
    return Finished();
  }

  std::vector<ModelResult> Finished() {
    std::vector<ModelResult> finished;
    for (std::optional<ModelResult>& result : results_) {
      if (result) finished.push_back(std::move(*result));
    }
    return finished;
  }

  /// @return false when the system has no room for another process until one has ended
  bool Start(size_t index) {
    const ModelTask& task = tasks_[index];
    if (const auto problem = Refusal(task)) {
      Fail(index, problem->exitStatus, problem->text);
      return true;
    }
    std::error_code unknown;
    fs::path package = fs::weakly_canonical(task.folder, unknown) / task.Package().filename();
    if (IgnoresCase(task.model)) package = ts3d::LowerCase(package.string());
    if (packages_.emplace(package, index).first->second != index) {
      Fail(index, kUsageError,
           "another model of this command line makes the same package, " + task.Package().string());
      return true;
    }
    if (RefuseForeignPackage(index)) return true;
    try {
      running_.emplace_back(index, task, options_, finish_, printer_, tasks_.size() == 1);
    } catch (const std::exception& error) {
      if (!running_.empty()) return false;
      Fail(index, kNotWritten, error.what());
    }
    return true;
  }

  /// @return whether the model has failed, as its package would replace what somebody else has made
  bool RefuseForeignPackage(size_t index) {
    const fs::path package = tasks_[index].Package();
    const std::string why = options_.force ? "" : WhyForeign(package);
    if (why.empty()) return false;
    Fail(index, kNotWritten,
         package.string() + " is not by fbx2czp and stays: " + why +
             ". Move it away, write elsewhere with --output, or replace it with --force");
    return true;
  }

  static std::optional<InputProblem> Refusal(const ModelTask& task) {
    if (HasBackslashInName(task.model)) {
      return InputProblem{kUnreadable,
                          "a path with a backslash cannot be converted; rename the file or its folder"};
    }
    return FindInputProblem(task.model);
  }

  void TakeMessages() {
    std::vector<ChildProcess*> children;
    for (Running& model : running_) children.push_back(&model.Child());
    if (!children.empty()) ChildProcess::WaitForAny(children);
    for (auto model = running_.begin(); model != running_.end();) {
      const bool goesOn = model->Child().Receive({[&](std::string_view message) { Take(*model, message); },
                                                  [&](std::string_view text) { TakeOutput(*model, text); }});
      if (!goesOn) Finish(*model);
      model = goesOn ? std::next(model) : running_.erase(model);
    }
  }

  void Take(Running& model, std::string_view message) {
    TakeMessage(
        message, [&](const ts3d::StatusLine& line) { printer_.Print(tasks_[model.Index()].name, line); },
        [&](ModelResult result) {
          model.result = std::move(result);
          model.hasResult = true;
        });
  }

  /// The question for a password, and whatever plug-ins print.
  void TakeOutput(Running& model, std::string_view text) {
    model.output += text;
    if (tasks_.size() > 1) return;
    printer_.ClearBar();
    std::fwrite(text.data(), 1, text.size(), options_.Summary());
    std::fflush(options_.Summary());
  }

  void Finish(Running& model) {
    // Of those that an interruption ends nothing is left, not even a word.
    if (!model.hasResult && InterruptSignal() != 0) return;
    if (!model.hasResult) {
      const ChildProcess::Ending ending = model.Child().HowItEnded();
      return Fail(model.Index(), kCrashed,
                  "the conversion ended with " + ending.text +
                      (ending.isFault ? "; please send us the model, so that we can mend that" : ""));
    }
    model.result.readerOutput += model.output;
    model.result.seconds = model.Seconds();
    Complete(model.Index(), model.Work(), std::move(model.result));
  }

  void Complete(size_t index, const WorkFolder& work, ModelResult result) {
    if (result.code == 0 && !result.isCurrent) {
      try {
        result.beside = Publish(tasks_[index], work, result.shrunkPictures);
        if (options_.update) RememberOptions(tasks_[index], options_);
      } catch (const fs::filesystem_error& error) {
        result.code = kNotWritten;
        const std::string folder = tasks_[index].folder.string();
        result.reason = platform::IsDiskFull(error.code().value())
                            ? "the disk is full: there is no room for the package in " + folder
                            : "the package cannot be put into " + folder + ": " + error.code().message();
        result.package.clear();
        result.members.clear();
        result.packageBytes = 0;
      }
    }
    Tell(index, std::move(result));
  }

  void Fail(size_t index, int code, const std::string& reason) {
    ModelResult result;
    result.code = code;
    result.reason = reason;
    Tell(index, std::move(result));
  }

  void Tell(size_t index, ModelResult result) {
    result.model = tasks_[index].name;
    const std::vector<ts3d::Finding> messages = MessagesOf(result);
    printer_.ModelDone(result.code != 0, Sum({result}).warnings);
    printer_.ClearBar();
    if (TellsAll()) {
      for (const std::string& loss : result.Losses()) PrintMessage(result.model, Severity::Warning, loss);
    }
    for (const ts3d::Finding& message : messages) TellOrKeep(result.model, message);
    if (result.code == 0 && TellsSuccess()) TellSuccess(result);
    if (options_.timings && !result.steps.empty()) {
      std::fprintf(stderr, "fbx2czp: %s: %s\n", Printable(result.model).c_str(),
                   DescribeSteps(result.steps).c_str());
    }
    results_[index] = std::move(result);
  }

  bool TellsSuccess() const {
    return options_.verbosity == Verbosity::Verbose ||
           (tasks_.size() == 1 && options_.verbosity == Verbosity::Normal);
  }

  /// Of many models only failures are told at once.
  void TellOrKeep(const std::string& model, const ts3d::Finding& message) {
    // Another model may have what this one has not.
    if (message.subject == ts3d::Subject::Option) return;
    const bool isNote = message.severity == ts3d::Severity::Note;
    if (isNote && options_.verbosity == Verbosity::Quiet) return;
    if (TellsAll() && IsLoss(message)) return;  // these are told
    if (TellsAll() || message.severity == ts3d::Severity::Error) return TellFinding(model, message);
    groups_.Add(model, message);
  }

  bool TellsAll() const { return tasks_.size() == 1 || options_.verbosity == Verbosity::Verbose; }

  void TellSuccess(const ModelResult& result) const {
    if (result.isCurrent) {
      std::fprintf(options_.Summary(), "%s: up to date\n", Printable(result.package).c_str());
      return;
    }
    std::string text = Printable(result.package) + ": " + std::to_string(result.vertices) +
                       " points of the model, " + std::to_string(result.triangles) + " triangles, " +
                       std::to_string(result.packageBytes) + " bytes\n";
    for (size_t i = 0; i < result.beside.size(); ++i)
      text += (i == 0 ? "  beside it: " : ", ") + Printable(result.beside[i]);
    std::fputs((text + (result.beside.empty() ? "" : "\n")).c_str(), options_.Summary());
    std::fflush(options_.Summary());
  }

  const std::vector<ModelTask>& tasks_;
  const ConvertOptions& options_;
  const std::optional<FinishSettings>& finish_;
  StatusPrinter printer_;
  std::vector<std::optional<ModelResult>> results_;
  std::list<Running> running_;
  MessageGroups groups_;
  std::map<fs::path, size_t> packages_;  ///< whose package each is
  size_t next_ = 0;
};

}  // namespace

std::vector<ModelResult> ConvertAll(const std::vector<ModelTask>& tasks, const ConvertOptions& options,
                                    const std::optional<FinishSettings>& finish, int& signal) {
  return Batch(tasks, options, finish).Run(signal);
}

}  // namespace cli

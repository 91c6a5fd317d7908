// SPDX-License-Identifier: MIT
#include "terminal/status_printer.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/process.h"
#include "terminal/terminal.h"
#include "terminal/text_width.h"

namespace cli {
namespace {

constexpr int kBarWidth = 20;

}  // namespace

StatusPrinter::StatusPrinter(Verbosity verbosity, size_t total)
    : verbosity_(verbosity), showsBar_(verbosity == Verbosity::Normal && IsTerminal(stderr)), total_(total) {}

void StatusPrinter::Print(const std::string& model, const ts3d::StatusLine& line) {
  if (line.notice == ts3d::Notice::WritingMesh) mesh_ = line.value;
  if (total_ > 1) ShowModels(model);
  if (verbosity_ != Verbosity::Verbose) {
    const bool counts = line.notice == ts3d::Notice::MeshProgress && total_ == 1;
    if (counts) ShowBar(std::atoi(std::string(line.value).c_str()), "", mesh_);
    return;
  }
  ClearBar();
  const std::string text = Printable(line.text);
  std::fprintf(stderr, "fbx2czp: %s: %s\n", Printable(model).c_str(),
               (IsFault(line.notice) ? Painted(stderr, Colour::Yellow, text) : text).c_str());
}

void StatusPrinter::ModelDone(bool hasFailed, int warnings) {
  ++done_;
  failed_ += hasFailed ? 1 : 0;
  warnings_ += warnings;
}

void StatusPrinter::ShowModels(const std::string& model) {
  const std::string counter = std::to_string(done_) + " of " + std::to_string(total_) + ", " +
                              std::to_string(failed_) + " failed, " + std::to_string(warnings_) +
                              " warnings: ";
  ShowBar(static_cast<int>(100 * done_ / total_), counter, model);
}

void StatusPrinter::ShowBar(int percent, const std::string& counter, const std::string& text) {
  if (!showsBar_) return;
  percent = std::clamp(percent, 0, 100);
  const std::string done(static_cast<size_t>(percent * kBarWidth / 100), '#');
  char bar[kBarWidth + 16];
  std::snprintf(bar, sizeof bar, "[%-*s] %3d%% ", kBarWidth, done.c_str(), percent);
  // A line that turns could not be taken away. What counts comes before the bar, and both before the name.
  constexpr size_t kUsualColumns = 80, kShortestName = 12;
  const size_t known = platform::TerminalColumns(stderr), columns = known > 0 ? known : kUsualColumns;
  const bool hasBar = std::strlen(bar) + counter.size() + kShortestName < columns;
  const std::string line = (hasBar ? bar : "") + counter;
  const size_t room = columns > line.size() + 1 ? columns - line.size() - 1 : 0;
  std::fprintf(stderr, "\r%s%s\033[K", line.c_str(), Shortened(Printable(text), room).c_str());
  barShown_ = true;
}

void StatusPrinter::ClearBar() {
  if (barShown_) std::fputs("\r\033[K", stderr);
  barShown_ = false;
}

}  // namespace cli

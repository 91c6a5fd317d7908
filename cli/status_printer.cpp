// SPDX-License-Identifier: MIT
#include "status_printer.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace cli {
namespace {

constexpr std::string_view kMeshLine = "Writing CMF Mesh: ";
constexpr std::string_view kProgressLine = "Writing Mesh: ";
constexpr int kBarWidth = 30;

bool IsProblem(std::string_view line) { return line.starts_with(">>>") || line.starts_with("***"); }

bool IsProgress(std::string_view line) { return line.starts_with(kProgressLine) && line.ends_with("% done"); }

}  // namespace

StatusPrinter::StatusPrinter(Verbosity verbosity)
    : verbosity_(verbosity), isTerminal_(isatty(STDERR_FILENO) == 1) {}

void StatusPrinter::Print(std::string_view line) {
  if (line.starts_with(kMeshLine)) mesh_ = line.substr(kMeshLine.size());
  if (IsProgress(line) && verbosity_ != Verbosity::Verbose) {
    if (isTerminal_ && verbosity_ == Verbosity::Normal) ShowBar(line);
    return;
  }
  ClearBar();
  if (verbosity_ == Verbosity::Quiet && !IsProblem(line)) return;
  // A few lines bring their own line end.
  while (line.ends_with('\n')) line.remove_suffix(1);
  std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
}

void StatusPrinter::ShowBar(std::string_view line) {
  const int percent = std::clamp(std::atoi(std::string(line.substr(kProgressLine.size())).c_str()), 0, 100);
  const std::string done(static_cast<size_t>(percent * kBarWidth / 100), '#');
  std::fprintf(stderr, "\r[%-*s] %3d%% %.40s\033[K", kBarWidth, done.c_str(), percent, mesh_.c_str());
  barShown_ = true;
}

void StatusPrinter::ClearBar() {
  if (barShown_) std::fputs("\r\033[K", stderr);
  barShown_ = false;
}

}  // namespace cli

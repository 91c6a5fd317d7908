// SPDX-License-Identifier: MIT
#include "output/status_printer.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "output/terminal.h"

namespace cli {
namespace {

constexpr std::string_view kMeshLine = "Writing CMF Mesh: ";
constexpr std::string_view kProgressLine = "Writing Mesh: ";
constexpr int kBarWidth = 30;

bool IsProblem(std::string_view line) { return line.starts_with(">>>") || line.starts_with("***"); }

}  // namespace

bool IsProgressLine(std::string_view line) {
  return line.starts_with(kProgressLine) && line.ends_with("% done");
}

StatusPrinter::StatusPrinter(Verbosity verbosity, size_t total)
    : verbosity_(verbosity), showsBar_(verbosity == Verbosity::Normal && IsTerminal(stderr)), total_(total) {}

bool StatusPrinter::Wants(std::string_view line) const {
  if (IsProgressLine(line)) return showsBar_ || verbosity_ == Verbosity::Verbose;
  return showsBar_ || TellsAll() || IsProblem(line);
}

bool StatusPrinter::TellsAll() const {
  // Of many models only what is wrong is told.
  return verbosity_ == Verbosity::Verbose || (verbosity_ == Verbosity::Normal && total_ == 1);
}

void StatusPrinter::Print(const std::string& model, std::string_view line) {
  if (line.starts_with(kMeshLine)) mesh_ = line.substr(kMeshLine.size());
  if (total_ > 1) ShowModels(model);
  if (IsProgressLine(line) && verbosity_ != Verbosity::Verbose) {
    if (total_ == 1) ShowBar(std::atoi(std::string(line.substr(kProgressLine.size())).c_str()), mesh_);
    return;
  }
  if (!TellsAll() && !IsProblem(line)) return;
  ClearBar();
  const std::string text = Printable(line);
  std::fprintf(stderr, "fbx2czp: %s: %s\n", Printable(model).c_str(),
               (IsProblem(line) ? Painted(stderr, Colour::Yellow, text) : text).c_str());
}

void StatusPrinter::ModelDone() { ++done_; }

void StatusPrinter::ShowModels(const std::string& model) {
  ShowBar(static_cast<int>(100 * done_ / total_),
          std::to_string(done_) + "/" + std::to_string(total_) + " " + model);
}

void StatusPrinter::ShowBar(int percent, const std::string& text) {
  if (!showsBar_) return;
  percent = std::clamp(percent, 0, 100);
  const std::string done(static_cast<size_t>(percent * kBarWidth / 100), '#');
  std::fprintf(stderr, "\r[%-*s] %3d%% %.40s\033[K", kBarWidth, done.c_str(), percent,
               Printable(text).c_str());
  barShown_ = true;
}

void StatusPrinter::ClearBar() {
  if (barShown_) std::fputs("\r\033[K", stderr);
  barShown_ = false;
}

}  // namespace cli

// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "core/status_channel.h"

namespace cli {

enum class Verbosity { Quiet, Normal, Verbose };

/// Shows a progress bar on terminals. Prints status lines to standard error, each behind the name of its
/// model, when everything is to be told.
class StatusPrinter {
 public:
  /// @param total  models to convert; with more than one the bar counts them
  StatusPrinter(Verbosity verbosity, size_t total);

  /// Whether Print would show anything of a line.
  bool WantsLines() const { return showsBar_ || verbosity_ == Verbosity::Verbose; }
  void Print(const std::string& model, const ts3d::StatusLine& line);
  /// Counts a model that is done.
  void ModelDone(bool hasFailed, int warnings);
  /// Takes the bar away, so that something else can be printed.
  void ClearBar();

 private:
  void ShowBar(int percent, const std::string& counter, const std::string& text);
  void ShowModels(const std::string& model);

  Verbosity verbosity_;
  bool showsBar_;
  size_t total_, done_ = 0, failed_ = 0;
  int warnings_ = 0;
  std::string mesh_;
  bool barShown_ = false;
};

}  // namespace cli

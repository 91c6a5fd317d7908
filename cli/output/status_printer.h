// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace cli {

enum class Verbosity { Quiet, Normal, Verbose };

/// Whether a status line only tells how far a mesh is.
bool IsProgressLine(std::string_view line);

/// Prints status lines to standard error, each behind the name of its model, and a progress bar on terminals.
class StatusPrinter {
 public:
  /// @param total  models to convert; with more than one the bar counts them
  StatusPrinter(Verbosity verbosity, size_t total);

  /// Whether Print would show anything of `line`.
  bool Wants(std::string_view line) const;
  void Print(const std::string& model, std::string_view line);
  /// Counts a model that is done.
  void ModelDone();
  /// Takes the bar away, so that something else can be printed.
  void ClearBar();

 private:
  bool TellsAll() const;
  void ShowBar(int percent, const std::string& text);
  void ShowModels(const std::string& model);

  Verbosity verbosity_;
  bool showsBar_;
  size_t total_, done_ = 0;
  std::string mesh_;
  bool barShown_ = false;
};

}  // namespace cli

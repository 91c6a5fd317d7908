// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace cli {

enum class Verbosity { Quiet, Normal, Verbose };

/// Shows the status lines of a conversion on standard error. On a terminal the lines that tell how far the
/// writing of a mesh has come become a bar.
class StatusPrinter {
 public:
  explicit StatusPrinter(Verbosity verbosity);
  ~StatusPrinter() { ClearBar(); }

  /// Shows one status line.
  void Print(std::string_view line);
  void ClearBar();

 private:
  void ShowBar(std::string_view line);

  Verbosity verbosity_;
  bool isTerminal_;
  bool barShown_ = false;
  std::string mesh_;
};

}  // namespace cli

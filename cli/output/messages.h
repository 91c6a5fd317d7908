// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "output/terminal.h"

namespace cli {

/// Tells the person at the keyboard, on standard error, and counts the warnings.
class Messages {
 public:
  explicit Messages(bool tellsNotes = true) : tellsNotes_(tellsNotes) {}

  /// @param subject  the file or part that it is about; may be empty
  void Note(const std::string& subject, std::string_view text) const {
    if (tellsNotes_) PrintMessage(subject, Severity::Note, text);
  }
  void Warning(const std::string& subject, std::string_view text) {
    ++warnings_;
    PrintMessage(subject, Severity::Warning, text);
  }

  size_t Warnings() const { return warnings_; }

 private:
  bool tellsNotes_;
  size_t warnings_ = 0;
};

}  // namespace cli

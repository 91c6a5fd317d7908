// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "terminal/terminal.h"

namespace cli {

/// Tells the person at the keyboard, on standard error, and counts the warnings.
class Messages {
 public:
  explicit Messages(bool tellsNotes = true) : tellsNotes_(tellsNotes) {}

  /// Puts `input` before the subjects of what is told from now on.
  void About(const std::string& input) { input_ = input; }

  /// @param subject  the file or part that it is about; may be empty
  void Note(const std::string& subject, std::string_view text) const {
    if (tellsNotes_) PrintMessage(Subject(subject), Severity::Note, text);
  }
  void Warning(const std::string& subject, std::string_view text) {
    ++warnings_;
    PrintMessage(Subject(subject), Severity::Warning, text);
  }

  size_t Warnings() const { return warnings_; }

 private:
  std::string Subject(const std::string& subject) const {
    return input_.empty() || subject.empty() ? input_ + subject : input_ + ": " + subject;
  }

  std::string input_;
  bool tellsNotes_;
  size_t warnings_ = 0;
};

}  // namespace cli

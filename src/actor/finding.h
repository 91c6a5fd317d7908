// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace actor {

enum class Severity {
  Note,     ///< worth knowing; nothing is wrong
  Problem,  ///< the actor is not as it should be
};

/// Something that a person should know about a package.
struct Finding {
  Severity severity = Severity::Problem;
  std::string kind;     ///< for programs: lower case, words joined by "-"; never changes its meaning
  std::string subject;  ///< the member or bone concerned; empty for the whole package
  std::string text;     ///< what is the matter, without the subject
  std::string advice;   ///< what to do; may be empty
};

using Findings = std::vector<Finding>;

/// The usual advice.
inline constexpr const char* kConvertAgain = "convert the model again";

inline void AddProblem(Findings& findings, std::string kind, std::string subject, std::string text,
                       std::string advice) {
  findings.push_back(
      {Severity::Problem, std::move(kind), std::move(subject), std::move(text), std::move(advice)});
}

inline void AddNote(Findings& findings, std::string kind, std::string subject, std::string text,
                    std::string advice = {}) {
  findings.push_back(
      {Severity::Note, std::move(kind), std::move(subject), std::move(text), std::move(advice)});
}

}  // namespace actor

// SPDX-License-Identifier: MIT
#include "proof/prove_conversion.h"

#include <algorithm>

#include "convert/result_messages.h"
#include "proof/prove_model.h"

namespace cli {
namespace {

ts3d::Subject SubjectOf(const prove::Message& message) {
  if (message.kind == "bone") return ts3d::Subject::Bone;
  return message.kind == "mesh" ? ts3d::Subject::Mesh : ts3d::Subject::File;
}

}  // namespace

void ProveConversion(const std::filesystem::path& model, const std::filesystem::path& package,
                     ModelResult& result) {
  const auto note = [&](const char* code, std::string text) {
    result.notes.push_back({code, ts3d::Severity::Note, ts3d::Subject::File, {}, std::move(text), {}});
  };
  // Models are converted side by side, each in a process of its own.
  const ProvenModel proven = ProveModelFile(result.model, model, package, {.threads = 1});
  if (!proven.error.empty()) {
    result.faults.push_back({"not-compared",
                             ts3d::Severity::Warning,
                             ts3d::Subject::File,
                             {},
                             "The package cannot be compared with the model: " + proven.error + ".",
                             {}});
    return;
  }
  const std::string worst = ErrorText(proven.proof.worst.error);
  if (proven.proof.verdict == prove::Verdict::Proven) {
    note("proven", "proven: the package moves as the model does, to " + worst);
  } else {
    note("not-proven", "not proven: the package moves otherwise than the model, by up to " + worst);
  }
  const std::vector<ts3d::Finding> told = MessagesOf(result);
  for (const prove::Message& message : proven.proof.messages) {
    const bool isKnown =
        std::any_of(told.begin(), told.end(), [&](const auto& fault) { return fault.code == message.code; });
    if (message.severity == prove::Severity::Note || isKnown) continue;
    const bool isOurs = message.severity == prove::Severity::Error;
    result.faults.push_back({message.code, isOurs ? ts3d::Severity::Fatal : ts3d::Severity::Warning,
                             SubjectOf(message), message.names,
                             message.message + " Moves vertices by up to " + ErrorText(message.error) + ".",
                             message.fix});
  }
}

}  // namespace cli

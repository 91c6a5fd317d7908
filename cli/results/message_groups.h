// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "core/finding.h"

namespace cli {

/// Messages about many models. Those of one kind are told together.
class MessageGroups {
 public:
  void Add(const std::string& model, const ts3d::Finding& message);

  /// Prints a line for each kind, the worst first.
  void Print(bool withNotes) const;

 private:
  struct Group {
    ts3d::Finding first;
    std::vector<std::string> models;
  };
  /// By severity, the worst first, and code.
  std::map<std::pair<int, std::string>, Group> groups_;
};

/// Prints one message about one model; `subject` stands for it.
void TellFinding(const std::string& subject, const ts3d::Finding& message);

}  // namespace cli

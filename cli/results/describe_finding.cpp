// SPDX-License-Identifier: MIT
#include "results/describe_finding.h"

#include <algorithm>

namespace cli {

std::string DescribeFinding(const ts3d::Finding& finding) {
  constexpr size_t kMostNames = 6;
  // A text that names the only name needs no more.
  const bool isNamed =
      finding.names.size() == 1 && finding.text.find("\"" + finding.names[0] + "\"") != std::string::npos;
  if (finding.names.empty() || isNamed) return finding.text;
  std::string text(NameOf(finding.subject, finding.names.size()));
  const size_t shown = std::min(finding.names.size(), kMostNames);
  for (size_t i = 0; i < shown; ++i) text += (i == 0 ? " \"" : ", \"") + finding.names[i] + "\"";
  if (shown < finding.names.size()) text += " and " + std::to_string(finding.names.size() - shown) + " more";
  return text + ": " + finding.text;
}

}  // namespace cli

// SPDX-License-Identifier: MIT
#include "converter/run_findings.h"

#include "converter/describe_result.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_report.h"

namespace ts3d {

Finding FailureFinding(int32_t code, const std::string& reason) {
  return {NameOfResult(code), Severity::Error, Subject::File, {}, reason, {}};
}

std::vector<Finding> DamageFindings(const std::vector<std::string>& arrays) {
  RigReport report;
  for (const std::string& array : arrays) report.Add(findings::kDamagedArray, {}, {array});
  return report.findings;
}

std::vector<Finding> TextureFindings(const std::vector<textures::TextureProblem>& problems) {
  std::vector<Finding> found;
  for (const textures::TextureProblem& problem : problems) {
    const FindingKind& kind = problem.isMissing ? findings::kTextureMissing : findings::kTextureUnreadable;
    found.push_back({std::string(kind.code),
                     kind.severity,
                     kind.subject,
                     {problem.source},
                     "The picture \"" + problem.source + "\" " + problem.text + ".",
                     std::string(kind.fix)});
  }
  return found;
}

}  // namespace ts3d

// SPDX-License-Identifier: MIT
#include "convert/result_messages.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "convert/unmatched_options.h"
#include "converter/run_findings.h"
#include "output/exit_codes.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_report.h"

namespace cli {
namespace {

using ts3d::Finding;
using ts3d::Subject;

constexpr const char* kUnreadableDocument = "xml-name";
constexpr ts3d::FindingKind kEmptyMember{
    "empty-member", ts3d::Severity::Note, Subject::Member, "An empty file in the package.",
    "Delete material slots that no face uses; use letters, digits, spaces and underscores in names."};
constexpr ts3d::FindingKind kLostMember{"lost-member", ts3d::Severity::Warning, Subject::File, "{}.", ""};

/// What stands in `line` between `before` and `after`; nothing when these do not.
std::string Between(std::string_view line, std::string_view before, std::string_view after) {
  if (!line.starts_with(before)) return {};
  line.remove_prefix(before.size());
  const size_t end = line.find(after);
  return end == line.npos ? std::string() : std::string(line.substr(0, end));
}

/// Tells what the converter's own lines say, and no other finding does.
class LineReader {
 public:
  void Read(std::string_view line) {
    namespace findings = ts3d::findings;
    static constexpr std::pair<std::string_view, const ts3d::FindingKind*> kCoded[] = {
        {"***100:", &findings::kMirroredBone},
        {"***101:", &findings::kUnevenScale},
        {"***102:", &findings::kLocalMatrix}};
    for (const auto& [mark, kind] : kCoded) {
      if (line.starts_with(mark)) report_.Add(*kind, std::string(line.substr(mark.size())));
    }
    if (line.starts_with(">>> Error getting UVs")) {
      ++uvs_;
    } else if (const std::string polygons = Between(line, ">>> Left out ", " Polygon"); !polygons.empty()) {
      report_.Add(findings::kDroppedPolygons, std::string(line.substr(line.rfind(": ") + 2)), {polygons});
    } else if (const std::string member = Between(line, ">>> Error in opening ", " for reading");
               !member.empty()) {
      report_.Add(kEmptyMember, member);
    } else if (line.starts_with(">>> Error ")) {
      report_.Add(kLostMember, {}, {std::string(line.substr(4))});
    }
  }

  std::vector<Finding> Findings() {
    if (uvs_ > 0) report_.Add(ts3d::findings::kMissingCoordinates, {}, {std::to_string(uvs_)});
    return report_.findings;
  }

 private:
  ts3d::RigReport report_;
  size_t uvs_ = 0;
};

}  // namespace

Finding UnmatchedFinding(const UnmatchedOption& unmatched, ts3d::Severity severity) {
  return {"unknown-name",
          severity,
          Subject::Option,
          {unmatched.name},
          DescribeUnmatched(unmatched, unmatched.nearest),
          {}};
}

bool IsLoss(const Finding& message) {
  return message.subject == Subject::Texture || message.code == ts3d::findings::kDamagedArray.code ||
         message.code == kUnreadableDocument;
}

std::vector<Finding> MessagesOf(const ModelResult& result) {
  std::vector<Finding> messages;
  const auto append = [&messages](std::vector<Finding> more) {
    std::move(more.begin(), more.end(), std::back_inserter(messages));
  };
  if (result.code != 0) {
    messages.push_back(ts3d::FailureFinding(result.code, result.reason));
    messages.back().code = NameOfExitCode(result.code);
  }
  LineReader lines;
  for (const std::string& line : result.status) lines.Read(line);
  append(lines.Findings());
  append(ts3d::DamageFindings(result.damage));
  append(ts3d::TextureFindings(result.textureProblems));
  if (!result.malformedNames.empty()) {
    messages.push_back({kUnreadableDocument, ts3d::Severity::Warning, Subject::Node, result.malformedNames,
                        "The document cannot be read, as names contain &, < or \".",
                        "Rename them in the model."});
  }
  append(result.faults);
  for (const UnmatchedOption& entry : result.unmatchedOptions)
    messages.push_back(UnmatchedFinding(entry, ts3d::Severity::Note));
  append(result.notes);
  std::stable_sort(messages.begin(), messages.end(),
                   [](const Finding& a, const Finding& b) { return a.severity > b.severity; });
  return messages;
}

}  // namespace cli

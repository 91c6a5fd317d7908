// SPDX-License-Identifier: MIT
#include "convert/notice_findings.h"

#include <string>
#include <utility>

#include "rig_check/finding_kinds.h"

namespace cli {
namespace {

using ts3d::Subject;

constexpr ts3d::FindingKind kEmptyMember{
    "empty-member", ts3d::Severity::Note, Subject::Member, "An empty file in the package.",
    "Delete material slots that no face uses; use letters, digits, spaces and underscores in names."};
constexpr ts3d::FindingKind kLostMember{"lost-member", ts3d::Severity::Warning, Subject::File, "{}.", ""};

}  // namespace

void NoticeFindings::Take(const ts3d::StatusLine& line) {
  namespace findings = ts3d::findings;
  using ts3d::Notice;
  if (!line.isFirst) return;
  const std::string value(line.value);
  switch (line.notice) {
    case Notice::MirroredBone:
      return report_.Add(findings::kMirroredBone, value);
    case Notice::UnevenScale:
      return report_.Add(findings::kUnevenScale, value);
    case Notice::LocalMatrix:
      return report_.Add(findings::kLocalMatrix, value);
    case Notice::MissingCoordinates:
      ++missingCoordinates_;
      return;
    case Notice::PolygonsLeftOut:
      return report_.Add(findings::kDroppedPolygons, std::string(line.second), {value});
    case Notice::FileNotOpened:
      return report_.Add(kEmptyMember, value);
    case Notice::FileNotRead:
    case Notice::MemberNotOpened:
    case Notice::MemberNotWritten:
    case Notice::MemberNotClosed:
    case Notice::NoMemory: {
      constexpr std::string_view kMark = ">>> ";
      return report_.Add(kLostMember, {}, {std::string(line.text.substr(kMark.size()))});
    }
    default:
      return;
  }
}

std::vector<ts3d::Finding> NoticeFindings::Take() {
  if (missingCoordinates_ > 0) {
    report_.Add(ts3d::findings::kMissingCoordinates, {}, {std::to_string(missingCoordinates_)});
  }
  return std::move(report_.findings);
}

}  // namespace cli

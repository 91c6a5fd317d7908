// SPDX-License-Identifier: MIT
//
// Every finding, provoked by the one thing that it is about.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "support/fbx_builder.h"
#include "support/sample_actor.h"

namespace {

using actor::Actor;
using actor::Findings;
using actor::PackageContents;
using actor::Severity;
using support::BytesOf;
using support::SampleContents;

constexpr uint32_t kNaN = 0x7fc00000;
constexpr size_t kHeadOfMesh = 36, kFirstInfluence = kHeadOfMesh + 44;

void Add(PackageContents& contents, std::string name, std::string bytes) {
  actor::Member& member = contents.members.emplace_back();
  member.name = std::move(name);
  member.size = bytes.size();
  member.bytes = std::move(bytes);
}

void Replace(std::string& text, const std::string& from, const std::string& to) {
  ASSERT_NE(text.find(from), std::string::npos) << from;
  text.replace(text.find(from), from.size(), to);
}

struct Case {
  const char* kind;
  Severity severity;
  std::function<void(PackageContents&)> damagePackage;
  std::function<void(Actor&)> damageActor = nullptr;
};

// clang-format off
const std::vector<Case>& Cases() {
  static const std::vector<Case> cases = {
    {"unreadable-file", Severity::Warning, [](auto& p) { BytesOf(p, "hat.cmf") += "x"; }},
    {"unreadable-file", Severity::Warning, [](auto& p) { Replace(BytesOf(p, "scout.xfg"), "</meshes>", "<"); }},
    {"unreadable-file", Severity::Warning, [](auto& p) { Replace(BytesOf(p, "scout.xfg"), "threadID=\"154\"", "threadID=\"154x\""); }},
    {"unreadable-file", Severity::Warning, [](auto& p) { Replace(BytesOf(p, "head.xrf"), "<SHININESS>", "<SHININESS>nan "); }},
    {"second-skeleton", Severity::Warning, [](auto& p) { Add(p, "b.csf", BytesOf(p, "skeleton.csf")); }},
    {"second-document", Severity::Warning, [](auto& p) { Add(p, "b.xfg", BytesOf(p, "scout.xfg")); }},
    {"not-finite", Severity::Warning, [](auto& p) { auto& b = BytesOf(p, "hat.cmf"); b = support::Patched(b, kHeadOfMesh, kNaN); }},
    {"not-finite", Severity::Warning, [](auto& p) { auto& b = BytesOf(p, "hat.cmf"); b = support::Patched(b, kHeadOfMesh, 0x5f000000u); }},
    {"bad-index", Severity::Warning, [](auto& p) { auto& b = BytesOf(p, "hat.cmf"); b = support::Patched(b, kFirstInfluence, 29); }},
    {"unsafe-name", Severity::Warning, [](auto& p) { Add(p, "../evil.tga", support::SmallPicture()); }},
    {"unsafe-name", Severity::Warning, [](auto& p) { Replace(BytesOf(p, "scout.xfg"), "hat.cmf", "/x.cmf"); }},
    {"unsafe-name", Severity::Warning, [](auto& p) { Replace(BytesOf(p, "head.xrf"), "<MAP>", "<MAP>..\\"); }},
    {"damaged-member", Severity::Warning, [](auto& p) { p.members[0].sound = false; }},
    {"superseded-member", Severity::Note, [](auto& p) { Add(p, "hat.cmf", BytesOf(p, "hat.cmf")); p.members[9].superseded = true; }},
    {"empty-member", Severity::Warning, [](auto& p) { p.members[0].size = 0; }},
    {"similar-names", Severity::Warning, [](auto& p) { Add(p, "HAT.cmf", BytesOf(p, "hat.cmf")); }},
    {"unnamed-file", Severity::Warning, [](auto& p) { Add(p, "coat.cmf", BytesOf(p, "hat.cmf")); }},
    {"unused-picture", Severity::Note, [](auto& p) { Add(p, "coat.tga", support::SmallPicture()); }},
    {"unknown-file", Severity::Note, [](auto& p) { Add(p, "readme.txt", "text"); }},
    {"bad-picture", Severity::Warning, [](auto& p) { BytesOf(p, "skin.tga").pop_back(); }},
    {"missing-file", Severity::Warning, [](auto& p) { Replace(BytesOf(p, "scout.xfg"), "hat.cmf", "cap.cmf"); }},
    {"missing-file", Severity::Warning, [](auto& p) { Replace(BytesOf(p, "scout.xfg"), "Skeleton.CSF", ""); }},
    {"same-mesh-name", Severity::Warning, [](auto& p) { Replace(BytesOf(p, "scout.xfg"), "<meshes>", "<meshes><mesh name='x' file='hat.cmf'/>"); }},
    {"product-materials", Severity::Note, [](auto& p) {
       Replace(BytesOf(p, "scout.xfg"), "<object_id>scout", "<object_id>actor (male)");
       Replace(BytesOf(p, "scout.xfg"), "<materials>", "<materials><material_file name='face' threadID='51'>f.xrf</material_file>"); }},
    {"thread-mismatch", Severity::Warning, [](auto& p) { Replace(BytesOf(p, "scout.xfg"), "threadID=\"154\"", "threadID=\"150\""); }},
    {"thread-conflict", Severity::Warning, [](auto& p) { Replace(BytesOf(p, "scout.xfg"), "threadID=\"154\"", "threadID=\"153\""); }},
    {"missing-picture", Severity::Warning, [](auto& p) { Replace(BytesOf(p, "head.xrf"), "skin.tga", "none.tga"); }},
    {"unknown-bone", Severity::Note, [](auto& p) { Replace(BytesOf(p, "scout.xfg"), "old=\"headcontrol", "old=\"tail"); }},
    {"no-document", Severity::Warning, [](auto& p) { BytesOf(p, "scout.xfg").clear(); }},
    {"same-bone-name", Severity::Warning, nullptr, [](Actor& a) { a.skeleton.bones[5].name = a.skeleton.bones[2].name; }},
    {"bone-space", Severity::Warning, nullptr, [](Actor& a) { a.skeleton.bones[5].translation[1] += 3; }},
    {"bone-space", Severity::Warning, nullptr, [](Actor& a) { a.skeleton.bones[5].rotation = {0.1f, 0, 0, -0.995f}; }},
    {"bone-space", Severity::Warning, nullptr, [](Actor& a) { a.skeleton.bones[0].translation[0] += 30; }},
    {"bone-space", Severity::Warning, nullptr, [](Actor& a) {
       a.skeleton.bones.resize(1); a.skeleton.bones[0].children.clear(); a.meshes.clear();
       a.skeleton.bones[0].boneSpaceRotation = a.skeleton.bones[0].rotation = {0, 0, 0, -1};
       a.skeleton.bones[0].boneSpaceTranslation = {0, -50, 10}; a.skeleton.bones[0].translation = {0, -100, 20}; }},
    {"bad-rotation", Severity::Warning, nullptr, [](Actor& a) { a.skeleton.bones[5].boneSpaceRotation = {}; }},
    {"root-scale-offset", Severity::Warning, nullptr, [](Actor& a) {
       a.skeleton.bones.resize(1); a.skeleton.bones[0].children.clear(); a.meshes.clear();
       a.skeleton.bones[0].boneSpaceRotation = a.skeleton.bones[0].rotation = {0, 0, 0, -1};
       a.skeleton.bones[0].boneSpaceTranslation = {0, -50, 10}; a.skeleton.bones[0].translation = {0, 100, -20}; }},
    {"weight-sum", Severity::Warning, nullptr, [](Actor& a) { a.meshes[0].influences[0].weight += 0.01f; }},
    {"no-influence", Severity::Warning, nullptr, [](Actor& a) { a.meshes[0].vertices[0].influenceCount = 0; }},
    {"mesh-away", Severity::Warning, nullptr, [](Actor& a) {
       for (auto& mesh : a.meshes) for (auto& vertex : mesh.vertices) vertex.position[2] += 20; }},
    {"mesh-away", Severity::Warning, nullptr, [](Actor& a) { for (auto& vertex : a.meshes[2].vertices) vertex.position[0] += 1000; }},
  };
  return cases;
}
// clang-format on

Findings Check(const Case* damage) {
  PackageContents contents = SampleContents();
  Actor read;
  Findings findings;
  std::string error;
  if (damage && damage->damagePackage) damage->damagePackage(contents);
  EXPECT_TRUE(BuildActor(contents, read, findings, error)) << error;
  if (damage && damage->damageActor) damage->damageActor(read);
  CheckActor(contents, read, findings);
  return findings;
}

TEST(Findings, NoneForASoundPackage) {
  for (const actor::Finding& finding : Check(nullptr)) ADD_FAILURE() << finding.code << ": " << finding.text;
}

TEST(Findings, EachOnceForWhatItIsAbout) {
  for (const Case& damage : Cases()) {
    size_t found = 0;
    for (const actor::Finding& finding : Check(&damage)) {
      if (finding.code != damage.kind) continue;
      ++found;
      EXPECT_EQ(finding.severity, damage.severity) << damage.kind;
      EXPECT_TRUE(finding.severity == Severity::Note || !finding.fix.empty()) << damage.kind;
    }
    EXPECT_EQ(found, 1u) << damage.kind;
  }
}

TEST(Findings, WhatIsDamagedIsLeftOutAndTheRestStays) {
  PackageContents contents = SampleContents();
  BytesOf(contents, "skeleton.csf") = "CSF";
  BytesOf(contents, "hat.cmf") = "CMF";
  Actor read;
  Findings findings;
  std::string error;
  ASSERT_TRUE(BuildActor(contents, read, findings, error));
  EXPECT_EQ(findings.size(), 2u);
  EXPECT_EQ(read.meshes.size(), 6u);
  for (const actor::Mesh& mesh : read.meshes) EXPECT_TRUE(mesh.influences.empty()) << "no bones to hang on";
  contents = {};
  EXPECT_FALSE(BuildActor(contents, read, findings, error));
}

}  // namespace

// SPDX-License-Identifier: MIT
//
// Packages in the runtime that their skeleton, mesh and material files are made for.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "skeleton/skeleton_state.h"
#include "support/runtime_actor.h"
#include "support/test_host.h"

namespace {

using namespace support;

CalQuaternion HalfTurnAboutZ() { return {0, 0, 1, 0}; }

/// A leg of two bones along y. Vertex 0 hangs on the hip, 1 on the knee, 2 on both; 3 on nothing.
Character Leg(FbxRecords rootProperties, const Matrix16& hipPose, const Matrix16& kneePose) {
  Character model;
  const auto hip = model.Bone("hip", 0, std::move(rootProperties));
  const auto knee = model.Bone("knee", hip, {At(0, 1, 0), Turned(0, 0, 30)});
  auto mesh = model.Mesh("Body", {1, 2, 3, 2, 4, 3, 1, 5, 3, 4, 4, 4}, {0, 1, -3, 0, 2, -4});
  model.Weights(mesh, hip, {0, 2}, {1, 0.25});
  model.Weights(mesh, knee, {1, 2}, {2, 0.75});
  model.BindPose({{hip, hipPose}, {knee, kneePose}, {mesh.node, Identity()}});
  return model;
}

constexpr double kCos30 = 0.8660254037844386, kSin30 = 0.5;

Matrix16 KneePose(double scale) {
  const double c = kCos30 * scale, s = kSin30 * scale;
  return {c, s, 0, 0, -s, c, 0, 0, 0, 0, scale, 0, 1, 3, 3, 1};
}

void ExpectAt(const Floats3& actual, const Floats3& expected, const char* what) {
  for (size_t i = 0; i < 3; ++i) EXPECT_NEAR(actual[i], expected[i], 1e-3) << what << ", axis " << i;
}

TEST(RuntimeClient, ShowsTheSampleWhereItsMeshesAreAndTurnsItsLimbs) {
  TestHost host;
  ASSERT_EQ(host.Convert(ReadWholeFile(TS3D_SAMPLES_FOLDER "/scout.fbx"), "scout.fbx"),
            ts3d::ConversionResult::Success);
  const Package package = host.ReadPackage("scout.fbx");
  const std::vector<CsfBone> bones = ReadCsf(package["skeleton.csf"]);
  size_t limbsWithVertices = 0;
  for (size_t bone = 1; bone < bones.size(); ++bone) {
    const RuntimeFigures figures = CheckInRuntime(package, {}, static_cast<int>(bone));
    EXPECT_EQ(figures.meshes, 7u) << "one for each material of each mesh";
    EXPECT_LT(figures.moved, figures.vertices) << bones[bone].name;
    limbsWithVertices += figures.moved > 0 ? 1 : 0;
  }
  EXPECT_GE(limbsWithVertices, 26u);
}

TEST(RuntimeClient, TurnsTheRightVerticesAroundTheRightPlace) {
  const TestHost host(Leg({At(1, 2, 3)}, Translation(1, 2, 3), KneePose(1)));
  const Package package = host.ReadPackage();
  EXPECT_EQ(CheckInRuntime(package, {}, 1).moved, 2u);
  RuntimeActor actor(package);
  actor.Turn(1, HalfTurnAboutZ());
  // Half a turn about z around the knee at (1, 3, 3).
  const std::vector<Floats3> points = actor.Skinned(actor.Meshes()[0]);
  ExpectAt(points[0], {1, 2, 3}, "on the hip");
  ExpectAt(points[1], {0, 2, 3}, "on the knee, its weight of 2 made 1");
  ExpectAt(points[2], {1, 2, 3}, "on both: a quarter of (1, 5, 3), three of (1, 1, 3)");
  ExpectAt(points[3], {4, 4, 4}, "on nothing: stays with the root");
}

TEST(RuntimeClient, StandsAwayFromTheMeshByTheRootScaleUnlessBonesAreRigid) {
  const Character model = Leg({At(1, 2, 3), Scaled(100, 100, 100)},
                              {100, 0, 0, 0, 0, 100, 0, 0, 0, 0, 100, 0, 1, 2, 3, 1}, KneePose(100));
  TestHost host(model);
  // The scale multiplies the stored translation of the root, bone space knows nothing of it.
  EXPECT_EQ(CheckInRuntime(host.ReadPackage(), {99, 198, 297}).moved, 2u);
  host.job.settings.repairs.rigidBones = true;
  ASSERT_EQ(host.Convert(model.Text()), ts3d::ConversionResult::Success);
  EXPECT_EQ(CheckInRuntime(host.ReadPackage()).moved, 2u);
}

TEST(RuntimeClient, SeesActorsStandUp) {
  const std::string name = "Actor (Male).fbx";
  TestHost host;
  const Character model = Leg({At(1, 2, 3)}, Translation(1, 2, 3), KneePose(1));
  ASSERT_EQ(host.Convert(model.Text(), name), ts3d::ConversionResult::Success);
  const Package package = host.ReadPackage(name);
  EXPECT_EQ(CheckInRuntime(package, {}, 1).moved, 2u);
  const RuntimeActor actor(package);
  // A quarter turn about x around the root at (1, 2, 3): y becomes z.
  ExpectAt(actor.Skinned(actor.Meshes()[0])[1], {2, 2, 5}, "on the knee");
}

enum Outcome { Sound, NotConverted, Deviates, Refused, Crashed, OutcomeCount };

/// How far the composed skeleton stands away from the meshes because of the root's scale.
Floats3 RootScaleOffset(const ts3d::SkeletonState& skeleton) {
  Floats3 offset{};
  if (skeleton.bones.BoneCount() == 0) return offset;
  const scene::KFbxVector4& stored = skeleton.bones.FindById(0)->translation;
  for (size_t i = 0; i < 3; ++i) {
    const double scale = skeleton.rootScale[i];
    offset[i] = static_cast<float>(scale != 0.0 ? stored[i] - stored[i] / scale : 0.0);
  }
  return offset;
}

Outcome ConvertAndCheck(const std::string& path, RuntimeFigures& figures) {
  try {
    TestHost host;
    if (host.Convert(ReadWholeFile(path)) != ts3d::ConversionResult::Success) return NotConverted;
    figures = CheckInRuntime(host.ReadPackage(), RootScaleOffset(*host.job.skeleton));
    return testing::Test::HasFailure() ? Deviates : Sound;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", path.c_str(), error.what());
    return Refused;
  }
}

/// In a child process: the runtime believes every number that it reads.
Outcome CheckInChild(const std::string& path, RuntimeFigures& figures) {
  int ends[2];
  if (pipe(ends) != 0) return Crashed;
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    constexpr unsigned kMostSeconds = 120;
    alarm(kMostSeconds);
    if (!freopen("/dev/null", "w", stdout)) _exit(Crashed);
    RuntimeFigures measured;
    const Outcome outcome = ConvertAndCheck(path, measured);
    _exit(write(ends[1], &measured, sizeof measured) == sizeof measured ? outcome : Crashed);
  }
  close(ends[1]);
  const bool told = read(ends[0], &figures, sizeof figures) == sizeof figures;
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  return told && WIFEXITED(status) ? static_cast<Outcome>(WEXITSTATUS(status)) : Crashed;
}

/// Runs over the folder that the environment variable TS3D_CORPUS names. Bones below the root that are scaled
/// or mirrored deviate, because the files have no place for it; nothing may be refused.
TEST(RuntimeClient, TakesWhateverBecomesOfAFolderOfModels) {
  const char* folder = std::getenv("TS3D_CORPUS");
  if (!folder) GTEST_SKIP() << "TS3D_CORPUS names no folder";
  std::vector<std::string> paths;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() == ".fbx") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  size_t counts[OutcomeCount] = {};
  RuntimeFigures sum;
  for (const std::string& path : paths) {
    RuntimeFigures figures;
    const Outcome outcome = CheckInChild(path, figures);
    ++counts[outcome];
    EXPECT_TRUE(outcome != Refused && outcome != Crashed) << path;
    if (outcome == Deviates) std::printf("deviates by %.2g: %s\n", figures.deviation, path.c_str());
    sum.meshes += figures.meshes;
    sum.vertices += figures.vertices;
    sum.limbs += figures.limbs;
    sum.moved += figures.moved;
    if (outcome == Sound) sum.deviation = std::max(sum.deviation, figures.deviation);
  }
  std::printf(
      "%zu models: %zu sound, %zu deviate, %zu give no package, %zu refused, %zu crashed\n"
      "%zu meshes, %zu vertices, %zu limbs turned, %zu vertices moved, deviation of the sound %.2g\n",
      paths.size(), counts[Sound], counts[Deviates], counts[NotConverted], counts[Refused], counts[Crashed],
      sum.meshes, sum.vertices, sum.limbs, sum.moved, sum.deviation);
  EXPECT_GT(counts[Sound], 0u);
}

}  // namespace

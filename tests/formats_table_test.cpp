// SPDX-License-Identifier: MIT
//
// The table "What is read" of docs/formats.md against the files in tests/fixtures.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "compare_corpus/scene_compare.h"
#include "mesh/claims/weigh_claims.h"
#include "scene/model/material.h"
#include "scene/model/mesh.h"
#include "support/load_scene.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kFirstColumn = "versions";
constexpr const char* kReference = "strip_7500_binary";

fs::path SourceFolder() { return TS3D_SOURCE_FOLDER; }

fs::path FixturePath(const std::string& fixture) {
  return SourceFolder() / "tests" / "fixtures" / (fixture + ".fbx");
}

/// Cells of one row by the names of their columns.
using Row = std::map<std::string, std::string>;

std::vector<std::string> SplitCells(const std::string& line) {
  std::vector<std::string> cells;
  std::istringstream text(line.substr(1));
  for (std::string cell; std::getline(text, cell, '|');) {
    const size_t first = cell.find_first_not_of(' ');
    cells.push_back(first == std::string::npos ? ""
                                               : cell.substr(first, cell.find_last_not_of(' ') + 1 - first));
  }
  return cells;
}

/// Rows of the first table whose first column is "versions".
std::vector<Row> ReadTable() {
  std::ifstream file(SourceFolder() / "docs" / "formats.md");
  std::vector<std::string> columns;
  std::vector<Row> rows;
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with("|")) {
      if (!columns.empty()) break;
      continue;
    }
    const std::vector<std::string> cells = SplitCells(line);
    if (columns.empty() && cells.front() == kFirstColumn) {
      columns = cells;
    } else if (!columns.empty() && !cells.front().starts_with("-")) {
      Row& row = rows.emplace_back();
      for (size_t i = 0; i < std::min(cells.size(), columns.size()); ++i) row[columns[i]] = cells[i];
    }
  }
  return rows;
}

const std::vector<Row>& Table() {
  static const std::vector<Row> table = ReadTable();
  return table;
}

/// A fixture, read the way the converter reads models.
class LoadedFixture {
 public:
  explicit LoadedFixture(const std::string& fixture) : manager_(scene::KFbxSdkManager::Create()) {
    scene::KFbxImporter& importer = *manager_->CreateImporter(ts3d::WeighClaims);
    scene = manager_->CreateScene("scene");
    isLoaded = importer.Initialize(FixturePath(fixture).string()) && importer.Import(*scene);
    error = importer.GetLastErrorString();
    version = importer.GetFileVersion();
  }

  scene::KFbxScene* scene = nullptr;
  bool isLoaded = false;
  std::string error;
  scene::KFbxFileVersion version;

 private:
  support::ManagerPtr manager_;
};

std::string Answer(bool holds) { return holds ? "yes" : "no"; }

bool HasSkin(const scene::KFbxMesh& mesh) {
  if (mesh.GetSkinCount() == 0 || mesh.GetSkin(0)->GetClusterCount() == 0) return false;
  const scene::KFbxCluster& cluster = *mesh.GetSkin(0)->GetCluster(0);
  return cluster.GetLink() && cluster.GetLink()->IsSkeleton() && cluster.GetTransformMatrix() &&
         !cluster.GetControlPointWeights().empty();
}

bool HasMaterials(const scene::KFbxMesh& mesh, const scene::KFbxNode& node) {
  return mesh.GetMaterials() && mesh.GetMaterials()->GetMaterialIndex(1, 4) == 1 &&
         node.GetMaterialCount() == 2 && dynamic_cast<const scene::KFbxSurfacePhong*>(node.GetMaterial(0)) &&
         dynamic_cast<const scene::KFbxSurfaceLambert*>(node.GetMaterial(1));
}

/// What the scene holds, by the columns of the table.
Row ContentOf(const scene::KFbxScene& scene) {
  const scene::KFbxNode& node = *scene.GetRootNode()->GetChild(0);
  const scene::KFbxMesh* mesh = node.GetMesh();
  if (!mesh) return {{"mesh", "no"}};
  const scene::KFbxProperty* diffuse =
      node.GetMaterialCount() > 0 ? node.GetMaterial(0)->FindProperty("DiffuseColor") : nullptr;
  return {{"mesh", Answer(mesh->GetPolygonCount() == 2 && mesh->GetControlPointsCount() == 6)},
          {"texture coordinates", Answer(mesh->GetUVs() && mesh->GetUVs()->GetCoordinateCount() == 6)},
          {"skin", Answer(HasSkin(*mesh))},
          {"shapes", Answer(!mesh->GetShapes().empty())},
          {"poses", Answer(scene.GetPoseCount() == 1 && scene.GetPose(0)->GetCount() == 3)},
          {"materials", Answer(HasMaterials(*mesh, node))},
          {"textures", Answer(diffuse && diffuse->GetSrcTexture(0))}};
}

/// Column that says whether a version holds what a difference is about; "mesh" for what every version holds.
std::string ColumnOf(const std::string& aspect) {
  if (aspect == "shape") return "shapes";
  if (aspect == "pose") return "poses";
  return aspect == "texture" ? "textures" : "mesh";
}

/// "7.2 to 7.9" as 72 and 79.
std::pair<int, int> VersionRange(const std::string& text) {
  int major = 0, minor = 0, lastMajor = 0, lastMinor = 0;
  EXPECT_EQ(std::sscanf(text.c_str(), "%d.%d to %d.%d", &major, &minor, &lastMajor, &lastMinor), 4) << text;
  return {10 * major + minor, 10 * lastMajor + lastMinor};
}

class FormatsTable : public testing::TestWithParam<size_t> {
 protected:
  void SetUp() override { ASSERT_TRUE(loaded_.isLoaded) << fixture_ << ": " << loaded_.error; }

  const Row& row_ = Table()[GetParam()];
  std::string fixture_ = row_.at("fixture");
  LoadedFixture loaded_{fixture_};
};

TEST_P(FormatsTable, AFixtureHoldsWhatItsRowClaims) {
  ASSERT_GT(loaded_.scene->GetRootNode()->GetChildCount(), 0);
  for (const auto& [column, answer] : ContentOf(*loaded_.scene)) EXPECT_EQ(row_.at(column), answer) << column;
}

TEST_P(FormatsTable, AFixtureIsOfTheVersionAndContainerOfItsRow) {
  const auto [first, last] = VersionRange(row_.at(kFirstColumn));
  const int version = 10 * loaded_.version.major + loaded_.version.minor;
  EXPECT_GE(version, first);
  EXPECT_LE(version, last);
  std::ifstream file(FixturePath(fixture_), std::ios::binary);
  const bool isAscii = file.get() == ';';
  EXPECT_EQ(row_.at("container").starts_with("ASCII"), isAscii);
}

TEST_P(FormatsTable, AllFixturesHoldOneScene) {
  LoadedFixture reference(kReference);
  ASSERT_TRUE(reference.isLoaded) << reference.error;
  for (const corpus::Difference& difference : corpus::CompareScenes(*reference.scene, *loaded_.scene)) {
    if (row_.at(ColumnOf(difference.aspect)) == "no") continue;
    ADD_FAILURE() << difference.aspect << ": " << difference.where << ": " << difference.text;
  }
}

INSTANTIATE_TEST_SUITE_P(Fixtures, FormatsTable, testing::Range(size_t{0}, Table().size()),
                         [](const auto& info) { return Table()[info.param].at("fixture"); });

TEST(Fixtures, EveryFixtureHasARow) {
  size_t count = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(SourceFolder() / "tests" / "fixtures")) {
    if (entry.path().extension() != ".fbx") continue;
    ++count;
    EXPECT_TRUE(std::ranges::any_of(Table(), [&](const Row& row) {
      return row.at("fixture") == entry.path().stem().string();
    })) << entry.path();
  }
  EXPECT_EQ(count, Table().size());
}

}  // namespace

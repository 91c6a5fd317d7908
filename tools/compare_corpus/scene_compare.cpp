// SPDX-License-Identifier: MIT
#include "compare_corpus/scene_compare.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>
#include <unordered_map>

#include "platform/files.h"
#include "scene/assemble/build_scene.h"
#include "scene/fbx_reader.h"
#include "scene/model/material.h"
#include "scene/model/mesh.h"

namespace corpus {
namespace {

using scene::KFbxCluster;
using scene::KFbxMesh;
using scene::KFbxNode;
using scene::KFbxPolygon;
using scene::KFbxPose;
using scene::KFbxSurfaceLambert;
using scene::KFbxSurfaceMaterial;
using scene::KFbxSurfacePhong;
using scene::KFbxVector4;
using scene::KFbxXMatrix;

std::string Text(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", number);
  return text;
}

std::string Text(const KFbxVector4& v) { return Text(v[0]) + " " + Text(v[1]) + " " + Text(v[2]); }

std::string Text(const KFbxXMatrix& m) {
  return "T " + Text(m.GetT()) + " R " + Text(m.GetR()) + " S " + Text(m.GetS());
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : ", ") + text;
  return "[" + joined + "]";
}

bool Alike(const KFbxXMatrix& a, const KFbxXMatrix& b) {
  // Axes and translation may be of very different sizes.
  double axes = 0.0, translation = 0.0;
  for (size_t i = 0; i < 12; ++i) axes = std::max({axes, std::abs(a.At(i)), std::abs(b.At(i))});
  for (size_t i = 12; i < 15; ++i)
    translation = std::max({translation, std::abs(a.At(i)), std::abs(b.At(i))});
  for (size_t i = 0; i < 15; ++i) {
    const double size = i < 12 ? axes : std::max(translation, axes);
    if (std::abs(a.At(i) - b.At(i)) > kTolerance * size) return false;
  }
  return true;
}

bool Alike(const KFbxVector4& a, const KFbxVector4& b) {
  for (size_t i = 0; i < 3; ++i) {
    if (std::abs(a[i] - b[i]) > kTolerance * std::max(1.0, std::abs(a[i]))) return false;
  }
  return true;
}

double LargestNumber(std::span<const double> numbers) {
  double largest = 0.0;
  for (const double number : numbers) largest = std::max(largest, std::abs(number));
  return largest;
}

std::vector<const KFbxNode*> ChildrenOf(const KFbxNode& node) {
  std::vector<const KFbxNode*> children;
  children.reserve(static_cast<size_t>(node.GetChildCount()));
  for (int i = 0; i < node.GetChildCount(); ++i) children.push_back(node.GetChild(i));
  return children;
}

/// For each expected node the place of its partner in `actual`, or none: of the same name, else of the same
/// name without suffix, else, in lists of the same length, the one in the same place.
std::vector<std::optional<size_t>> PairByName(const std::vector<const KFbxNode*>& expected,
                                              const std::vector<const KFbxNode*>& actual) {
  std::vector<std::optional<size_t>> partner(expected.size());
  std::vector<bool> used(actual.size());
  const auto pairWhere = [&](auto fits) {
    for (size_t i = 0; i < expected.size(); ++i) {
      for (size_t k = 0; k < actual.size() && !partner[i]; ++k) {
        if (used[k] || !fits(i, k)) continue;
        partner[i] = k;
        used[k] = true;
      }
    }
  };
  pairWhere([&](size_t i, size_t k) { return expected[i]->GetName() == actual[k]->GetName(); });
  pairWhere([&](size_t i, size_t k) {
    return WithoutUniqueSuffix(expected[i]->GetName()) == WithoutUniqueSuffix(actual[k]->GetName());
  });
  if (expected.size() == actual.size()) pairWhere([](size_t i, size_t k) { return i == k; });
  return partner;
}

int AttributeTypeOf(const KFbxNode& node) {
  return node.GetNodeAttribute() ? static_cast<int>(node.GetNodeAttribute()->GetAttributeType()) : -1;
}

const char* ClassOf(const KFbxSurfaceMaterial& material) {
  if (dynamic_cast<const KFbxSurfacePhong*>(&material)) return "phong";
  return dynamic_cast<const KFbxSurfaceLambert*>(&material) ? "lambert" : "other";
}

std::vector<std::string> MaterialNames(const KFbxNode& node) {
  std::vector<std::string> names;
  names.reserve(static_cast<size_t>(node.GetMaterialCount()));
  for (int i = 0; i < node.GetMaterialCount(); ++i) names.push_back(node.GetMaterial(i)->GetName());
  return names;
}

std::vector<std::string> DiffuseFiles(const KFbxSurfaceMaterial& material) {
  std::vector<std::string> files;
  const scene::KFbxProperty* property = material.FindProperty("DiffuseColor");
  for (int i = 0; property && i < property->GetSrcTextureCount(); ++i) {
    const scene::KFbxTexture* texture = property->GetSrcTexture(i);
    files.push_back(texture ? BaseName(texture->GetFileName()) : "(layered)");
  }
  return files;
}

/// Texture coordinates of one corner; none when it has none.
std::optional<std::array<double, 2>> CoordinatesOf(const KFbxMesh& mesh, size_t corner) {
  const scene::KFbxLayerElementUV* uvs = mesh.GetUVs();
  if (!uvs) return std::nullopt;
  const int32_t index = uvs->GetLookup()(corner, mesh.GetPolygonVertices()[corner]);
  if (index < 0) return std::nullopt;
  const auto at = static_cast<size_t>(index);
  return std::array{uvs->GetDirectArray()[2 * at], uvs->GetDirectArray()[2 * at + 1]};
}

class SceneComparison {
 public:
  SceneComparison(scene::KFbxScene& expected, scene::KFbxScene& actual)
      : expected_(expected), actual_(actual) {}

  Differences Run() {
    PairNodes();
    for (const auto& [expected, actual] : pairs_) CompareNodes(*expected, *actual);
    ComparePoses();
    return std::move(differences_);
  }

 private:
  void Add(const char* aspect, std::string text) {
    differences_.push_back({aspect, where_, std::move(text)});
  }
  void AddUnequal(const char* aspect, const std::string& what, const std::string& expected,
                  const std::string& actual) {
    if (expected != actual) Add(aspect, what + " " + expected + " became " + actual);
  }
  void AddUnequal(const char* aspect, const char* what, int64_t expected, int64_t actual) {
    AddUnequal(aspect, what, std::to_string(expected), std::to_string(actual));
  }
  template <typename T>
  void AddUnlike(const char* aspect, const std::string& what, const T& expected, const T& actual) {
    if (!Alike(expected, actual)) Add(aspect, what + " " + Text(expected) + " became " + Text(actual));
  }
  void AddUnlike(const char* aspect, const char* what, double expected, double actual) {
    AddUnlike(aspect, what, KFbxVector4(expected, 0, 0), KFbxVector4(actual, 0, 0));
  }
  /// Whether `actual` stands where `expected` should. Nodes outside the tree have no partner but their name.
  bool ArePartners(const KFbxNode* expected, const KFbxNode* actual) const {
    if (!expected || !actual) return expected == actual;
    const auto found = partner_.find(expected);
    return found == partner_.end() ? expected->GetName() == actual->GetName() : found->second == actual;
  }

  void PairNodes();
  void PairChildren(const KFbxNode& expected, const KFbxNode& actual);
  void CompareNodes(const KFbxNode& expected, const KFbxNode& actual);
  void CompareMaterials(const KFbxNode& expected, const KFbxNode& actual);
  void CompareMaterial(const KFbxSurfaceMaterial& expected, const KFbxSurfaceMaterial& actual);
  void CompareMeshes(const KFbxMesh& expected, const KFbxMesh& actual);
  void ComparePoints(const KFbxMesh& expected, const KFbxMesh& actual);
  void ComparePositions(const char* aspect, std::span<const double> expected, std::span<const double> actual);
  bool ComparePolygons(const KFbxMesh& expected, const KFbxMesh& actual);
  void CompareCoordinates(const KFbxMesh& expected, const KFbxMesh& actual);
  void CompareMaterialIndices(const KFbxMesh& expected, const KFbxMesh& actual);
  void CompareSkins(const KFbxMesh& expected, const KFbxMesh& actual);
  void CompareClusters(const KFbxCluster& expected, const KFbxCluster& actual);
  void CompareWeights(const std::string& cluster, std::span<const double> expected,
                      std::span<const double> actual);
  void CompareMatrices(const std::string& what, const std::optional<KFbxXMatrix>& expected,
                       const std::optional<KFbxXMatrix>& actual);
  void ComparePoses();
  void ComparePose(const KFbxPose& expected, const KFbxPose& actual);

  scene::KFbxScene& expected_;
  scene::KFbxScene& actual_;
  std::vector<std::pair<const KFbxNode*, const KFbxNode*>> pairs_;  ///< from the root down
  std::unordered_map<const KFbxNode*, const KFbxNode*> partner_;    ///< of the expected node
  std::unordered_map<const KFbxNode*, std::string> path_;           ///< of the expected node
  std::string where_;
  Differences differences_;
};

void SceneComparison::PairNodes() {
  pairs_.emplace_back(expected_.GetRootNode(), actual_.GetRootNode());
  // The list grows while it is walked; trees may be deeper than the call stack.
  for (size_t i = 0; i < pairs_.size(); ++i) {
    const auto [expected, actual] = pairs_[i];
    partner_.emplace(expected, actual);
    PairChildren(*expected, *actual);
  }
}

void SceneComparison::PairChildren(const KFbxNode& expected, const KFbxNode& actual) {
  const std::vector<const KFbxNode*> expectedNodes = ChildrenOf(expected), actualNodes = ChildrenOf(actual);
  const std::vector<std::optional<size_t>> partner = PairByName(expectedNodes, actualNodes);
  std::vector<bool> isNew(actualNodes.size(), true);
  std::optional<size_t> last;
  where_ = path_[&expected];
  for (size_t i = 0; i < partner.size(); ++i) {
    const KFbxNode& node = *expectedNodes[i];
    if (!partner[i]) {
      Add("node", "child " + node.GetName() + " is missing");
      continue;
    }
    if (last && *partner[i] < *last) Add("order", "child " + node.GetName() + " stands in another place");
    last = partner[i];
    isNew[*partner[i]] = false;
    path_[&node] = path_[&expected] + "/" + node.GetName();
    pairs_.emplace_back(&node, actualNodes[*partner[i]]);
  }
  for (size_t k = 0; k < isNew.size(); ++k) {
    if (isNew[k]) Add("node", "child " + actualNodes[k]->GetName() + " is new");
  }
}

void SceneComparison::CompareNodes(const KFbxNode& expected, const KFbxNode& actual) {
  where_ = path_[&expected];
  AddUnequal("name", "name", expected.GetName(), actual.GetName());
  AddUnequal("attribute", "attribute type", AttributeTypeOf(expected), AttributeTypeOf(actual));
  AddUnlike("transform", "transform", expected.GetGlobalFromDefaultTake(), actual.GetGlobalFromDefaultTake());
  AddUnlike("geometric", "geometric transform", expected.GetGeometricTransform(),
            actual.GetGeometricTransform());
  CompareMaterials(expected, actual);
  if (expected.GetMesh() && actual.GetMesh()) CompareMeshes(*expected.GetMesh(), *actual.GetMesh());
}

void SceneComparison::CompareMaterials(const KFbxNode& expected, const KFbxNode& actual) {
  AddUnequal("materials", "materials", Joined(MaterialNames(expected)), Joined(MaterialNames(actual)));
  const int count = std::min(expected.GetMaterialCount(), actual.GetMaterialCount());
  for (int i = 0; i < count; ++i) CompareMaterial(*expected.GetMaterial(i), *actual.GetMaterial(i));
}

void SceneComparison::CompareMaterial(const KFbxSurfaceMaterial& expected,
                                      const KFbxSurfaceMaterial& actual) {
  const std::string& name = expected.GetName();
  AddUnequal("material", name + " class", ClassOf(expected), ClassOf(actual));
  AddUnequal("texture", name + " textures", Joined(DiffuseFiles(expected)), Joined(DiffuseFiles(actual)));
  const auto compareCommon = [&](const auto& e, const auto& a) {
    AddUnlike("colour", name + " ambient", e.ambient, a.ambient);
    AddUnlike("colour", name + " diffuse", e.diffuse, a.diffuse);
    AddUnlike("colour", name + " emissive", e.emissive, a.emissive);
    AddUnlike("colour", (name + " transparency").c_str(), e.transparencyFactor, a.transparencyFactor);
  };
  const auto* lambert = dynamic_cast<const KFbxSurfaceLambert*>(&expected);
  const auto* actualLambert = dynamic_cast<const KFbxSurfaceLambert*>(&actual);
  if (lambert && actualLambert) compareCommon(*lambert, *actualLambert);
  const auto* phong = dynamic_cast<const KFbxSurfacePhong*>(&expected);
  const auto* actualPhong = dynamic_cast<const KFbxSurfacePhong*>(&actual);
  if (!phong || !actualPhong) return;
  compareCommon(*phong, *actualPhong);
  AddUnlike("colour", name + " specular", phong->specular, actualPhong->specular);
  AddUnlike("colour", (name + " shininess").c_str(), phong->shininess, actualPhong->shininess);
}

void SceneComparison::CompareMeshes(const KFbxMesh& expected, const KFbxMesh& actual) {
  ComparePoints(expected, actual);
  if (ComparePolygons(expected, actual)) {
    CompareCoordinates(expected, actual);
    CompareMaterialIndices(expected, actual);
  }
  CompareSkins(expected, actual);
}

void SceneComparison::ComparePoints(const KFbxMesh& expected, const KFbxMesh& actual) {
  AddUnequal("points", "control points", expected.GetControlPointsCount(), actual.GetControlPointsCount());
  if (expected.GetControlPointsCount() != actual.GetControlPointsCount()) return;
  ComparePositions("points", expected.GetControlPoints(), actual.GetControlPoints());
  AddUnequal("shape", "shapes", static_cast<int64_t>(expected.GetShapes().size()),
             static_cast<int64_t>(actual.GetShapes().size()));
  ComparePositions("shape", ShapedPoints(expected), ShapedPoints(actual));
}

void SceneComparison::ComparePositions(const char* aspect, std::span<const double> expected,
                                       std::span<const double> actual) {
  const double size = std::max(LargestNumber(expected), LargestNumber(actual));
  for (size_t i = 0; i < expected.size(); ++i) {
    if (std::abs(expected[i] - actual[i]) <= kTolerance * size) continue;
    return Add(aspect, "control point " + std::to_string(i / 3) + ": " + Text(expected[i]) + " became " +
                           Text(actual[i]));
  }
}

bool SceneComparison::ComparePolygons(const KFbxMesh& expected, const KFbxMesh& actual) {
  AddUnequal("polygons", "polygons", expected.GetPolygonCount(), actual.GetPolygonCount());
  if (expected.GetPolygonCount() != actual.GetPolygonCount()) return false;
  for (uint32_t i = 0; i < expected.GetPolygons().Count(); ++i) {
    const auto cornersOf = [i](const KFbxMesh& mesh) {
      const KFbxPolygon polygon = mesh.GetPolygons()[i];
      return mesh.GetPolygonVertices().subspan(polygon.firstCorner, polygon.size);
    };
    if (std::ranges::equal(cornersOf(expected), cornersOf(actual))) continue;
    Add("polygons", "polygon " + std::to_string(i) + " has other corners");
    return false;
  }
  return true;
}

void SceneComparison::CompareCoordinates(const KFbxMesh& expected, const KFbxMesh& actual) {
  AddUnequal("uv", "texture coordinates", expected.GetUVs() ? "yes" : "no", actual.GetUVs() ? "yes" : "no");
  if (!expected.GetUVs() || !actual.GetUVs()) return;
  const double size = std::max(1.0, LargestNumber(expected.GetUVs()->GetDirectArray()));
  for (uint32_t i = 0; i < expected.GetPolygons().Count(); ++i) {
    for (uint32_t k = 0; k < expected.GetPolygons()[i].size; ++k) {
      const auto e = CoordinatesOf(expected, expected.GetPolygons()[i].firstCorner + k);
      const auto a = CoordinatesOf(actual, actual.GetPolygons()[i].firstCorner + k);
      if (e && a && std::abs((*e)[0] - (*a)[0]) <= kTolerance * size &&
          std::abs((*e)[1] - (*a)[1]) <= kTolerance * size) {
        continue;
      }
      if (!e && !a) continue;
      return Add("uv", "corner " + std::to_string(k) + " of polygon " + std::to_string(i) + " differs");
    }
  }
}

void SceneComparison::CompareMaterialIndices(const KFbxMesh& expected, const KFbxMesh& actual) {
  const auto indexOf = [](const KFbxMesh& mesh, uint32_t i) {
    const KFbxPolygon polygon = mesh.GetPolygons()[i];
    return mesh.GetMaterials() ? mesh.GetMaterials()->GetMaterialIndex(polygon.number, polygon.firstCorner)
                               : -1;
  };
  for (uint32_t i = 0; i < expected.GetPolygons().Count(); ++i) {
    const int32_t e = indexOf(expected, i), a = indexOf(actual, i);
    if (e == a) continue;
    return AddUnequal("material index", "material of polygon " + std::to_string(i), std::to_string(e),
                      std::to_string(a));
  }
}

void SceneComparison::CompareSkins(const KFbxMesh& expected, const KFbxMesh& actual) {
  AddUnequal("skin", "skins", expected.GetSkinCount(), actual.GetSkinCount());
  for (int s = 0; s < std::min(expected.GetSkinCount(), actual.GetSkinCount()); ++s) {
    const scene::KFbxSkin &e = *expected.GetSkin(s), &a = *actual.GetSkin(s);
    AddUnequal("cluster", "clusters", e.GetClusterCount(), a.GetClusterCount());
    if (e.GetClusterCount() != a.GetClusterCount()) continue;
    for (int c = 0; c < e.GetClusterCount(); ++c) CompareClusters(*e.GetCluster(c), *a.GetCluster(c));
  }
}

void SceneComparison::CompareClusters(const KFbxCluster& expected, const KFbxCluster& actual) {
  const auto nameOf = [](const KFbxNode* node) { return node ? node->GetName() : "(none)"; };
  const std::string name = "cluster " + nameOf(expected.GetLink());
  if (!ArePartners(expected.GetLink(), actual.GetLink())) {
    return Add("cluster", name + " became " + nameOf(actual.GetLink()));
  }
  AddUnequal("cluster", name + " mode", std::to_string(static_cast<int>(expected.GetLinkMode())),
             std::to_string(static_cast<int>(actual.GetLinkMode())));
  if (!std::ranges::equal(expected.GetControlPointIndices(), actual.GetControlPointIndices())) {
    Add("cluster", name + " has other indices");
  } else {
    CompareWeights(name, expected.GetControlPointWeights(), actual.GetControlPointWeights());
  }
  CompareMatrices(name + " transform", expected.GetTransformMatrix(), actual.GetTransformMatrix());
  CompareMatrices(name + " link transform", expected.GetTransformLinkMatrix(),
                  actual.GetTransformLinkMatrix());
  CompareMatrices(name + " associate transform", expected.GetTransformAssociateModelMatrix(),
                  actual.GetTransformAssociateModelMatrix());
}

void SceneComparison::CompareWeights(const std::string& cluster, std::span<const double> expected,
                                     std::span<const double> actual) {
  for (size_t i = 0; i < expected.size(); ++i) {
    if (std::abs(expected[i] - actual[i]) <= kTolerance) continue;
    return Add("cluster", cluster + " weight " + Text(expected[i]) + " became " + Text(actual[i]));
  }
}

void SceneComparison::CompareMatrices(const std::string& what, const std::optional<KFbxXMatrix>& expected,
                                      const std::optional<KFbxXMatrix>& actual) {
  if (expected && actual) return AddUnlike("cluster", what, *expected, *actual);
  AddUnequal("cluster", what, expected ? "present" : "absent", actual ? "present" : "absent");
}

void SceneComparison::ComparePoses() {
  where_ = "poses";
  AddUnequal("pose", "poses", expected_.GetPoseCount(), actual_.GetPoseCount());
  const int count = std::min(expected_.GetPoseCount(), actual_.GetPoseCount());
  for (int i = 0; i < count; ++i) ComparePose(*expected_.GetPose(i), *actual_.GetPose(i));
}

void SceneComparison::ComparePose(const KFbxPose& expected, const KFbxPose& actual) {
  AddUnequal("pose", "pose name", expected.GetName(), actual.GetName());
  AddUnequal("pose", "bind pose", expected.IsBindPose(), actual.IsBindPose());
  AddUnequal("pose", "entries", expected.GetCount(), actual.GetCount());
  for (int i = 0; i < expected.GetCount(); ++i) {
    const std::string what = "entry " + expected.GetNode(i)->GetName();
    int k = 0;
    while (k < actual.GetCount() && !ArePartners(expected.GetNode(i), actual.GetNode(k))) ++k;
    if (k == actual.GetCount()) {
      Add("pose", what + " is missing");
      continue;
    }
    AddUnlike("pose", what, expected.GetMatrix(i), actual.GetMatrix(k));
    AddUnequal("pose", (what + " local").c_str(), expected.IsLocalMatrix(i), actual.IsLocalMatrix(k));
  }
}

}  // namespace

Differences CompareScenes(scene::KFbxScene& expected, scene::KFbxScene& actual) {
  return SceneComparison(expected, actual).Run();
}

std::unique_ptr<scene::KFbxScene> LoadScene(const std::string& path, std::string& error) {
  auto file = std::make_shared<platform::MappedFile>();
  if (!file->Open(path, error)) return nullptr;
  auto tree = std::make_shared<scene::RecordTree>();
  tree->bytes = file->Bytes();
  tree->storage = std::move(file);
  const scene::KFbxImportStatus status = ReadFbxRecords(*tree);
  error = status.text;
  if (!status.Succeeded()) return nullptr;
  auto scene = std::make_unique<scene::KFbxScene>("scene");
  BuildScene(std::move(tree), *scene);
  return scene;
}

std::vector<double> ShapedPoints(const KFbxMesh& mesh) {
  const std::span<const double> source = mesh.GetControlPoints();
  std::vector<double> points(source.begin(), source.end());
  for (const scene::KFbxShape& shape : mesh.GetShapes()) ApplyShape(shape, points);
  return points;
}

std::string BaseName(std::string_view path) {
  const size_t separator = path.find_last_of("\\/");
  return std::string(separator == std::string_view::npos ? path : path.substr(separator + 1));
}

std::string WithoutUniqueSuffix(std::string_view name) {
  const size_t suffix = name.rfind("_ncl1_");
  const bool isSuffix = suffix != std::string_view::npos && suffix + 6 < name.size() &&
                        name.find_first_not_of("0123456789", suffix + 6) == std::string_view::npos;
  return std::string(isSuffix ? name.substr(0, suffix) : name);
}

}  // namespace corpus

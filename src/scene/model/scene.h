// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "scene/container/record_tree.h"
#include "scene/model/node.h"
#include "scene/model/pose.h"

namespace scene {

/// A loaded scene: owns every object of it and the file that their arrays are read from.
class KFbxScene : public KFbxObject {
 public:
  explicit KFbxScene(std::string_view name);
  ~KFbxScene() override;

  const KFbxNode* GetRootNode() const { return root_; }
  KFbxNode* GetRootNode() { return root_; }
  /// The arrays that could not be unpacked so far, as `"Weights" of bone "hip" in mesh "Body"`. They were
  /// taken as empty.
  std::vector<KString> GetDamagedArrays();
  /// Whether the numbers of a text file were written with decimal commas, as programs did in countries that
  /// write numbers so. Commas stand between numbers in such a file, too: each of them reads as two.
  bool HasDecimalCommas() const;
  /// The names of the motions, in which something moves, in the order of the file.
  std::vector<KString> GetMotions() const;
  /// What the file says about how its model may be used, in one line; empty when it says nothing.
  const KString& GetLicence() const { return licence_; }
  /// What was decided in reading a file of another format than FBX, in words.
  const std::vector<KString>& GetRemarks() const { return remarks_; }
  /// Paths of the other files that the model's data is in.
  const std::vector<KString>& GetDataFiles() const { return dataFiles_; }
  /// A joint that skins give weights and that the file does not have.
  struct LostJoint {
    KString name;
    size_t points;  ///< that lose weights
  };
  /// Those of files of other formats; clusters of FBX files without a link have no name.
  const std::vector<LostJoint>& GetLostJoints() const { return lostJoints_; }
  int GetPoseCount() const { return static_cast<int>(poses_.size()); }
  KFbxPose* GetPose(int i) const { return poses_[static_cast<size_t>(i)]; }

  /// Calls `visit` for every object of class T.
  template <typename T, typename Visit>
  void ForEach(Visit visit) {
    for (const auto& object : objects_) {
      if (auto* found = dynamic_cast<T*>(object.get())) visit(*found);
    }
  }

  template <typename T, typename Visit>
  void ForEach(Visit visit) const {
    for (const auto& object : objects_) {
      if (const auto* found = dynamic_cast<const T*>(object.get())) visit(*found);
    }
  }

  // For whoever builds a scene.
  template <typename T, typename... Args>
  T& Create(Args&&... args) {
    auto object = std::make_unique<T>(std::forward<Args>(args)...);
    T& created = *object;
    objects_.push_back(std::move(object));
    return created;
  }
  void SetLicence(std::string_view licence) { licence_ = licence; }
  void AddRemark(std::string_view remark) { remarks_.emplace_back(remark); }
  void AddDataFile(std::string_view path) { dataFiles_.emplace_back(path); }
  void AddLostJoint(std::string_view name, size_t points) { lostJoints_.push_back({KString(name), points}); }
  void AddPose(KFbxPose& pose) { poses_.push_back(&pose); }
  void KeepFile(std::shared_ptr<const RecordTree> tree) { tree_ = std::move(tree); }
  /// Gives back everything that an earlier import left.
  void Clear();
  /// Evaluates the world transforms of all nodes below the root.
  void EvaluateTransforms();

 private:
  std::shared_ptr<const RecordTree> tree_;
  std::vector<std::unique_ptr<KFbxObject>> objects_;
  std::vector<KFbxPose*> poses_;
  KFbxNode* root_ = nullptr;
  KString licence_;
  std::vector<KString> remarks_, dataFiles_;
  std::vector<LostJoint> lostJoints_;
};

}  // namespace scene

// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace scene {

/// Names and paths: 8-bit text, bytes as the file has them.
using KString = std::string;

/// Base of everything that a scene owns. Objects live as long
/// as their scene and refer to each other by pointer.
class KFbxObject {
 public:
  explicit KFbxObject(std::string_view name) : name_(name) {}
  virtual ~KFbxObject() = default;
  KFbxObject(const KFbxObject&) = delete;
  KFbxObject& operator=(const KFbxObject&) = delete;

  const KString& GetName() const { return name_; }

 private:
  KString name_;
};

}  // namespace scene

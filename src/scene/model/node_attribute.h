// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "scene/model/object.h"

namespace scene {

/// What a node is: bone, mesh, light, ... One attribute may serve several nodes.
class KFbxNodeAttribute : public KFbxObject {
 public:
  enum class EAttributeType : int32_t {
    eUNIDENTIFIED = 0,
    eNULL = 1,
    eMARKER = 2,
    eSKELETON = 3,
    eMESH = 4,
    eNURB = 5,
    ePATCH = 6,
    eCAMERA = 7,
    eLIGHT = 8,
    eLINE = 9,
    eLOD_GROUP = 10
  };

  KFbxNodeAttribute(std::string_view name, EAttributeType type) : KFbxObject(name), type_(type) {}

  EAttributeType GetAttributeType() const { return type_; }

 private:
  EAttributeType type_;
};

}  // namespace scene

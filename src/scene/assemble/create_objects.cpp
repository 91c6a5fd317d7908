// SPDX-License-Identifier: MIT
#include "base/plain_text.h"
#include "scene/assemble/scene_builder.h"

namespace scene {
namespace {

using EAttributeType = KFbxNodeAttribute::EAttributeType;

EAttributeType AttributeTypeOf(std::string_view subType) {
  static constexpr std::pair<std::string_view, EAttributeType> kTypes[] = {
      {"Null", EAttributeType::eNULL},         {"Marker", EAttributeType::eMARKER},
      {"FKEffector", EAttributeType::eMARKER}, {"IKEffector", EAttributeType::eMARKER},
      {"LimbNode", EAttributeType::eSKELETON}, {"Limb", EAttributeType::eSKELETON},
      {"Root", EAttributeType::eSKELETON},     {"Mesh", EAttributeType::eMESH},
      {"NurbsSurface", EAttributeType::eNURB}, {"Nurb", EAttributeType::eNURB},
      {"Patch", EAttributeType::ePATCH},       {"Camera", EAttributeType::eCAMERA},
      {"Light", EAttributeType::eLIGHT},       {"Line", EAttributeType::eLINE},
      {"LodGroup", EAttributeType::eLOD_GROUP}};
  for (const auto& [name, type] : kTypes) {
    if (name == subType) return type;
  }
  return EAttributeType::eUNIDENTIFIED;
}

TransformProperties ReadTransform(const Properties& properties) {
  const auto vector = [&](std::string_view name, const KFbxVector4& otherwise = {}) {
    return properties.Vector(name, otherwise);
  };
  constexpr KFbxVector4 kOne{1, 1, 1};
  TransformProperties transform;
  transform.translation = vector("Lcl Translation");
  transform.rotation = vector("Lcl Rotation");
  transform.scaling = vector("Lcl Scaling", kOne);
  transform.preRotation = vector("PreRotation");
  transform.postRotation = vector("PostRotation");
  transform.rotationOffset = vector("RotationOffset");
  transform.rotationPivot = vector("RotationPivot");
  transform.scalingOffset = vector("ScalingOffset");
  transform.scalingPivot = vector("ScalingPivot");
  transform.geometricTranslation = vector("GeometricTranslation");
  transform.geometricRotation = vector("GeometricRotation");
  transform.geometricScaling = vector("GeometricScaling", kOne);
  transform.rotationOrder = properties.Integer("RotationOrder", 0);
  transform.rotationActive = properties.Integer("RotationActive", 0) != 0;
  transform.rotationSpaceForLimitOnly = properties.Integer("RotationSpaceForLimitOnly", 0) != 0;
  const int inherit = properties.Integer("InheritType", 0);
  transform.inheritType =
      inherit >= 0 && inherit <= 2 ? static_cast<InheritType>(inherit) : InheritType::RSrs;
  return transform;
}

/// "Default" of the channel X, Y or Z below the channel `name`.
KFbxVector4 ReadChannels(RecordRef transform, std::string_view name, const KFbxVector4& otherwise) {
  static constexpr std::string_view kAxes[] = {"X", "Y", "Z"};
  KFbxVector4 vector = otherwise;
  for (const RecordRef group : transform) {
    if (group.Name() != "Channel" || group.Text(0) != name) continue;
    for (const RecordRef axis : group) {
      for (size_t i = 0; i < 3; ++i) {
        if (axis.Text(0) == kAxes[i]) vector[i] = axis.Child("Default").Number(0, otherwise[i]);
      }
    }
  }
  return vector;
}

/// Version 5 and older: no properties, only the channels of an animation.
TransformProperties ReadTransformChannels(RecordRef channels) {
  TransformProperties transform;
  transform.translation = ReadChannels(channels, "T", {});
  transform.rotation = ReadChannels(channels, "R", {});
  transform.scaling = ReadChannels(channels, "S", {1, 1, 1});
  transform.inheritType = InheritType::RSrs;
  return transform;
}

/// A colour as a property or, before version 6, as a record of its own under its old name.
KFbxVector4 ReadColour(const FbxObject& material, const Properties& properties, std::string_view name,
                       std::string_view oldName, const KFbxVector4& otherwise) {
  KFbxVector4 colour = otherwise;
  const RecordRef old = material.record.Child(oldName);
  for (size_t i = 0; i < 3; ++i) colour[i] = old.Number(i, otherwise[i]);
  return properties.Vector(name, colour);
}

}  // namespace

void SceneBuilder::CreateObjects() {
  if (table_.RootChannels())
    scene_.GetRootNode()->SetTransformProperties(ReadTransformChannels(table_.RootChannels()));
  for (size_t i = 0; i < made_.size(); ++i) made_[i] = CreateObject(table_.Objects()[i]);
}

KFbxObject* SceneBuilder::CreateObject(const FbxObject& object) {
  switch (object.kind) {
    case ObjectKind::Model:
      return CreateNode(object);
    case ObjectKind::NodeAttribute:
    case ObjectKind::Geometry:
      return CreateAttribute(object);
    case ObjectKind::Deformer:
      return CreateDeformer(object);
    case ObjectKind::Material:
      return CreateMaterial(object);
    case ObjectKind::Texture:
      return &scene_.Create<KFbxTexture>(object.name, object.record);
    case ObjectKind::LayeredTexture:
      return &scene_.Create<KFbxLayeredTexture>(object.name);
    case ObjectKind::Video:
      return &scene_.Create<KFbxVideo>(object.name, object.record);
    case ObjectKind::Pose:
      return nullptr;
  }
  return nullptr;
}

KFbxNode* SceneBuilder::CreateNode(const FbxObject& object) {
  KFbxNode& node = scene_.Create<KFbxNode>(object.name);
  const Properties properties(object.record, TemplateOf("Model"));
  node.SetTransformProperties(object.channels ? TransformOf(object.channels) : ReadTransform(properties));
  node.SetHumanBone(object.record.Child("HumanBone").Text(0));
  if (properties.Number("Visibility", 1.0) == 0.0 || properties.Integer("Show", 1) == 0) node.Hide();
  return &node;
}

/// Models of one name share the channels of a take, which may be long.
const TransformProperties& SceneBuilder::TransformOf(RecordRef channels) {
  const auto [transform, isNew] = channelTransforms_.try_emplace(channels.Index());
  if (isNew) transform->second = ReadTransformChannels(channels);
  return transform->second;
}

KFbxNodeAttribute* SceneBuilder::CreateAttribute(const FbxObject& object) {
  if (object.kind == ObjectKind::Geometry) {
    if (object.subType == "Shape") return nullptr;
    if (object.subType == "Mesh") return &scene_.Create<KFbxMesh>(object.name, object.record);
  }
  return &scene_.Create<KFbxNodeAttribute>(object.name, AttributeTypeOf(object.subType));
}

KFbxObject* SceneBuilder::CreateDeformer(const FbxObject& object) {
  if (object.subType == "Skin") return &scene_.Create<KFbxSkin>(object.name);
  if (object.subType == "Cluster") return &scene_.Create<KFbxCluster>(object.name, object.record);
  return nullptr;
}

KFbxSurfaceMaterial* SceneBuilder::CreateMaterial(const FbxObject& object) {
  const Properties properties(object.record, TemplateOf("Material"));
  const RecordRef child = object.record.Child("ShadingModel");
  const std::string_view model = child ? child.Text(0) : properties.Text("ShadingModel");
  const auto readCommon = [&](auto& material) {
    material.ambient = ReadColour(object, properties, "AmbientColor", "Ambient", {0.2, 0.2, 0.2});
    material.diffuse = ReadColour(object, properties, "DiffuseColor", "Diffuse", {0.8, 0.8, 0.8});
    material.emissive = ReadColour(object, properties, "EmissiveColor", "Emissive", {});
    material.transparencyFactor = properties.Number("TransparencyFactor", 0.0);
    return &material;
  };
  if (base::EqualsIgnoreCase(model, "lambert"))
    return readCommon(scene_.Create<KFbxSurfaceLambert>(object.name));
  if (!base::EqualsIgnoreCase(model, "phong")) return &scene_.Create<KFbxSurfaceMaterial>(object.name);
  KFbxSurfacePhong& phong = scene_.Create<KFbxSurfacePhong>(object.name);
  phong.specular = ReadColour(object, properties, "SpecularColor", "Specular", {0.2, 0.2, 0.2});
  const double oldShininess = object.record.Child("Shininess").Number(0, 20.0);
  phong.shininess = properties.Number("ShininessExponent", properties.Number("Shininess", oldShininess));
  return readCommon(phong);
}

}  // namespace scene

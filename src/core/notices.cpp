// SPDX-License-Identifier: MIT
#include "core/notices.h"

#include <cstddef>
#include <string_view>

namespace ts3d {
namespace {

constexpr NoticeText kTexts[] = {
    {Notice::InitializingEngine, nullptr, {"Initializing FBX Engine"}},
    {Notice::PluginLoaded, nullptr, {"Loaded Plug-in: {}"}},
    {Notice::LoadingFbxModel, nullptr, {"Loading FBX Model"}},
    {Notice::LoadingModel, nullptr, {"Loading Model"}},
    {Notice::ModelLoaded, nullptr, {"Model Successfully Loaded"}},
    {Notice::SdkVersion, nullptr, {"FBX version number for this SDK {}"}},
    {Notice::ModelVersion, nullptr, {"FBX version number for this model {}"}},
    {Notice::GeneratingSkeleton, nullptr, {"Generating Skeleton"}},
    {Notice::CreatingPackage, nullptr, {"Creating Tessaly 3D Studio CZP File"}},
    {Notice::ArrayDamaged, nullptr, {">>> Damaged: {}"}},
    {Notice::ModelRefused, nullptr, {">>> Refused: {}"}},
    {Notice::PackageIncomplete, nullptr, {">>> Failed to Complete CZP File"}},
    {Notice::PackageCreated, nullptr, {"Successfully created CZP File"}},
    {Notice::UpdatingPackage, nullptr, {"Updating CZP File with Final Settings"}},
    {Notice::DocumentUnreadable, nullptr, {">>> FAILED TO READ .XFG File!"}},
    {Notice::DocumentUnwritable, nullptr, {">>> FAILED TO WRITE .XFG File!"}},
    {Notice::PackageNotOpened, nullptr, {">>> Failed to Open CZP File"}},
    {Notice::PackageNotUpdated, nullptr, {">>> Failed updating CZP File"}},
    {Notice::WritingSkeleton, nullptr, {"Writing CSF Skeleton"}},
    {Notice::NoBindPose, nullptr, {">>> No Defined Bind Pose!", ">>> Skeleton may not import correctly!"}},
    {Notice::NoSkeleton, nullptr, {">>> This is NOT a rigged model as it has no skeleton!"}},
    {Notice::SeveralRoots,
     "-1",
     {">>> This skeleton does NOT have a single Root Bone",
      ">>> and will thus NOT import the rig correctly!"}},
    {Notice::MirroredBone, "100", {">>> The Bone '{}'", ">>> is 'mirrored' or 'reflected'"}},
    {Notice::UnevenScale,
     "101",
     {">>> The Bone '{}'", ">>> Has a non-uniform scale value.",
      ">>> If you see oddities in the skeleton or rigging",
      ">>> Go back to your original modeling program and", ">>> correct this, then re-export it to FBX."}},
    {Notice::LocalMatrix, "102", {">>> Bind Pose Contains LOCAL MATRIX!!!"}},
    {Notice::BoneNotInBindPose, nullptr, {"No Bind Pose Data for: {}"}},
    {Notice::UnknownLink, nullptr, {">>> Unable to Find BoneID for {}"}},
    {Notice::MeshNotInBindPose, nullptr, {"Missing Bind Pose Data for Mesh: {}"}},
    {Notice::PointsDeformed, nullptr, {"Applied Skeletal Deformation"}},
    {Notice::PolygonsLeftOut, nullptr, {">>> Left out {} Polygon(s) with vertices that do not exist in: {}"}},
    {Notice::Triangulated, nullptr, {"Triangulated the Mesh: {}"}},
    {Notice::NormalsRecreated, nullptr, {"Recreated Normal Vectors"}},
    {Notice::WritingMeshHeader, nullptr, {"Writing Mesh Header"}},
    {Notice::WritingMesh, nullptr, {"Writing CMF Mesh: {}"}},
    {Notice::DegenerateRemoved, nullptr, {">>> Removed : {} Degenerate Polygons(s)"}},
    {Notice::MeshProgress, nullptr, {"Writing Mesh: {}% done"}},
    {Notice::BadVertex, nullptr, {"Bad Write Vertex"}},
    {Notice::UnweightedVertices, nullptr, {"This model has some UNWEIGHTED vertices!\n"}},
    {Notice::MissingCoordinates, nullptr, {">>> Error getting UVs (Texture Coordinates)", ">>> for {}"}},
    {Notice::WritingMaterial, nullptr, {"Writing Material: {}"}},
    {Notice::UnknownMaterial, nullptr, {"Unkown type of Material"}},
    {Notice::PictureToConvert, nullptr, {">>> NEED TO MANUALLY CONVERT:", ">>>> {} to {}"}},
    {Notice::ConvertingPicture, nullptr, {"Converting Texture: {}"}},
    {Notice::MemberNotOpened, nullptr, {">>> Error in opening {} in zipfile"}},
    {Notice::MemberNotWritten, nullptr, {">>> Error in writing {} to the zip file"}},
    {Notice::MemberNotClosed, nullptr, {">>> Error in closing {} in the zip file"}},
    {Notice::FileNotOpened, nullptr, {">>> Error in opening {} for reading"}},
    {Notice::FileNotRead, nullptr, {">>> Error in reading {}"}},
    {Notice::NoMemory, nullptr, {">>> Error allocating memory"}}};

/// They are looked up by their place.
constexpr bool AreInOrder() {
  for (size_t i = 0; i < std::size(kTexts); ++i) {
    if (kTexts[i].notice != Notice{static_cast<int>(i)}) return false;
  }
  return std::size(kTexts) == static_cast<size_t>(Notice::NoMemory) + 1;
}
static_assert(AreInOrder());

}  // namespace

const NoticeText& TextOf(Notice notice) { return kTexts[static_cast<size_t>(notice)]; }

bool IsProgress(Notice notice) {
  return notice == Notice::MeshProgress || notice == Notice::ConvertingPicture;
}

bool IsFault(Notice notice) {
  const NoticeText& text = TextOf(notice);
  return text.tag || std::string_view(text.lines[0]).starts_with(">>>");
}

}  // namespace ts3d

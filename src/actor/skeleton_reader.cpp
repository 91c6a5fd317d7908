// SPDX-License-Identifier: MIT
#include "actor/skeleton_reader.h"

#include "base/byte_cursor.h"

namespace actor {
namespace {

constexpr std::string_view kSkeletonMagic("CSF\0", 4);
constexpr int32_t kSkeletonVersion = 900;
constexpr size_t kSmallestBone = 4 + 1 + 12 + 16 + 12 + 16 + 4 + 4;

bool ReadName(base::ByteCursor& in, std::string& name) {
  const int32_t length = in.Number<int32_t>();
  if (length < 1 || !in.HasRoomFor(length, 1)) return false;
  const std::string_view text = in.Bytes(static_cast<size_t>(length));
  if (text.find('\0') != text.size() - 1) return false;
  name = text.substr(0, text.size() - 1);
  return true;
}

/// @return null, or what is wrong with the bone
const char* ReadBone(base::ByteCursor& in, int32_t number, Bone& bone) {
  if (!ReadName(in, bone.name)) return "its name has no end";
  bone.translation = in.Numbers<float, 3>();
  bone.rotation = in.Numbers<float, 4>();
  bone.boneSpaceTranslation = in.Numbers<float, 3>();
  bone.boneSpaceRotation = in.Numbers<float, 4>();
  bone.parent = in.Number<int32_t>();
  if (bone.parent < -1 || bone.parent >= number) return "its parent does not come before it";
  const int32_t childCount = in.Number<int32_t>();
  if (!in.HasRoomFor(childCount, 4)) return "it has more children than the file has room for";
  bone.children.resize(static_cast<size_t>(childCount));
  for (int32_t& child : bone.children) child = in.Number<int32_t>();
  return in.Failed() ? "the file ends within it" : nullptr;
}

/// Whether each bone is listed once by its parent and by nobody else.
bool ChildrenFitParents(const std::vector<Bone>& bones) {
  std::vector<bool> listed(bones.size());
  for (size_t i = 0; i < bones.size(); ++i) {
    for (const int32_t child : bones[i].children) {
      const auto place = static_cast<size_t>(child);
      if (child < 0 || place >= bones.size() || listed[place]) return false;
      if (bones[place].parent != static_cast<int32_t>(i)) return false;
      listed[place] = true;
    }
  }
  for (size_t i = 0; i < bones.size(); ++i) {
    if (listed[i] != (bones[i].parent >= 0)) return false;
  }
  return true;
}

bool ReadBones(std::string_view bytes, std::vector<Bone>& bones, std::string& error) {
  base::ByteCursor in(bytes);
  if (in.Bytes(4) != kSkeletonMagic) return error = "it is not a skeleton file", false;
  if (in.Number<int32_t>() != kSkeletonVersion) return error = "it is of an unknown version", false;
  const int32_t count = in.Number<int32_t>();
  if (count < 1 || !in.HasRoomFor(count, kSmallestBone)) {
    return error = "its number of bones does not fit its size", false;
  }
  bones.resize(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) {
    if (const char* wrong = ReadBone(in, i, bones[static_cast<size_t>(i)])) {
      return error = "bone " + std::to_string(i) + ": " + wrong, false;
    }
  }
  if (in.Remaining() > 0) return error = "bytes follow its end", false;
  if (!ChildrenFitParents(bones)) return error = "its lists of children contradict the parents", false;
  return true;
}

}  // namespace

bool ReadSkeleton(std::string_view bytes, Skeleton& skeleton, std::string& error) {
  skeleton.bones.clear();
  if (ReadBones(bytes, skeleton.bones, error)) return true;
  skeleton.bones.clear();
  return false;
}

}  // namespace actor

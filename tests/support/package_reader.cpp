// SPDX-License-Identifier: MIT
#include "support/package_reader.h"

#include <gtest/gtest.h>
#include <minizip/unzip.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace support {
namespace {

void Require(bool condition, const char* what) {
  if (!condition) throw std::runtime_error(what);
}

class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  std::string_view Bytes(size_t size) {
    Require(size <= bytes_.size(), "the file is too short");
    const std::string_view part = bytes_.substr(0, size);
    bytes_.remove_prefix(size);
    return part;
  }
  int32_t Int() {
    uint32_t word = 0;
    const std::string_view part = Bytes(4);
    for (size_t i = 4; i-- > 0;) word = word << 8 | static_cast<unsigned char>(part[i]);
    return static_cast<int32_t>(word);
  }
  /// A number of things that take `size` bytes at least.
  size_t Count(size_t size) {
    const int32_t count = Int();
    Require(count >= 0 && static_cast<size_t>(count) <= bytes_.size() / size, "impossible count");
    return static_cast<size_t>(count);
  }
  float Float() {
    const int32_t bits = Int();
    float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
  }
  template <size_t N>
  std::array<float, N> Floats() {
    std::array<float, N> values{};
    for (float& value : values) value = Float();
    return values;
  }
  void Expect(std::initializer_list<int32_t> values, const char* what) {
    for (const int32_t value : values) Require(Int() == value, what);
  }
  void ExpectEnd() const { Require(bytes_.empty(), "bytes after the end"); }

 private:
  std::string_view bytes_;
};

CsfBone ReadBone(Reader& in) {
  CsfBone bone;
  const size_t length = in.Count(1);
  const std::string_view name = in.Bytes(length);
  Require(length > 0 && name.find('\0') == length - 1, "bone name without its end");
  bone.name = name.substr(0, length - 1);
  bone.translation = in.Floats<3>();
  bone.rotation = in.Floats<4>();
  bone.spaceTranslation = in.Floats<3>();
  bone.spaceRotation = in.Floats<4>();
  bone.parent = in.Int();
  for (size_t i = in.Count(4); i > 0; --i) bone.children.push_back(in.Int());
  return bone;
}

CmfVertex ReadVertex(Reader& in) {
  CmfVertex vertex;
  vertex.position = in.Floats<3>();
  vertex.normal = in.Floats<3>();
  in.Expect({0, 0}, "collapse identifier and count");
  vertex.u = in.Float();
  vertex.v = in.Float();
  const size_t count = in.Count(8);
  Require(count > 0, "vertex without influences");
  for (size_t i = 0; i < count; ++i) {
    const int32_t bone = in.Int();
    vertex.influences.emplace_back(bone, in.Float());
  }
  return vertex;
}

/// A record of two-byte words that ends the archive; it must be the file's last and without a comment.
void RequireBareEnd(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  char end[22];
  Require(file && std::fseek(file.get(), -22, SEEK_END) == 0 && std::fread(end, 1, 22, file.get()) == 22 &&
              std::string_view(end, 4) == "PK\5\6" && end[20] == 0 && end[21] == 0,
          "the archive's end record is not its end");
}

Member ReadMember(unzFile zip) {
  unz_file_info64 info{};
  char name[8192];
  Require(unzGetCurrentFileInfo64(zip, &info, name, sizeof name, nullptr, 0, nullptr, 0) == UNZ_OK,
          "member without a header");
  Require(info.compression_method == 8 && info.flag % 2 == 0, "member not deflated, or encrypted");
  Require(info.size_file_extra == 0 && info.size_file_comment == 0, "member with extras");
  Require(info.size_filename < sizeof name, "member name too long");
  Require(unzOpenCurrentFile(zip) == UNZ_OK, "member cannot be opened");
  std::string bytes(info.uncompressed_size + 1, '\0');
  const int read = unzReadCurrentFile(zip, bytes.data(), static_cast<unsigned>(bytes.size()));
  Require(read >= 0 && static_cast<uint64_t>(read) == info.uncompressed_size, "member of another size");
  Require(unzCloseCurrentFile(zip) == UNZ_OK, "member with a wrong checksum");
  bytes.pop_back();
  return {std::string(name, info.size_filename), std::move(bytes)};
}

}  // namespace

std::vector<CsfBone> ReadCsf(std::string_view bytes) {
  Reader in(bytes);
  Require(in.Bytes(4) == std::string_view("CSF\0", 4), "no skeleton file");
  in.Expect({900}, "skeleton version");
  std::vector<CsfBone> bones;
  for (size_t i = in.Count(4); i > 0; --i) bones.push_back(ReadBone(in));
  in.ExpectEnd();
  return bones;
}

CmfMesh ReadCmf(std::string_view bytes) {
  Reader in(bytes);
  CmfMesh mesh;
  Require(in.Bytes(4) == std::string_view("CMF\0", 4), "no mesh file");
  in.Expect({1000, 1}, "mesh version and submesh count");
  mesh.threadId = in.Int();
  const size_t vertexCount = in.Count(1), faceCount = in.Count(1);
  in.Expect({0, 0, 1}, "level-of-detail steps, springs and texture maps");
  for (size_t i = 0; i < vertexCount; ++i) mesh.vertices.push_back(ReadVertex(in));
  for (size_t i = 0; i < faceCount; ++i) {
    auto& face = mesh.faces.emplace_back();
    for (int32_t& corner : face) {
      corner = in.Int();
      Require(corner >= 0 && static_cast<size_t>(corner) < vertexCount, "corner without a vertex");
    }
  }
  in.ExpectEnd();
  return mesh;
}

Package::Package(const std::string& path) {
  RequireBareEnd(path);
  const std::unique_ptr<void, int (*)(unzFile)> zip(unzOpen64(path.c_str()), unzClose);
  unz_global_info64 info{};
  Require(zip && unzGetGlobalInfo64(zip.get(), &info) == UNZ_OK, "no archive");
  for (uint64_t i = 0; i < info.number_entry; ++i) {
    Require((i == 0 ? unzGoToFirstFile(zip.get()) : unzGoToNextFile(zip.get())) == UNZ_OK, "lost member");
    members_.push_back(ReadMember(zip.get()));
  }
}

std::string Package::Names() const {
  std::string names;
  for (const Member& member : members_) names += (names.empty() ? "" : " ") + member.name;
  return names;
}

size_t Package::Count(std::string_view name) const {
  return static_cast<size_t>(std::count_if(members_.begin(), members_.end(),
                                           [&](const Member& member) { return member.name == name; }));
}

const std::string& Package::operator[](std::string_view name) const {
  const auto member =
      std::find_if(members_.rbegin(), members_.rend(), [&](const Member& each) { return each.name == name; });
  Require(member != members_.rend(), "no such member");
  return member->bytes;
}

void CheckPackage(const Package& package) {
  const std::vector<CsfBone> bones = ReadCsf(package["skeleton.csf"]);
  const auto boneCount = static_cast<int32_t>(bones.size());
  EXPECT_GT(boneCount, 0);
  for (const CsfBone& bone : bones) {
    EXPECT_TRUE(bone.parent >= -1 && bone.parent < boneCount) << bone.name;
    for (const int32_t child : bone.children) EXPECT_TRUE(child > bone.parent && child < boneCount) << child;
  }
  for (const auto& [name, bytes] : package.Members()) {
    if (!name.ends_with(".cmf") || bytes.empty()) continue;
    for (const CmfVertex& vertex : ReadCmf(bytes).vertices) {
      float sum = 0;
      for (const auto& [bone, weight] : vertex.influences) {
        EXPECT_TRUE(bone >= 0 && bone < boneCount) << name << " names bone " << bone;
        sum += weight;
      }
      if (std::isfinite(sum)) {
        EXPECT_NEAR(sum, 1.0f, 1e-3f) << name;
      }
    }
  }
}

}  // namespace support

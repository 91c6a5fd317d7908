// SPDX-License-Identifier: MIT
#include "host/input_problem.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "base/plain_text.h"
#include "core/names.h"
#include "host/host_paths.h"
#include "package/read_member.h"
#include "platform/files.h"
#include "scene/other/model_kinds.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace fs = platform::fs;
namespace {

using namespace std::string_view_literals;

constexpr size_t kHeadSize = 4096;

struct KnownFile {
  std::string_view beginning;
  const char* text;
};

constexpr const char* kGzip = "this is compressed with gzip; unpack it first, with gunzip";
constexpr const char* kBlend = "this is a Blender file; export the model from Blender as FBX";
constexpr const char* kPage = "this is a web page, as a failed download leaves; fetch the file again";
constexpr const char* kPicture = "this is a picture";
constexpr const char* kUsd = "this is a USD file; export the model as FBX";
constexpr const char* kMaya = "this is a Maya scene; export the model from Maya as FBX";
constexpr const char* kArchive = "this is an archive; unpack it and use what is in it";

/// Bytes that a file begins with, of whatever use it was to be.
constexpr KnownFile kAnyUse[] = {
    {"version https://git-lfs.github.com/spec/",
     "this is only the Git LFS pointer to the file; run \"git lfs pull\" in its folder to fetch the file"},
    {"\x1f\x8b", kGzip},
    {"\x28\xb5\x2f\xfd", "this is compressed with zstd; unpack it first, with unzstd"},
    {"BZh", "this is compressed with bzip2; unpack it first, with bunzip2"},
    {"\xfd"
     "7zXZ",
     "this is compressed with xz; unpack it first, with unxz"},
    {"7z\xbc\xaf\x27\x1c", kArchive},
    {"Rar!", kArchive},
    {"BLENDER", kBlend},
    {"PXR-USDC", kUsd},
    {"#usda", kUsd},
    {"//Maya ASCII", kMaya},
    {"\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1",
     "this is a 3ds Max scene, or an Office file; export the model as FBX"},
    {"Pmd\0\0\x80\x3f"sv, "this is a PMD model; save it as PMX and convert that"},
    {"INTERQUAKEMODEL",
     "this is an IQM model, of which no skeleton is read; export the model as FBX or glTF"},
    {"MS3D000000", "this is a MilkShape 3D model; export it as FBX, glTF or SMD"},
    {"\0\x10[MeshSerializer"sv, "this is an Ogre mesh; export the model as FBX or glTF"},
    {"\x89PNG", kPicture},
    {"\xff\xd8\xff", kPicture},
    {"%PDF", "this is a PDF file"},
    {"<!DOCTYPE html", kPage},
    {"<!doctype html", kPage},
    {"<html", kPage}};

constexpr KnownFile kModelsOnly[] = {
    {"Kaydara FBX", "this is an FBX model; \"fbx2czp convert\" makes a package of it"},
    {"; FBX", "this is an FBX model; \"fbx2czp convert\" makes a package of it"},
    {"glTF", "this is a glTF file; \"fbx2czp convert\" makes a package of it"},
    {"{", "this is text in JSON; if it is a glTF file, \"fbx2czp convert\" makes a package of it"}};

std::string ReadHead(const fs::path& path) {
  std::string head(kHeadSize, '\0');
  const platform::FilePtr file = platform::OpenFile(path.string(), "rb");
  head.resize(file ? std::fread(head.data(), 1, head.size(), file.get()) : 0);
  return head;
}

template <class List>
const char* Find(std::string_view head, const List& list) {
  for (const KnownFile& known : list) {
    if (head.starts_with(known.beginning)) return known.text;
  }
  return nullptr;
}

/// @param head  of the file, which is not empty
std::string RecogniseAny(const fs::path& path, std::string_view head) {
  const std::string_view text = base::TextStart(head);
  const bool isBlend = HasExtension(path, ".blend");
  if (const char* known = Find(head, kAnyUse)) return isBlend ? kBlend : known;
  if (const char* known = Find(text, kAnyUse)) return known;
  if (head.starts_with("FOR4") || head.starts_with("FOR8")) return kMaya;
  if (head.find_first_not_of('\0') == head.npos)
    return "this begins with nothing but zeros, as an interrupted download leaves; fetch the file again";
  return {};
}

}  // namespace

std::optional<InputProblem> FindInputProblem(const fs::path& path, bool takesFolders) {
  std::error_code failed;
  const fs::file_status status = fs::status(path, failed);
  if (status.type() == fs::file_type::not_found) return InputProblem{kNoInput, "the file does not exist"};
  if (failed) return InputProblem{kNoInput, "the file cannot be looked at: " + failed.message()};
  if (fs::is_directory(status)) {
    if (takesFolders) return std::nullopt;
    return InputProblem{kUnreadable, "this is a folder"};
  }
  if (!fs::is_regular_file(status)) return InputProblem{kUnreadable, "this is not a file"};
  if (!platform::OpenFile(path.string(), "rb")) {
    const int reason = errno;
    return InputProblem{kNoInput, reason == EACCES
                                      ? "there is no permission to read the file"
                                      : "the file cannot be opened: " + std::string(std::strerror(reason))};
  }
  if (fs::file_size(path, failed) == 0 && !failed) return InputProblem{kUnreadable, "the file is empty"};
  return std::nullopt;
}

std::string RecogniseModel(const fs::path& path) {
  const std::string head = ReadHead(path);
  if (head.starts_with("PK\3\4")) {
    for (const ts3d::MemberSize& member : ts3d::ListMembers(path.string())) {
      if (ts3d::HasExtension(member.name, ".cmf") || ts3d::HasExtension(member.name, ".csf"))
        return "this is a package already; \"fbx2czp inspect\" and \"fbx2czp preview\" show what is in it";
    }
    return "this is a zip archive; unpack it and convert the model that is in it";
  }
  return head.empty() ? std::string() : RecogniseAny(path, head);
}

std::string RecognisePackage(const fs::path& path) {
  const std::string head = ReadHead(path);
  if (head.empty() || head.starts_with("PK")) return {};
  if (const char* model = Find(head, kModelsOnly)) return model;
  std::string known = RecogniseAny(path, head);
  if (!known.empty()) return known;
  for (const scene::other::ModelKind& kind : scene::other::ModelKinds()) {
    if (kind.detects(head))
      return "this is a model (" + std::string(kind.name) + "); \"fbx2czp convert\" makes a package of it";
  }
  return {};
}

}  // namespace cli

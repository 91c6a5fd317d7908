// SPDX-License-Identifier: MIT
#include "actor/mesh_reader.h"

#include <utility>

#include "base/byte_cursor.h"

namespace actor {
namespace {

constexpr std::string_view kMeshMagic("CMF\0", 4);
constexpr int32_t kMeshVersion = 1000;
constexpr size_t kSmallestVertex = 12 + 12 + 4 + 4 + 8 + 4;
constexpr size_t kFaceSize = 12;
constexpr size_t kInfluenceSize = 8;

/// @return null, or what is wrong with the vertex
const char* ReadVertex(base::ByteCursor& in, Mesh& mesh, Vertex& vertex) {
  vertex.position = in.Numbers<float, 3>();
  vertex.normal = in.Numbers<float, 3>();
  in.Number<int32_t>();  // collapse number
  in.Number<int32_t>();  // face-collapse count
  vertex.uv = in.Numbers<float, 2>();
  const int32_t count = in.Number<int32_t>();
  if (in.Failed() || !in.HasRoomFor(count, kInfluenceSize)) return "the file ends within it";
  vertex.firstInfluence = static_cast<uint32_t>(mesh.influences.size());
  vertex.influenceCount = static_cast<uint32_t>(count);
  for (int32_t i = 0; i < count; ++i) {
    const int32_t bone = in.Number<int32_t>();
    if (bone < 0) return "it hangs on a bone with a negative number";
    mesh.influences.push_back({bone, in.Number<float>()});
  }
  return nullptr;
}

bool ReadFaces(base::ByteCursor& in, Mesh& mesh, std::string& error) {
  const auto vertexCount = static_cast<int32_t>(mesh.vertices.size());
  for (size_t i = 0; i < mesh.faces.size(); ++i) {
    for (int32_t& corner : mesh.faces[i]) {
      corner = in.Number<int32_t>();
      if (corner >= 0 && corner < vertexCount) continue;
      error = "face " + std::to_string(i) + " names vertex " + std::to_string(corner) + ", but there are " +
              std::to_string(vertexCount);
      return false;
    }
  }
  return true;
}

bool ReadHeader(base::ByteCursor& in, Mesh& mesh, std::string& error) {
  if (in.Bytes(4) != kMeshMagic) return error = "it is not a mesh file", false;
  if (in.Number<int32_t>() != kMeshVersion) return error = "it is of an unknown version", false;
  if (in.Number<int32_t>() != 1) return error = "it does not hold one submesh", false;
  mesh.threadId = in.Number<int32_t>();
  const int32_t vertexCount = in.Number<int32_t>(), faceCount = in.Number<int32_t>();
  const int32_t levels = in.Number<int32_t>(), springs = in.Number<int32_t>(), maps = in.Number<int32_t>();
  if (levels != 0 || springs != 0 || maps != 1) {
    return error = "it has levels of detail, springs or not one texture map", false;
  }
  if (!in.HasRoomFor(vertexCount, kSmallestVertex) || !in.HasRoomFor(faceCount, kFaceSize)) {
    return error = "its numbers of vertices and faces do not fit its size", false;
  }
  mesh.vertices.resize(static_cast<size_t>(vertexCount));
  mesh.faces.resize(static_cast<size_t>(faceCount));
  return true;
}

bool ReadBody(base::ByteCursor& in, Mesh& mesh, std::string& error) {
  for (size_t i = 0; i < mesh.vertices.size(); ++i) {
    if (const char* wrong = ReadVertex(in, mesh, mesh.vertices[i])) {
      return error = "vertex " + std::to_string(i) + ": " + wrong, false;
    }
  }
  if (in.Remaining() != mesh.faces.size() * kFaceSize) {
    return error = in.Remaining() < mesh.faces.size() * kFaceSize ? "it ends within its faces"
                                                                  : "bytes follow its end",
           false;
  }
  return ReadFaces(in, mesh, error);
}

}  // namespace

bool ReadMesh(std::string_view bytes, Mesh& mesh, std::string& error) {
  std::string name = std::move(mesh.name);
  mesh = {};
  base::ByteCursor in(bytes);
  const bool read = ReadHeader(in, mesh, error) && ReadBody(in, mesh, error);
  if (!read) mesh = {};
  mesh.name = std::move(name);
  return read;
}

}  // namespace actor

// SPDX-License-Identifier: MIT
#include "mesh/cmf_writer.h"

#include <algorithm>

#include "core/file_writer.h"
#include "package/actor_package.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {
namespace {

constexpr int32_t kMeshVersion = 1000;
constexpr size_t kProgressSteps = 20;

class CmfWriter {
 public:
  CmfWriter(const MeshData& mesh, TextureCoordinates& coordinates, const BoneTree& bones,
            const MeshFileOutput& out, const std::string& fileName)
      : mesh_(mesh),
        coordinates_(coordinates),
        status_(out.status),
        out_(out.files, fileName),
        warned_(OnlyDummyBone(bones)) {}

  void WriteHeader(int32_t threadId, size_t vertexCount, size_t faceCount) {
    out_.Bytes("CMF", 4);
    out_.Int32(kMeshVersion);
    out_.Int32(1);  // submeshes
    out_.Int32(threadId);
    out_.Int32(static_cast<int32_t>(vertexCount));
    out_.Int32(static_cast<int32_t>(faceCount));
    out_.Int32(0);  // level-of-detail steps
    out_.Int32(0);  // springs
    out_.Int32(1);  // texture maps
  }

  void WriteVertex(size_t index) {
    ReportProgress(index);
    const FullPointData& record = mesh_.records[index];
    const auto point = static_cast<size_t>(record.controlPoint);
    for (size_t axis = 0; axis < 3; ++axis) out_.Float32(static_cast<float>(mesh_.points[3 * point + axis]));
    for (size_t axis = 0; axis < 3; ++axis) out_.Float32(mesh_.normals[3 * point + axis]);
    out_.Int32(0);  // collapse identifier
    out_.Int32(0);  // face-collapse count
    const TextureCoordinate uv = coordinates_.Of(index, record);
    out_.Float32(static_cast<float>(uv.u));
    out_.Float32(1.0f - static_cast<float>(uv.v));
    WriteInfluences(record);
  }

  void WriteFace(size_t triangle, std::span<const int32_t> outputIndex) {
    for (size_t k = 0; k < 3; ++k) {
      const int32_t record = mesh_.triangles.corners[3 * triangle + k];
      const int32_t output = outputIndex.empty() ? record : outputIndex[static_cast<size_t>(record)];
      if (output == -1) {
        status_.Send(Notice::BadVertex);
      } else {
        out_.Int32(output);
      }
    }
  }

  bool Finish() { return out_.Finish(); }

 private:
  /// A model without a skeleton has no weights, which is no news.
  static bool OnlyDummyBone(const BoneTree& bones) {
    return bones.BoneCount() == 1 && bones.Root().children[0]->name == "dummy_bone";
  }

  void ReportProgress(size_t index) {
    const size_t step = std::max<size_t>(mesh_.records.size() / kProgressSteps, 1);
    if (index % step != 0) return;
    status_.Send(Notice::MeshProgress, std::to_string(index / step * 5));
  }

  void WriteInfluences(const FullPointData& record) {
    const std::span<const BoneWeight> influences = record.influenceList == -1
                                                       ? std::span<const BoneWeight>()
                                                       : mesh_.influences.Of(record.influenceList);
    if (influences.empty()) {
      out_.Int32(1);
      out_.Int32(0);
      out_.Float32(1.0f);
      if (!warned_) status_.Send(Notice::UnweightedVertices);
      warned_ = true;
      return;
    }
    float sum = 0.0f;
    for (const BoneWeight& influence : influences) sum += influence.weight;
    const float reciprocal = 1.0f / sum;
    out_.Int32(static_cast<int32_t>(influences.size()));
    for (const BoneWeight& influence : influences) {
      out_.Int32(influence.bone);
      out_.Float32(influence.weight * reciprocal);
    }
  }

  const MeshData& mesh_;
  TextureCoordinates& coordinates_;
  const StatusChannel& status_;
  WorkFileWriter out_;
  bool warned_;
};

}  // namespace

void WriteCmfFile(const MeshSlice& slice, const MeshData& mesh, TextureCoordinates& coordinates,
                  std::span<int32_t> outputIndex, const BoneTree& bones, int32_t threadId,
                  const MeshFileOutput& out) {
  const std::string fileName = slice.name + ".cmf";
  out.package.WorkFileBegins(fileName);
  CmfWriter writer(mesh, coordinates, bones, out, fileName);
  writer.WriteHeader(threadId, slice.VertexCount(mesh), slice.FaceCount(mesh));
  if (slice.whole) {
    for (size_t i = 0; i < mesh.records.size(); ++i) writer.WriteVertex(i);
    for (size_t i = 0; i < mesh.triangles.Count(); ++i) writer.WriteFace(i, {});
  } else {
    for (size_t i = 0; i < slice.records.size(); ++i) {
      const auto record = static_cast<size_t>(slice.records[i]);
      outputIndex[record] = static_cast<int32_t>(i);
      writer.WriteVertex(record);
    }
    for (const uint32_t triangle : slice.triangles) writer.WriteFace(triangle, outputIndex);
  }
  if (writer.Finish()) out.package.WorkFileEnds(fileName);
}

}  // namespace ts3d

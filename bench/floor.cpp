// SPDX-License-Identifier: MIT
// The least work that a conversion can be: read the model and unpack its arrays, make bytes like those of the
// mesh files, deflate them into an archive. No checks, no bones, no materials, no document, no work files.
//
//   floor MODEL OUT.zip [LEVEL]     with a level: deflated by libdeflate instead of zlib
#include <libdeflate.h>
#include <minizip/zip.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "floor_document.h"

namespace bench {
namespace {

struct Influence {
  int32_t bone;
  float weight;
};

struct Corner {
  int32_t point, uv;
};

struct Vertex {
  int32_t point, uv;
  int32_t next = -1;  ///< the next vertex of the same point
};

class Mesh {
 public:
  Mesh(const Object& geometry, const std::vector<const Object*>& clusters)
      : geometry_(geometry), pointCount_(geometry["Vertices"].count / 3) {
    CutIntoTriangles();
    GatherInfluences(clusters);
    MovePoints(clusters);
    AddUpNormals();
    SplitVertices();
  }

  /// One mesh file for each material that some triangle has.
  std::vector<std::string> Files() const {
    std::vector<std::string> files;
    const int32_t last = materials_.empty() ? 0 : *std::max_element(materials_.begin(), materials_.end());
    for (int32_t material = 0; material <= last; ++material) {
      if (materials_.empty() ||
          std::find(materials_.begin(), materials_.end(), material) != materials_.end()) {
        files.push_back(File(material));
      }
    }
    return files;
  }

 private:
  void CutIntoTriangles() {
    const Array &table = geometry_["PolygonVertexIndex"], &uvs = geometry_["UVIndex"];
    const Array& materials = geometry_["Materials"];
    corners_.reserve(table.count);
    const auto corner = [&](size_t i) {
      const int32_t point = table.Ints()[i];
      corners_.push_back({point < 0 ? ~point : point, i < uvs.count ? uvs.Ints()[i] : 0});
    };
    for (size_t i = 0, first = 0, polygon = 0; i < table.count; ++i) {
      if (table.Ints()[i] >= 0) continue;
      for (size_t k = first + 2; k <= i; ++k) {
        for (const size_t c : {first, k - 1, k}) corner(c);
        if (materials.count > 1) materials_.push_back(materials.Ints()[polygon]);
      }
      first = i + 1;
      ++polygon;
    }
  }

  void GatherInfluences(const std::vector<const Object*>& clusters) {
    rows_.resize(pointCount_ + 2);
    for (const Object* cluster : clusters) {
      const Array& indices = (*cluster)["Indexes"];
      for (size_t i = 0; i < indices.count; ++i) ++rows_[static_cast<size_t>(indices.Ints()[i]) + 2];
    }
    for (size_t i = 2; i < rows_.size(); ++i) rows_[i] += rows_[i - 1];
    influences_.resize(rows_.back());
    int32_t bone = 0;
    for (const Object* cluster : clusters) {
      const Array &indices = (*cluster)["Indexes"], &weights = (*cluster)["Weights"];
      for (size_t i = 0; i < indices.count; ++i) {
        influences_[rows_[static_cast<size_t>(indices.Ints()[i]) + 1]++] = {
            bone, static_cast<float>(weights.Doubles()[i])};
      }
      ++bone;
    }
  }

  void MovePoints(const std::vector<const Object*>& clusters) {
    std::vector<std::array<double, 16>> matrices;
    for (const Object* cluster : clusters) {
      const double *a = (*cluster)["Transform"].Doubles(), *b = (*cluster)["TransformLink"].Doubles();
      std::array<double, 16>& m = matrices.emplace_back();
      for (size_t i = 0; a && b && i < 64; ++i)
        m[i / 16 * 4 + i % 4] += a[i / 16 * 4 + i / 4 % 4] * b[i / 4 % 4 * 4 + i % 4];
    }
    const double* source = geometry_["Vertices"].Doubles();
    points_.assign(source, source + 3 * pointCount_);
    for (size_t i = 0; i < pointCount_; ++i) {
      if (rows_[i] == rows_[i + 1]) continue;
      std::array<double, 16> blend{};
      double sum = 0.0;
      for (uint32_t k = rows_[i]; k < rows_[i + 1]; ++k) {
        const std::array<double, 16>& m = matrices[static_cast<size_t>(influences_[k].bone)];
        const double weight = static_cast<double>(influences_[k].weight);
        for (size_t j = 0; j < 16; ++j) blend[j] += weight * m[j];
        sum += weight;
      }
      double* p = &points_[3 * i];
      const double x = p[0], y = p[1], z = p[2];
      for (size_t j = 0; j < 3; ++j)
        p[j] = (x * blend[j] + y * blend[4 + j] + z * blend[8 + j] + blend[12 + j]) / sum;
    }
  }

  void AddUpNormals() {
    normals_.resize(points_.size());
    for (size_t t = 0; t + 2 < corners_.size(); t += 3) {
      const double* p[3];
      for (size_t k = 0; k < 3; ++k) p[k] = &points_[3 * static_cast<size_t>(corners_[t + k].point)];
      double u[3], v[3];
      for (size_t j = 0; j < 3; ++j) u[j] = p[1][j] - p[0][j], v[j] = p[2][j] - p[0][j];
      const double n[3] = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
      for (size_t k = 0; k < 3; ++k) {
        for (size_t j = 0; j < 3; ++j) normals_[3 * static_cast<size_t>(corners_[t + k].point) + j] += n[j];
      }
    }
    for (size_t i = 0; i < normals_.size(); i += 3) {
      double* n = &normals_[i];
      const double length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
      for (size_t j = 0; length > 0.0 && j < 3; ++j) n[j] /= length;
    }
  }

  /// Gives every corner a vertex with its coordinate; the vertices of a point form a chain.
  void SplitVertices() {
    vertices_.resize(pointCount_);
    for (size_t i = 0; i < pointCount_; ++i) vertices_[i] = {static_cast<int32_t>(i), -1};
    for (Corner& corner : corners_) {
      auto v = static_cast<size_t>(corner.point);
      if (vertices_[v].uv < 0) vertices_[v].uv = corner.uv;
      while (vertices_[v].uv != corner.uv) {
        if (vertices_[v].next < 0) {
          vertices_[v].next = static_cast<int32_t>(vertices_.size());
          vertices_.push_back({vertices_[v].point, corner.uv});
        }
        v = static_cast<size_t>(vertices_[v].next);
      }
      corner.point = static_cast<int32_t>(v);
    }
  }

  std::string File(int32_t material) const {
    const auto isOurs = [&](size_t triangle) {
      return materials_.empty() || materials_[triangle] == material;
    };
    std::vector<int32_t> numbers(vertices_.size(), materials_.empty() ? 0 : -1);
    int32_t faceCount = 0, vertexCount = 0;
    for (size_t c = 0; c < corners_.size(); ++c) {
      if (isOurs(c / 3)) numbers[static_cast<size_t>(corners_[c].point)] = 0, ++faceCount;
    }
    faceCount /= 3;
    size_t size = 36 + 12 * static_cast<size_t>(faceCount);
    for (size_t v = 0; v < vertices_.size(); ++v) {
      if (numbers[v] < 0) continue;
      numbers[v] = vertexCount++;
      size += 44 + 8 * std::max<size_t>(Row(vertices_[v]).second, 1);
    }
    std::string bytes(size, '\0');
    char* out = bytes.data();
    const auto put = [&](auto value) {
      std::memcpy(out, &value, sizeof value);
      out += sizeof value;
    };
    for (const int32_t n : {0x00464d43, 1000, 1, 151, vertexCount, faceCount, 0, 0, 1}) put(n);
    for (size_t v = 0; v < vertices_.size(); ++v) {
      if (numbers[v] >= 0) PutVertex(vertices_[v], put);
    }
    for (size_t c = 0; c < corners_.size(); ++c) {
      if (isOurs(c / 3)) put(numbers[static_cast<size_t>(corners_[c].point)]);
    }
    return bytes;
  }

  template <typename Put>
  void PutVertex(const Vertex& vertex, const Put& put) const {
    const auto point = 3 * static_cast<size_t>(vertex.point);
    for (size_t j = 0; j < 3; ++j) put(static_cast<float>(points_[point + j]));
    for (size_t j = 0; j < 3; ++j) put(static_cast<float>(normals_[point + j]));
    put(int64_t{0});
    const Array& uvs = geometry_["UV"];
    const auto uv = 2 * static_cast<size_t>(std::max(vertex.uv, 0));
    const bool mapped = uv + 1 < uvs.count;
    put(mapped ? static_cast<float>(uvs.Doubles()[uv]) : 0.0f);
    put(1.0f - (mapped ? static_cast<float>(uvs.Doubles()[uv + 1]) : 0.0f));
    const auto [row, count] = Row(vertex);
    if (count == 0) {
      put(1);
      put(0);
      return put(1.0f);
    }
    put(static_cast<int32_t>(count));
    float sum = 0.0f;
    for (size_t k = 0; k < count; ++k) sum += row[k].weight;
    for (size_t k = 0; k < count; ++k) put(Influence{row[k].bone, row[k].weight / sum});
  }

  std::pair<const Influence*, size_t> Row(const Vertex& vertex) const {
    const auto point = static_cast<size_t>(vertex.point);
    return {influences_.data() + rows_[point], rows_[point + 1] - rows_[point]};
  }

  const Object& geometry_;
  size_t pointCount_;
  std::vector<Corner> corners_;
  std::vector<int32_t> materials_;  ///< by triangle; empty when all have the same
  std::vector<uint32_t> rows_;      ///< where the influences of each point start
  std::vector<Influence> influences_;
  std::vector<double> points_, normals_;
  std::vector<Vertex> vertices_;
};

std::vector<std::string> MeshFiles(const Document& document) {
  const auto childrenOf = [&](int64_t id) { return document.children.equal_range(id); };
  std::vector<std::string> files;
  for (const auto& [id, object] : document.objects) {
    if (object.kind != "Geometry" || object["Vertices"].count == 0 || object["PolygonVertexIndex"].count == 0)
      continue;
    std::vector<const Object*> clusters;
    for (auto [skin, skinEnd] = childrenOf(id); skin != skinEnd; ++skin) {
      for (auto [child, end] = childrenOf(skin->second); child != end; ++child) {
        const auto found = document.objects.find(child->second);
        if (found != document.objects.end() && found->second.subType == "Cluster")
          clusters.push_back(&found->second);
      }
    }
    for (std::string& file : Mesh(object, clusters).Files()) files.push_back(std::move(file));
  }
  return files;
}

void OpenMember(zipFile zip, size_t number, bool isRaw) {
  const zip_fileinfo info{};
  zipOpenNewFileInZip2(zip, ("mesh" + std::to_string(number)).c_str(), &info, nullptr, 0, nullptr, 0, "",
                       Z_DEFLATED, Z_DEFAULT_COMPRESSION, isRaw ? 1 : 0);
}

void Write(zipFile zip, const char* data, size_t size) {
  if (zipWriteInFileInZip(zip, data, static_cast<unsigned>(size)) != ZIP_OK) Fail("cannot pack");
}

void Stream(zipFile zip, const std::string& file) {
  constexpr size_t kPiece = 16384;
  for (size_t at = 0; at < file.size(); at += kPiece) {
    Write(zip, file.data() + at, std::min(kPiece, file.size() - at));
  }
  zipCloseFileInZip(zip);
}

void DeflateAtOnce(zipFile zip, const std::string& file, libdeflate_compressor* compressor) {
  const size_t most = libdeflate_deflate_compress_bound(compressor, file.size());
  const std::unique_ptr<char[]> packed(new char[most]);
  Write(zip, packed.get(),
        libdeflate_deflate_compress(compressor, file.data(), file.size(), packed.get(), most));
  zipCloseFileInZipRaw(zip, file.size(), libdeflate_crc32(0, file.data(), file.size()));
}

/// @param compressor  null: zlib's default level
void Pack(const std::vector<std::string>& files, const char* path, libdeflate_compressor* compressor) {
  const zipFile zip = zipOpen64(path, APPEND_STATUS_CREATE);
  if (!zip) Fail("cannot create the archive");
  for (size_t i = 0; i < files.size(); ++i) {
    OpenMember(zip, i, compressor != nullptr);
    if (compressor) {
      DeflateAtOnce(zip, files[i], compressor);
    } else {
      Stream(zip, files[i]);
    }
  }
  if (zipClose(zip, "") != ZIP_OK) Fail("cannot complete the archive");
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  if (argc != 3 && argc != 4) bench::Fail("usage: floor MODEL OUT.zip [LEVEL]");
  std::vector<std::string> files;
  {
    const bench::Document document = bench::ReadDocument(argv[1]);
    files = bench::MeshFiles(document);
  }
  libdeflate_compressor* const compressor =
      argc == 4 ? libdeflate_alloc_compressor(std::atoi(argv[3])) : nullptr;
  bench::Pack(files, argv[2], compressor);
  libdeflate_free_compressor(compressor);
}

// SPDX-License-Identifier: MIT
#include "inspect/pair_vertices.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace actor {
namespace {

using Cell = std::array<int64_t, 3>;

template <class Array>
double SquareBetween(const Array& a, const Array& b) {
  double sum = 0;
  for (size_t i = 0; i < a.size(); ++i)
    sum += std::pow(static_cast<double>(a[i]) - static_cast<double>(b[i]), 2);
  return sum;
}

class VertexPairing {
 public:
  VertexPairing(const Mesh& b, double farthest) : b_(b), farthest_(farthest), isTaken_(b.vertices.size()) {
    for (uint32_t i = 0; i < b.vertices.size(); ++i) cells_[CellOf(b.vertices[i], 0)].push_back(i);
  }

  /// @return the number of vertices when there is none
  size_t Take(const Vertex& vertex) {
    size_t best = b_.vertices.size();
    double least = 0;
    // A place near the side of a cell may be in the next one.
    for (unsigned corner = 0; corner < 8; ++corner) {
      const auto cell = cells_.find(CellOf(vertex, corner));
      if (cell == cells_.end()) continue;
      if ((steps_ += cell->second.size()) > kMostSteps) return b_.vertices.size();
      for (const uint32_t i : cell->second) {
        const Vertex& other = b_.vertices[i];
        if (isTaken_[i] || SquareBetween(vertex.position, other.position) > farthest_ * farthest_) continue;
        const double difference =
            SquareBetween(vertex.uv, other.uv) + SquareBetween(vertex.normal, other.normal);
        if (best < b_.vertices.size() && difference >= least) continue;
        best = i;
        least = difference;
      }
    }
    if (best < b_.vertices.size()) isTaken_[best] = true;
    return best;
  }

 private:
  /// Thousands of vertices at one place are no character's.
  static constexpr uint64_t kMostSteps = 100'000'000;

  /// The cell of a place, or a neighbour: each bit of `corner` leads to the nearer one along an axis.
  Cell CellOf(const Vertex& vertex, unsigned corner) const {
    Cell cell;
    for (size_t i = 0; i < 3; ++i) {
      constexpr double kLargest = 1e15;
      const double at = static_cast<double>(vertex.position[i]) / (4 * farthest_);
      const double clamped = std::isfinite(at) ? std::clamp(at, -kLargest, kLargest) : 0.0;
      cell[i] = static_cast<int64_t>(std::floor(clamped));
      if (corner >> i & 1) cell[i] += clamped - std::floor(clamped) < 0.5 ? -1 : 1;
    }
    return cell;
  }

  const Mesh& b_;
  double farthest_;
  std::vector<bool> isTaken_;
  std::map<Cell, std::vector<uint32_t>> cells_;
  uint64_t steps_ = 0;
};

using Face = std::array<int32_t, 3>;

/// Beginning with its least corner.
Face Turned(Face face) {
  std::rotate(face.begin(), std::min_element(face.begin(), face.end()), face.end());
  return face;
}

}  // namespace

std::vector<uint32_t> PairVertices(const Mesh& a, const Mesh& b, double farthest) {
  if (a.vertices.size() != b.vertices.size() || !(farthest > 0)) return {};
  VertexPairing pairing(b, farthest);
  std::vector<uint32_t> pairs;
  for (const Vertex& vertex : a.vertices) {
    const size_t twin = pairing.Take(vertex);
    if (twin == b.vertices.size()) return {};
    pairs.push_back(static_cast<uint32_t>(twin));
  }
  return pairs;
}

bool HaveSameFaces(const Mesh& a, const Mesh& b, const std::vector<uint32_t>& pairs) {
  std::vector<Face> mapped, own;
  for (Face face : a.faces) {
    for (int32_t& corner : face) {
      if (corner >= 0 && static_cast<size_t>(corner) < pairs.size())
        corner = static_cast<int32_t>(pairs[static_cast<size_t>(corner)]);
    }
    mapped.push_back(Turned(face));
  }
  for (const Face& face : b.faces) own.push_back(Turned(face));
  std::sort(mapped.begin(), mapped.end());
  std::sort(own.begin(), own.end());
  return mapped == own;
}

}  // namespace actor

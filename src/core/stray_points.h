// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <span>

namespace ts3d {

/// A ball that holds all of a model but a few points, which lie far from it.
struct Bulk {
  std::array<double, 3> centre{};
  double radius = 0.0;

  double DistanceOf(const std::array<float, 3>& point) const;
  bool Holds(const std::array<float, 3>& point) const { return DistanceOf(point) <= radius; }
};

using PartPoints = std::span<const std::array<float, 3>>;

/// The bulk of a model whose parts have these points; none when no points are astray. Points are astray when they are
/// few and nothing lies between them and the others over a gap of twice the size of the others.
std::optional<Bulk> FindBulk(std::span<const PartPoints> parts);

}  // namespace ts3d

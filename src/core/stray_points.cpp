// SPDX-License-Identifier: MIT
#include "core/stray_points.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace ts3d {
namespace {

/// Part of the points that may be astray, and how many times farther out they are than the last of the bulk.
constexpr double kFew = 0.02, kFar = 3.0;

double Median(std::vector<float>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return static_cast<double>(*middle);
}

}  // namespace

double Bulk::DistanceOf(const std::array<float, 3>& point) const {
  double sum = 0.0;
  for (size_t axis = 0; axis < 3; ++axis) {
    const double offset = static_cast<double>(point[axis]) - centre[axis];
    sum += offset * offset;
  }
  return std::sqrt(sum);
}

std::optional<Bulk> FindBulk(std::span<const std::array<float, 3>> points) {
  const auto few = static_cast<size_t>(kFew * static_cast<double>(points.size()));
  if (few == 0) return std::nullopt;
  Bulk bulk;
  std::vector<float> values(points.size());
  for (size_t axis = 0; axis < 3; ++axis) {
    std::transform(points.begin(), points.end(), values.begin(), [&](const auto& p) { return p[axis]; });
    bulk.centre[axis] = Median(values);
  }
  std::vector<double> distances(points.size());
  std::transform(points.begin(), points.end(), distances.begin(),
                 [&](const auto& p) { return bulk.DistanceOf(p); });
  const auto outer = distances.end() - static_cast<std::ptrdiff_t>(few) - 1;
  std::nth_element(distances.begin(), outer, distances.end());
  std::sort(outer, distances.end());
  for (auto next = outer + 1; next != distances.end(); ++next) {
    bulk.radius = *(next - 1);
    if (bulk.radius > 0.0 && *next > kFar * bulk.radius) return bulk;
  }
  return std::nullopt;
}

}  // namespace ts3d

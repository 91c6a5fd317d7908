// SPDX-License-Identifier: MIT
#include "core/stray_points.h"

#include <algorithm>
#include <cmath>
#include <functional>
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

std::array<double, 3> Centre(std::span<const PartPoints> parts, size_t count) {
  std::array<double, 3> centre{};
  std::vector<float> values(count);
  for (size_t axis = 0; axis < 3; ++axis) {
    auto next = values.begin();
    for (const PartPoints& part : parts)
      next = std::transform(part.begin(), part.end(), next, [&](const auto& p) { return p[axis]; });
    centre[axis] = Median(values);
  }
  return centre;
}

/// The `count` largest distances from the centre, ascending; no list of all of them is made.
std::vector<double> LargestDistances(std::span<const PartPoints> parts, const Bulk& bulk, size_t count) {
  std::vector<double> largest;  // a heap with the smallest in front
  largest.reserve(count);
  for (const PartPoints& part : parts) {
    for (const std::array<float, 3>& point : part) {
      const double distance = bulk.DistanceOf(point);
      if (largest.size() == count) {
        if (distance <= largest.front()) continue;
        std::pop_heap(largest.begin(), largest.end(), std::greater<>());
        largest.pop_back();
      }
      largest.push_back(distance);
      std::push_heap(largest.begin(), largest.end(), std::greater<>());
    }
  }
  std::sort(largest.begin(), largest.end());
  return largest;
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

std::optional<Bulk> FindBulk(std::span<const PartPoints> parts) {
  size_t count = 0;
  for (const PartPoints& part : parts) count += part.size();
  const auto few = static_cast<size_t>(kFew * static_cast<double>(count));
  if (few == 0) return std::nullopt;
  Bulk bulk;
  bulk.centre = Centre(parts, count);
  const std::vector<double> outer = LargestDistances(parts, bulk, few + 1);
  for (size_t i = 1; i < outer.size(); ++i) {
    bulk.radius = outer[i - 1];
    if (bulk.radius > 0.0 && outer[i] > kFar * bulk.radius) return bulk;
  }
  return std::nullopt;
}

}  // namespace ts3d

// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

namespace scene::other {

/// A format that a library reads, in a process of its own.
struct ModelKind {
  const char* name;    ///< for users
  const char* ending;  ///< of its files, without a dot; also how the library knows it
  bool (*detects)(std::string_view head);
  double centimetres;  ///< in a unit of length
  double turn[2];      ///< degrees about X, then Y, that make characters look along +Z with Y up
  const char* looks;   ///< how its characters are taken to stand, for users
};

std::span<const ModelKind> ModelKinds();

/// Metres in the unit that a Collada file names; 1 without any.
double ColladaUnit(std::string_view bytes);

}  // namespace scene::other

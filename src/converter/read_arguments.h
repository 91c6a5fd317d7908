// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstring>
#include <optional>

#include "converter/converter.h"
#include "fbx_to_ts3d.h"
#include "platform/file_system.h"

namespace ts3d {

/// The host's struct as this version knows it: what an older host does not have is zero.
template <typename Struct>
bool TakeStruct(const Struct* given, Struct& taken) {
  taken = {};
  if (!given) return true;
  if (given->size < sizeof given->size) return false;
  std::memcpy(&taken, given, std::min<size_t>(given->size, sizeof taken));
  return true;
}

/// The path that a host has given in UTF-8; none when it has not, or it cannot be a file's.
std::optional<platform::fs::path> FilePath(const char* utf8);

/// What keeps `utf8` from being a file's path or name, to be put behind what it is.
std::string FaultOfPath(const char* utf8);

/// The file name that a model from memory goes by; empty when it has none that could be one.
platform::fs::path NameOfModel(const char* utf8);

/// Reads the options as far as this version and the host know them; null asks for the usual.
/// @return false when one of them makes no sense
bool ReadOptions(const FbxToTs3dOptions* options, ConverterOptions& read, ConverterHost& host);

}  // namespace ts3d

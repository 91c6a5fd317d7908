// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/repair_settings.h"

namespace ts3d {

/// What becomes of the plug-ins beside the executable.
enum class Plugins { Load, LoadAndName, LeaveOut };

/// What tool and converters ask for beyond the rules of the exported functions, which leave all of it as it is
/// here.
struct Settings {
  /// Names (of meshes and materials) that are left out, in any letter case.
  std::vector<std::string> exclusionList;

  RepairSettings repairs;

  /// The most influences of a vertex: its strongest, made to add up to 1. 0: all.
  int32_t mostInfluences = 0;

  /// Unit of a model other than FBX: "m", "cm", "mm" or "inch"; empty: that of its format.
  std::string modelUnit = {};

  /// With LoadAndName each is told in a status line.
  Plugins plugins = Plugins::Load;

  /// Whether small work files stay in memory, see WorkFiles.
  bool holdsSmallFiles = false;

  /// Bytes from which on a file is packed only when freed memory has gone back to the system.
  size_t largeFile = 1 << 20;

  /// Whether packed work files are deleted where they are. The exports delete them by their bare names, that
  /// is in the current directory.
  bool ownsModelFolder = false;

  /// How members are deflated: by libdeflate at this level, their bytes depending on content and level alone.
  /// None: by zlib in pieces of 16 KB.
  std::optional<int> packLevel = std::nullopt;

  /// DOS date (high half) and time of all members in place of those of their files.
  std::optional<uint32_t> memberDate = std::nullopt;

  /// Whether the texture callback is called for textures that are named ".tga" as well.
  bool offerTgaTextures = false;

  /// Whether a material without a texture of its "DiffuseColor" shows that of its base colour, which other
  /// shaders call otherwise, and whether pictures of unknown shaders lie on white.
  bool findsBaseColours = false;
};

}  // namespace ts3d

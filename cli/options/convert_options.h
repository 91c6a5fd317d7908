// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/pack_level.h"
#include "core/repair_settings.h"
#include "driver/conversion_job.h"
#include "terminal/status_printer.h"
#include "textures/texture_converter.h"

namespace cli {

/// What "fbx2czp convert" was asked for.
struct ConvertOptions {
  std::vector<std::string> models;  ///< files and folders
  std::string filesFrom;            ///< file with more of them, "-" for standard input, or empty
  std::vector<std::string> listed;  ///< what that list holds
  std::string base;          ///< folder below which models keep their folders in the output; may be empty
  std::string outputFolder;  ///< empty: beside each model
  int32_t rotationY = 0;
  int32_t rotationX = 0;
  std::vector<std::string> boneRenames;  ///< "old=new"
  std::string renamePreset;              ///< empty: none
  std::optional<int32_t> meshMode;
  std::vector<std::string> meshes;  ///< what `meshMode` is about
  std::vector<std::string> inwardMeshes, outwardMeshes;
  std::vector<std::string> doubleSidedMeshes;
  std::vector<std::string> excludedNames;
  ts3d::RepairSettings repairs;                            ///< what is asked for by name
  bool repairsAsNeeded = false;                            ///< beside those whatever the model needs
  int mostInfluences = 0;                                  ///< of a vertex; 0: all
  int longestTextureSide = textures::kDefaultLongestSide;  ///< pixels; larger pictures are too large
  textures::TooLarge tooLargeTextures = textures::TooLarge::Shrink;
  std::vector<std::string> textureFolders;  ///< searched for pictures, with all folders below
  std::string finishSettings;               ///< JSON file with final settings, or empty
  unsigned jobs = 0;                        ///< models at a time; 0: one for each processor core
  std::string report;                       ///< JSON file to write, "-" for standard output, or empty
  std::optional<int> packLevel = ts3d::kDefaultPackLevel;  ///< see ts3d::Settings
  bool proves = false;                                     ///< compares each package with its model
  bool force = false;                                      ///< replaces packages that somebody else has made
  bool strict = false;                                     ///< warnings count as failures
  bool update = false;   ///< leaves out models whose packages are newer than all that they are made of
  bool timings = false;  ///< tells how long the steps took
  bool watch = false;    ///< converts again what changes, until it is interrupted
  std::optional<ts3d::ActorType> actorType;  ///< else the path tells
  std::string modelUnit = {};                ///< of a model other than FBX; empty: that of its format
  std::string settingsFile;                  ///< named on the command line; empty: the nearest
  bool takesSettings = true;
  std::set<std::string> given;     ///< options that the command line has, by their long names
  std::vector<std::string> words;  ///< these with their values, as words of a command line
  bool loadsPlugins = true;
  Verbosity verbosity = Verbosity::Normal;

  /// Where lines for people go that are no messages: standard output, unless the report is printed there.
  std::FILE* Summary() const { return report == "-" ? stderr : stdout; }
};

}  // namespace cli

// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <set>
#include <string>
#include <string_view>

#include "core/held_files.h"
#include "platform/files.h"

namespace ts3d {

/// The files of one run: where they go, which of them stay in memory, and whether one was lost.
struct WorkFiles {
  /// Whether files that fit into a writer's buffer stay in `held` instead of going to the disk: making and
  /// deleting a file takes longer than packing it. So do those that have no place of their own in the folder: the
  /// system keeps the name for itself, or takes it for that of another. Nobody sees them there, so the exports leave
  /// it off.
  bool holdsSmallFiles = false;
  std::string modelDirectory;     ///< the model's folder with its trailing separator
  std::string inputPath;          ///< the model; never written, packed or deleted, whatever names ask for
  std::string packagePath;        ///< the open package; never packed into itself
  HeldFiles held;                 ///< those that are not in the folder
  bool packageIsDamaged = false;  ///< part of the open package was lost in writing: none may stay
  int writeError = 0;             ///< `errno` of the first write that was lost, or 0
  std::set<std::string, std::less<>>
      written;  ///< names of the files that WorkFileWriter has put into the folder
};

/// Opens the work file `name` in the model's folder like fopen. Null when that fails, and for every name that
/// could lead out of that folder or to the model or the package itself: names come from the model and are not
/// to be trusted.
platform::FilePtr OpenWorkFile(const WorkFiles& files, std::string_view name, const char* mode);

/// Opens `path`, which the host has named and no model, like fopen. Null when that fails, and for the model
/// and the package.
platform::FilePtr OpenHostFile(const WorkFiles& files, const std::string& path, const char* mode);

/// Maps `path` in the same way; false when that fails, and for the model and the package.
bool MapHostFile(const WorkFiles& files, const std::string& path, platform::MappedFile& file);

/// Opens the work file `name` like OpenWorkFile to write all of it. What an earlier run left under that name
/// is never taken for it: where that cannot be written over, it goes, or the package is damaged.
platform::FilePtr CreateWorkFile(WorkFiles& files, std::string_view name, const char* mode);
/// The same for a path that the host has named.
platform::FilePtr CreateHostFile(WorkFiles& files, const std::string& path, const char* mode);

/// Whether the model's folder or the memory holds a file `name`; false for every name that could lead out of
/// the folder.
bool WorkFileExists(const WorkFiles& files, std::string_view name);

/// Puts what is still held onto the disk, where a run that does not hold files leaves it.
void WriteHeldFiles(WorkFiles& files);

/// Notes that a write has just failed, with the system's reason. The package is damaged by that.
void NoteLostWrite(WorkFiles& files);

/// Deletes the file `path`, whose writing failed half-way. The package it was for is damaged by that.
void DiscardFile(WorkFiles& files, std::string_view path);

/// `text`, whose lines end in LF, as this system keeps text files.
std::string WithNativeLineEnds(std::string text);

/// Writes the whole of `text` and closes the file; false when any of it failed.
bool WriteAndClose(platform::FilePtr file, std::string_view text);

}  // namespace ts3d

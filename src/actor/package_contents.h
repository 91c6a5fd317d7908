// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace actor {

/// What is the most that a package may hold; beyond it is refused. The sizes that an archive declares play no
/// part: what is unpacked counts.
struct ReadLimits {
  size_t members = 10000;
  uint64_t packageBytes = uint64_t{2} << 30;  ///< the archive itself
  uint64_t memberBytes = uint64_t{512} << 20;
  uint64_t totalBytes = uint64_t{1} << 30;
  uint64_t ratio = 200;  ///< all that is unpacked to the archive's size, beyond `ratioFrom`
  uint64_t ratioFrom = uint64_t{128} << 20;  ///< plain pictures of one colour shrink to a thousandth
  bool keepsBytes = true;  ///< else members are unpacked and checked, and stay without their bytes
};

/// A file in a package.
struct Member {
  std::string name;
  uint64_t packedSize = 0;  ///< as the archive says
  uint64_t size = 0;        ///< of what was unpacked
  std::string date;         ///< "2024-05-31 17:08", local time; empty when there is none
  bool sound = true;        ///< unpacked to its end, and its checksum fits
  bool superseded = false;  ///< a later member has the same name
  std::string bytes;        ///< nothing unless sound and not superseded
};

/// A package, or a folder with the files of one, in memory.
struct PackageContents {
  bool isFolder = false;
  std::vector<Member> members;  ///< in package order; of a folder by name

  /// The member that counts for `name`: the last of that name, else the last that differs in letter case
  /// only; null when there is none.
  const Member* Find(std::string_view name) const;
};

/// Unpacks the archive `bytes` in memory. Members keep their names, whatever these are; they are never paths.
/// @return false when it is no archive or beyond the limits; `error` tells why, `contents` is empty
bool ReadPackageBytes(std::string_view bytes, const ReadLimits& limits, PackageContents& contents,
                      std::string& error);

/// A date as members have it.
std::string FormatDate(int year, int month, int day, int hour, int minute);

/// Reads the package `path`, or the files of the folder `path`, without its subfolders.
bool ReadPackage(const std::string& path, const ReadLimits& limits, PackageContents& contents,
                 std::string& error);

}  // namespace actor

// SPDX-License-Identifier: MIT
#include "package/archive_files.h"

#include "platform/files.h"

namespace ts3d {
namespace {

void* Open(void*, const void* path, int mode) {
  const bool isRead = (mode & ZLIB_FILEFUNC_MODE_READWRITEFILTER) == ZLIB_FILEFUNC_MODE_READ;
  const bool isChanged = (mode & ZLIB_FILEFUNC_MODE_EXISTING) != 0;
  return platform::OpenFile(static_cast<const char*>(path), isRead      ? "rb"
                                                            : isChanged ? "r+b"
                                                                        : "wb")
      .release();
}

}  // namespace

zlib_filefunc64_def ArchiveFiles() {
  zlib_filefunc64_def files;
  fill_fopen64_filefunc(&files);
  files.zopen64_file = Open;
  return files;
}

}  // namespace ts3d

// SPDX-License-Identifier: MIT
#pragma once

#include <minizip/ioapi.h>

namespace ts3d {

/// How minizip opens archives: as all other files are opened, by the functions of platform/.
zlib_filefunc64_def ArchiveFiles();

}  // namespace ts3d

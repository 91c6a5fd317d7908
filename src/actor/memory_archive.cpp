// SPDX-License-Identifier: MIT
#include "actor/memory_archive.h"

#include <algorithm>
#include <cstring>

namespace actor {

zlib_filefunc64_def MemoryArchive::Functions(Position& position) {
  zlib_filefunc64_def functions{};
  functions.opaque = &position;
  functions.zopen64_file = [](void* opaque, const void*, int) { return opaque; };
  functions.zread_file = [](void* opaque, void*, void* buffer, uLong size) -> uLong {
    auto& self = *static_cast<Position*>(opaque);
    const size_t taken = std::min<size_t>(size, self.bytes.size() - static_cast<size_t>(self.at));
    if (taken > 0) std::memcpy(buffer, self.bytes.data() + self.at, taken);
    self.at += taken;
    return static_cast<uLong>(taken);
  };
  functions.zwrite_file = [](void*, void*, const void*, uLong) -> uLong { return 0; };
  functions.ztell64_file = [](void* opaque, void*) -> ZPOS64_T { return static_cast<Position*>(opaque)->at; };
  functions.zseek64_file = [](void* opaque, void*, ZPOS64_T offset, int origin) -> long {
    auto& self = *static_cast<Position*>(opaque);
    ZPOS64_T base = 0;
    if (origin == ZLIB_FILEFUNC_SEEK_CUR) base = self.at;
    if (origin == ZLIB_FILEFUNC_SEEK_END) base = self.bytes.size();
    if (offset > self.bytes.size() - base) return -1;
    self.at = base + offset;
    return 0;
  };
  functions.zclose_file = [](void*, void*) { return 0; };
  functions.zerror_file = [](void*, void*) { return 0; };
  return functions;
}

MemoryArchive::MemoryArchive(std::string_view bytes) : position_(new Position{bytes, 0}) {
  zlib_filefunc64_def functions = Functions(*position_);
  handle_.reset(unzOpen2_64("", &functions));
}

}  // namespace actor

// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <memory>
#include <string>

namespace cli {

struct CloseAnyHandle {
  void operator()(void* handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseAnyHandle>;

struct Pipe {
  Handle reading, writing;
};

/// @param room  bytes that wait in it without anybody reading
/// @throws std::system_error, as all of these
Pipe MakePipe(DWORD room = 0);

/// A copy of a standard stream that another process can inherit. Where there is none, or nobody wants it, nothing can be
/// read there or written.
Handle CopyOf(DWORD stream, bool isWanted = true);

/// What a process inherits; nothing else.
struct Inherited {
  void *input, *output, *errors;
  void *order, *messages;  ///< their numbers follow in its command line
};

/// Starts this program again, as a part of `job`, with `word` as the first one of its command line.
Handle StartAgain(const char* word, const Inherited& inherited, void* job);

/// A job that ends its processes when this process ends, however that comes.
Handle MakeJob();

}  // namespace cli

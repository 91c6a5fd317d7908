// SPDX-License-Identifier: MIT
#pragma once

#include "platform/file_system.h"
#include "textures/image.h"

namespace textures {

/// Writes `image` as an uncompressed ".tga" picture: 32 bits a pixel when any of it is transparent, else 24.
/// An earlier file `path` stays until the new one is complete; when it is a link, the link is replaced and
/// not what it leads to. The file carries a mark that IsWrittenByUs knows.
/// @throws std::runtime_error with the reason when that fails, and nothing is left
void WriteTga(const Image& image, const platform::fs::path& path);

/// Makes the file `to` a copy of `from`, which comes from WriteTga, as WriteTga would.
void CopyTga(const platform::fs::path& from, const platform::fs::path& to);

/// Whether the file `path` comes from WriteTga and may be written again. All others are somebody's work.
bool IsWrittenByUs(const platform::fs::path& path);

/// Whether the file `path` is an uncompressed picture of 24 or 32 bits, and complete. Sets its size then.
bool IsPlainTga(const platform::fs::path& path, int& width, int& height);

}  // namespace textures

// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string_view>

#include "scene/container/record_tree.h"

namespace scene {

/// Nesting that no exporter comes near; deeper files are refused.
inline constexpr size_t kMaxRecordDepth = 32;

enum class ContainerKind { None, Binary, Ascii };

/// Which container `bytes` are; the content decides, never a file's extension.
ContainerKind DetectContainer(std::string_view bytes);

/// Version that the start of the file tells, before anything is parsed: 7400 for 7.4; 0 when it tells none.
int DetectVersion(std::string_view bytes, ContainerKind kind);

/// Reads all records of `tree.bytes` into `tree`, whose `ascii` and `version` are set. Arrays stay undecoded.
/// @return what is wrong and at which byte or line, or no error
ParseError ReadBinaryRecords(RecordTree& tree);
ParseError ReadAsciiRecords(RecordTree& tree);

}  // namespace scene

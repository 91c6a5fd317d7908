// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "scene/container/record_tree.h"

namespace scene {

/// Decodes the numbers of a record, however the file holds them: as a typed array, packed or not, as a
/// sequence of single values or as a text list. Numbers that are not finite become 0. False, with `out`
/// empty, when the data is damaged or claims more than `most` numbers or than the file's memory allowance; a
/// record without numbers gives none.
[[nodiscard]] bool ReadArray(RecordRef record, FbxArray<double>& out, size_t most = SIZE_MAX);
[[nodiscard]] bool ReadArray(RecordRef record, FbxArray<int32_t>& out, size_t most = SIZE_MAX);

/// How many numbers the record says that it holds, without decoding any.
size_t ClaimedCount(RecordRef record);

/// Bytes of one element of the array type `code`, or 0 for a code that is no array type.
size_t ArrayElementSize(char code);

/// Reads the numeric property at `p` of a binary file whose type byte is `code`.
/// @return the bytes after the type byte, or 0 when `code` is no number or less than that is left.
size_t ReadScalar(char code, const char* p, size_t left, bool bigEndian, Value& value);

}  // namespace scene

// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <random>
#include <string_view>

#include "support/fbx_builder.h"

/// Damages models as records, not as bytes, so that what comes out is a readable file again.
namespace fuzz {

using Random = std::minstd_rand;

struct RecordFile {
  support::FbxRecords records;
  support::BinaryFormat format;
};

/// Reads a file of either container; false when its container is damaged.
bool ParseRecords(std::string_view bytes, RecordFile& file);

/// Makes one random change: to a record, a value, an array, a connection, or to the version.
void MutateRecords(RecordFile& file, Random& random);

/// Puts a random record of `from` somewhere into `file`.
void SpliceRecords(RecordFile& file, const RecordFile& from, Random& random);

}  // namespace fuzz

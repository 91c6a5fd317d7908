// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace support {

/// Holds `json`, which the tool or the library wrote, against its schema in docs/schemas/; what differs fails
/// the test. Members that the schema does not have differ, too.
void ExpectMatchesSchema(const nlohmann::json& json);

/// The same for the text of a file or of standard output; nothing happens when it is no JSON of ours.
void ExpectMatchesSchemaIfJson(const std::string& text);

}  // namespace support

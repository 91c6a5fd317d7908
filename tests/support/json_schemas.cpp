// SPDX-License-Identifier: MIT
#include "support/json_schemas.h"

#include <gtest/gtest.h>

#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include "support/temp_folder.h"

namespace support {
namespace {

using nlohmann::json;
using Adapter = valijson::adapters::NlohmannJsonAdapter;

/// Users may find more members than a schema knows, from later versions; these tests may not.
void Close(json& schema) {
  if (schema.is_object() && schema.contains("properties")) schema["additionalProperties"] = false;
  for (json& part : schema) {
    if (part.is_structured()) Close(part);
  }
}

json ReadSchema(const std::string& file) {
  json schema = json::parse(ReadWholeFile(TS3D_SOURCE_FOLDER "/docs/schemas/" + file));
  Close(schema);
  return schema;
}

}  // namespace

void ExpectMatchesSchema(const json& value) {
  valijson::Schema schema;
  const json text = ReadSchema(value["schema"]["name"].get<std::string>() + ".json");
  valijson::SchemaParser(valijson::SchemaParser::kDraft7)
      .populateSchema(
          Adapter(text), schema, [](const std::string& file) { return new json(ReadSchema(file)); },
          [](const json* fetched) { delete fetched; });
  valijson::Validator validator;
  valijson::ValidationResults results;
  if (validator.validate(schema, Adapter(value), &results)) return;
  for (const auto& error : results) {
    std::string place;
    for (const std::string& step : error.context) place += step;
    ADD_FAILURE() << value["schema"]["name"] << " " << place << ": " << error.description;
  }
}

void ExpectMatchesSchemaIfJson(const std::string& text) {
  const json value = json::parse(text, nullptr, false);
  if (value.is_object() && value.contains("tool")) ExpectMatchesSchema(value);
}

}  // namespace support

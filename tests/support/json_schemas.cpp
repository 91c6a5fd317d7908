// SPDX-License-Identifier: MIT
#include "support/json_schemas.h"

#include <gtest/gtest.h>

#include <rapidjson/document.h>
#include <rapidjson/pointer.h>
#include <rapidjson/schema.h>
#include <rapidjson/stringbuffer.h>

#include "support/temp_folder.h"

namespace support {
namespace {

using nlohmann::json;
json ReadSchema(const std::string& file) {
  return json::parse(ReadWholeFile(TS3D_SOURCE_FOLDER "/docs/schemas/" + file));
}

/// Makes `schema` one that the validator, of an earlier draft, takes at its word: references become what they refer
/// to, constants enumerations of one. Users may find more members than a schema knows, from later versions; these tests
/// may not.
void Simplify(json& schema, const json& root) {
  if (schema.is_object() && schema.contains("$ref")) {
    const std::string reference = schema["$ref"];
    if (!reference.starts_with('#')) {
      schema = ReadSchema(reference);
      const json other = schema;
      return Simplify(schema, other);
    }
    const json target = root.at(json::json_pointer(reference.substr(1)));
    schema = target;
    return Simplify(schema, root);
  }
  if (schema.is_object() && schema.contains("const")) schema["enum"] = json::array({schema["const"]});
  if (schema.is_object() && schema.contains("properties")) schema["additionalProperties"] = false;
  for (json& part : schema) {
    if (part.is_structured()) Simplify(part, root);
  }
}

rapidjson::Document Parsed(const json& value) {
  rapidjson::Document document;
  document.Parse(value.dump().c_str());
  return document;
}

std::string AsText(const rapidjson::Pointer& place) {
  rapidjson::StringBuffer text;
  place.StringifyUriFragment(text);
  return text.GetString();
}

}  // namespace

void ExpectMatchesSchema(const json& value) {
  const std::string name = value["schema"]["name"];
  json text = ReadSchema(name + ".json");
  const json root = text;
  Simplify(text, root);
  const rapidjson::SchemaDocument schema(Parsed(text));
  rapidjson::SchemaValidator validator(schema);
  if (Parsed(value).Accept(validator)) return;
  ADD_FAILURE() << name << " " << AsText(validator.GetInvalidDocumentPointer()) << ": not what "
                << AsText(validator.GetInvalidSchemaPointer()) << " asks of the "
                << validator.GetInvalidSchemaKeyword();
}

void ExpectMatchesSchemaIfJson(const std::string& text) {
  const json value = json::parse(text, nullptr, false);
  if (value.is_object() && value.contains("tool")) ExpectMatchesSchema(value);
}

}  // namespace support

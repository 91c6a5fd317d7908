// SPDX-License-Identifier: MIT
#include "settings/json_fields.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "core/similar_names.h"
#include "core/visible_text.h"

namespace cli {
namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void Refuse(const std::string& name, const std::string& what) {
  throw std::runtime_error("\"" + name + "\" is not " + what);
}

/// The converter separates list entries by "|".
std::string ReadName(const Json& value, const std::string& name) {
  const std::string text = ReadText(value, name);
  if (text.find('|') != std::string::npos) throw std::runtime_error("\"" + text + "\" holds a \"|\"");
  return text;
}

}  // namespace

void CheckObject(const Json& value, const std::string& name) {
  if (!value.is_object()) throw std::runtime_error(name + " is not of the form {\"key\": value, ...}");
}

void CheckKeys(const Json& value, const std::string& name, const std::vector<std::string>& known) {
  CheckObject(value, name);
  for (const auto& [key, ignored] : value.items()) {
    if (std::find(known.begin(), known.end(), key) != known.end()) continue;
    throw std::runtime_error("the key \"" + key + "\" in " + name + " is not known; the nearest one is " +
                             ts3d::QuotedNames(ts3d::NearestNames(key, known, 1)));
  }
}

int32_t ReadWholeNumber(const Json& value, const std::string& name) {
  const double number = ReadNumber(value, name);
  if (number != std::floor(number) || std::abs(number) > std::numeric_limits<int32_t>::max())
    throw std::runtime_error(value.dump() + " is not a whole number that can be a " + name);
  return static_cast<int32_t>(number);
}

double ReadNumber(const Json& value, const std::string& name) {
  if (!value.is_number()) Refuse(name, "a number");
  return value.get<double>();
}

std::string ReadText(const Json& value, const std::string& name) {
  if (!value.is_string()) Refuse(name, "a text");
  std::string text = value.get<std::string>();
  if (text.find('\0') != std::string::npos)
    throw std::runtime_error("\"" + ts3d::VisibleText(text) + "\" holds a zero byte");
  return text;
}

std::vector<std::string> ReadTexts(const Json& value, const std::string& name) {
  if (value.is_string()) return {ReadName(value, name)};
  if (!value.is_array()) Refuse(name, "a list of names");
  std::vector<std::string> texts;
  for (const Json& entry : value) texts.push_back(ReadName(entry, name));
  return texts;
}

std::string ReadChoice(const Json& value, const std::string& name, const std::vector<std::string>& known) {
  std::string text = ReadText(value, name);
  if (std::find(known.begin(), known.end(), text) != known.end()) return text;
  throw std::runtime_error("\"" + name + "\" cannot be \"" + text + "\"; the nearest is " +
                           ts3d::QuotedNames(ts3d::NearestNames(text, known, 1)));
}

std::vector<std::string> ReadEntries(const Json& value, const std::string& name) {
  CheckObject(value, ts3d::QuotedNames({name}));
  std::vector<std::string> entries;
  for (const auto& [key, text] : value.items()) {
    const std::string entry = key + "=" + (text.is_string() ? text.get<std::string>() : ReadText(text, name));
    if (key.find('=') != std::string::npos || entry.find('|') != std::string::npos)
      throw std::runtime_error("\"" + entry + "\" holds a \"=\" or \"|\" too many");
    if (entry.find('\0') != std::string::npos)
      throw std::runtime_error("\"" + ts3d::VisibleText(entry) + "\" holds a zero byte");
    entries.push_back(entry);
  }
  return entries;
}

}  // namespace cli

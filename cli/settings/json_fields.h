// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace cli {

// What files with settings hold. Each throws std::runtime_error, with a reason for the person at the keyboard, when
// `value` is something else; `name` is what the value is called there.

void CheckObject(const nlohmann::ordered_json& value, const std::string& name);
/// Refuses what nobody would read: a mistyped key is a setting that is lost.
void CheckKeys(const nlohmann::ordered_json& value, const std::string& name,
               const std::vector<std::string>& known);
/// A whole number that fits; the library would cut others short.
int32_t ReadWholeNumber(const nlohmann::ordered_json& value, const std::string& name);
double ReadNumber(const nlohmann::ordered_json& value, const std::string& name);
std::string ReadText(const nlohmann::ordered_json& value, const std::string& name);
/// One text or a list of them.
std::vector<std::string> ReadTexts(const nlohmann::ordered_json& value, const std::string& name);
/// One of `known`; else the error names the nearest.
std::string ReadChoice(const nlohmann::ordered_json& value, const std::string& name,
                       const std::vector<std::string>& known);
/// "old=new" for each member of an object, in file order.
std::vector<std::string> ReadEntries(const nlohmann::ordered_json& value, const std::string& name);

}  // namespace cli

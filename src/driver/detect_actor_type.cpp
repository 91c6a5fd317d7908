// SPDX-License-Identifier: MIT
#include "driver/detect_actor_type.h"

#include <algorithm>
#include <initializer_list>
#include <string>

#include "core/names.h"

namespace ts3d {

ActorType DetectActorType(std::string_view path) {
  const std::string lower = LowerCase(path);
  // What stands at the very start does not count.
  const auto has = [&](std::initializer_list<const char*> words) {
    return std::any_of(words.begin(), words.end(),
                       [&](const char* word) { return lower.find(word, 1) != std::string::npos; });
  };
  ActorType type = ActorType::None;
  if (!has({"actor ("})) return type;
  if (has({"(male", " male)"})) {
    type = ActorType::Male;
  } else if (has({"(female", "female)"})) {
    type = ActorType::Female;
  }
  if (has({"(boy", "boy)"})) type = ActorType::Boy;
  if (has({"(girl", "girl)"})) type = ActorType::Girl;
  if (has({"(teen", "teen)", "teenager)"})) type = ActorType::Teenager;
  if (has({"(baby", "baby)"})) type = ActorType::Baby;
  return type;
}

}  // namespace ts3d

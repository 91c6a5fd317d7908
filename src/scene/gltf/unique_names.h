// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace scene::gltf {

/// Gives each name once, further ones as "Name.001", "Name.002", ..., as modelling programs do.
class UniqueNames {
 public:
  std::string Take(const std::string& name) {
    if (taken_.insert(name).second) return name;
    const std::string stem = name.substr(0, StemLength(name));
    int& number = last_[stem];
    std::string numbered;
    do {
      char suffix[16];
      std::snprintf(suffix, sizeof suffix, ".%03d", ++number);
      numbered = stem + suffix;
    } while (!taken_.insert(numbered).second);
    return numbered;
  }

 private:
  /// Length of a name without a number that it has already.
  static size_t StemLength(const std::string& name) {
    const size_t dot = name.rfind('.');
    const bool isNumbered = dot != std::string::npos && name.size() - dot > 3 &&
                            name.find_first_not_of("0123456789", dot + 1) == std::string::npos;
    return isNumbered ? dot : name.size();
  }

  std::unordered_set<std::string> taken_;
  std::unordered_map<std::string, int> last_;
};

}  // namespace scene::gltf

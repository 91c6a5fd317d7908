// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace support {

/// A binary glTF file under construction. `root` is its JSON.
class GltfFile {
 public:
  using Json = nlohmann::json;
  enum Type { kI8 = 5120, kU8, kI16, kU16, kU32 = 5125, kF32 };

  Json root = {{"asset", {{"version", "2.0"}}}, {"scene", 0}, {"scenes", {{{"nodes", Json::array()}}}}};
  std::string data;

  template <class T>
  size_t View(const std::vector<T>& numbers, Json more = Json::object()) {
    data.resize((data.size() + 3) / 4 * 4);
    more["buffer"] = 0;
    more["byteOffset"] = data.size();
    more["byteLength"] = numbers.size() * sizeof(T);
    data.append(reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof(T));
    return Add("bufferViews", std::move(more));
  }
  /// An accessor over a view of its own.
  template <class T>
  size_t Numbers(Type component, const char* type, size_t width, const std::vector<T>& numbers,
                 Json more = Json::object()) {
    more["bufferView"] = View(numbers);
    more["componentType"] = static_cast<int>(component);
    more["type"] = type;
    more["count"] = numbers.size() / width;
    return Add("accessors", std::move(more));
  }
  size_t Points(const std::vector<float>& xyz) { return Numbers(kF32, "VEC3", 3, xyz); }
  size_t Indices(const std::vector<uint16_t>& indices) { return Numbers(kU16, "SCALAR", 1, indices); }
  /// Influences of one joint with full weight on each of `count` vertices.
  Json Held(Json attributes, const std::vector<uint8_t>& joints) {
    std::vector<uint8_t> four, weights;
    for (const uint8_t joint : joints) {
      four.insert(four.end(), {joint, 0, 0, 0});
      weights.insert(weights.end(), {255, 0, 0, 0});
    }
    attributes["JOINTS_0"] = Numbers(kU8, "VEC4", 4, four);
    attributes["WEIGHTS_0"] = Numbers(kU8, "VEC4", 4, weights, {{"normalized", true}});
    return attributes;
  }
  size_t Mesh(Json primitive) { return Add("meshes", {{"primitives", {std::move(primitive)}}}); }
  /// A node at the top of the scene.
  size_t Top(Json node) {
    const size_t index = Add("nodes", std::move(node));
    root["scenes"][0]["nodes"].push_back(index);
    return index;
  }
  size_t Add(const char* list, Json value) {
    root[list].push_back(std::move(value));
    return root[list].size() - 1;
  }

  std::string Glb() const {
    Json json = root;
    if (!data.empty() && !json.contains("buffers")) json["buffers"] = {{{"byteLength", data.size()}}};
    std::string text = json.dump();
    text.resize((text.size() + 3) / 4 * 4, ' ');
    std::string file = "glTF" + Word(2) + Word(static_cast<uint32_t>(28 + text.size() + data.size()));
    file += Word(static_cast<uint32_t>(text.size())) + "JSON" + text;
    return file + Word(static_cast<uint32_t>(data.size())) + std::string("BIN\0", 4) + data;
  }

 private:
  static std::string Word(uint32_t number) { return {reinterpret_cast<const char*>(&number), sizeof number}; }
};

}  // namespace support

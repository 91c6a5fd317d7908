// SPDX-License-Identifier: MIT
#include "scene/gltf/read_accessors.h"

#include <algorithm>

#include "scene/gltf/extensions.h"
#include "scene/gltf/json_value.h"

namespace scene::gltf {
namespace {

BufferView ReadView(JsonValue view, size_t bufferCount) {
  BufferView result;
  result.buffer = view["buffer"].Index(bufferCount, "buffer");
  result.offset = view["byteOffset"].Count();
  result.size = view["byteLength"].Count();
  constexpr uint64_t kLargestStride = 252;
  result.stride = static_cast<uint32_t>(std::min(view["byteStride"].Count(), kLargestStride + 1));
  if (result.stride > kLargestStride) throw Fault("the elements of a buffer view lie too far apart");
  for (const char* extension : kViewCompressions) {
    const JsonValue packed = view["extensions"][extension];
    if (!packed) continue;
    result.compressed = extension;
    result.packed = {packed["buffer"].Index(bufferCount, "buffer"),
                     packed["byteOffset"].Count(),
                     packed["byteLength"].Count(),
                     packed["byteStride"].Count(),
                     packed["count"].Count(),
                     packed["mode"].Text(),
                     packed["filter"].Text()};
  }
  return result;
}

Component ReadComponent(JsonValue value) {
  const uint64_t code = value.Count();
  for (const Component known :
       {Component::I8, Component::U8, Component::I16, Component::U16, Component::U32, Component::F32}) {
    if (static_cast<uint64_t>(known) == code) return known;
  }
  throw Fault("component type " + std::to_string(code) + " of an accessor is not known");
}

uint32_t ReadWidth(const std::string& type) {
  static constexpr std::pair<std::string_view, uint32_t> kTypes[] = {
      {"SCALAR", 1}, {"VEC2", 2}, {"VEC3", 3}, {"VEC4", 4}, {"MAT2", 4}, {"MAT3", 9}, {"MAT4", 16}};
  for (const auto& [name, width] : kTypes) {
    if (name == type) return width;
  }
  throw Fault("type \"" + type.substr(0, 20) + "\" of an accessor is not known");
}

Place ReadPlace(JsonValue value, size_t viewCount) {
  return {value["bufferView"].Index(viewCount, "buffer view"), value["byteOffset"].Count()};
}

Accessor ReadAccessor(JsonValue accessor, size_t viewCount) {
  Accessor result;
  result.place = ReadPlace(accessor, viewCount);
  result.component = ReadComponent(accessor["componentType"]);
  result.width = ReadWidth(accessor["type"].Text());
  result.normalized = accessor["normalized"].Flag();
  result.count = accessor["count"].Count();
  if (const JsonValue sparse = accessor["sparse"]) {
    result.sparseCount = sparse["count"].Count();
    result.sparseComponent = ReadComponent(sparse["indices"]["componentType"]);
    result.sparseIndices = ReadPlace(sparse["indices"], viewCount);
    result.sparseValues = ReadPlace(sparse["values"], viewCount);
  }
  return result;
}

}  // namespace

std::vector<Buffer> ReadBuffers(JsonValue buffers) {
  return ReadList<Buffer>(buffers, [](JsonValue buffer) {
    return Buffer{buffer["uri"].Text(), buffer["byteLength"].Count()};
  });
}

std::vector<BufferView> ReadViews(JsonValue views, size_t bufferCount) {
  return ReadList<BufferView>(views, [&](JsonValue view) { return ReadView(view, bufferCount); });
}

std::vector<Accessor> ReadAccessors(JsonValue accessors, size_t viewCount) {
  return ReadList<Accessor>(accessors, [&](JsonValue accessor) { return ReadAccessor(accessor, viewCount); });
}

}  // namespace scene::gltf

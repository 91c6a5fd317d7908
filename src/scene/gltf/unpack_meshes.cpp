// SPDX-License-Identifier: MIT
#include "scene/gltf/unpack_meshes.h"

#include <algorithm>
#include <map>

#include "base/byte_cursor.h"
#include "scene/gltf/accessors.h"
#include "scene/readers/stream_words.h"
#include "scene/readers/translator.h"

namespace scene::gltf {
namespace {

using translation::PackedMesh;
using translation::PackedNumbers;

#ifdef _WIN32
constexpr const char* kNoLibrary = "on Windows";
#else
constexpr const char* kNoLibrary = "without libdraco-dev and libassimp-dev where this is built";
#endif

constexpr uint64_t kMostElements = 0x7fffffff;

template <class T>
void AppendBytes(const T& value, std::string& to) {
  to.append(reinterpret_cast<const char*>(&value), sizeof value);
}

uint64_t Padded(uint64_t size) {
  return (size + translation::kPadding - 1) / translation::kPadding * translation::kPadding;
}

/// Calls `visit` with every reference of `primitive` to an accessor whose data may be compressed.
template <class Visit>
void ForEachAttribute(Primitive& primitive, const Visit& visit) {
  visit(primitive.position);
  visit(primitive.normal);
  for (auto* sets : {&primitive.joints, &primitive.weights, &primitive.coordinates}) {
    for (uint32_t& accessor : *sets) visit(accessor);
  }
}

class MeshUnpacker {
 public:
  MeshUnpacker(Document& document, BufferBytes& bytes, Budget& budget)
      : document_(document), bytes_(bytes), budget_(budget) {
    for (Mesh& mesh : document_.meshes) {
      for (Primitive& primitive : mesh.primitives) {
        if (primitive.packed.view != kNone && primitive.HasSurface() && !IsPlain(primitive))
          uses_[KeyOf(primitive)].push_back(&primitive);
      }
    }
  }

  void Unpack(uint64_t modelSize, const std::function<void()>& wait) {
    if (uses_.empty()) return;
    RequireLibrary();
    const uint64_t before = budget_.Used();
    std::string request;
    for (const auto& [key, primitives] : uses_) Ask(*primitives.front(), request);
    // Texts that grow hold themselves twice while they do.
    budget_.Take(2 * answerSize_);
    // Some programs leave the counts in accessors that meshes had before they were compressed.
    const uint64_t most = answerSize_ + std::min(answerSize_, budget_.Left() / 2) + kFirstLines;
    translation::Answer answer;
    try {
      answer = translation::Run(translation::kMeshesWord, "", request, modelSize, most, wait);
    } catch (const translation::Fault& fault) {
      throw Fault(fault.what());
    }
    budget_.ReturnTo(before);
    budget_.Take(answer.stream.size());
    const size_t start = answer.start;
    buffer_ = bytes_.Add(document_, std::move(answer.stream));
    TakeAnswer(start);
  }

 private:
  /// Of the answer: what is before its data, or the reason why there is none.
  static constexpr uint64_t kFirstLines = 1024;

  /// Primitives with equal keys unpack to the same.
  using Key = std::pair<PackedPrimitive, uint32_t>;

  /// Whether a primitive is there without compression, too, so that the library need not be.
  bool IsPlain(const Primitive& primitive) const {
    if (!primitive.packed.isSpare || primitive.position == kNone) return false;
    const uint32_t view = document_.accessors[primitive.position].place.view;
    return view != kNone && bytes_.Has(document_.views[view]);
  }

  static Key KeyOf(const Primitive& primitive) { return {primitive.packed, primitive.indices}; }

  static void RequireLibrary() {
    if (translation::IsThere()) return;
    throw Fault(std::string("its meshes are compressed with KHR_draco_mesh_compression, which is not read ") +
                kNoLibrary + "; export the model without compression");
  }

  uint32_t CountOf(uint32_t accessor) const {
    const uint64_t count = document_.accessors[accessor].count;
    if (count > kMostElements) throw Fault("an accessor claims too many elements");
    return static_cast<uint32_t>(count);
  }

  /// Appends what the process needs for `primitive` to `request`.
  void Ask(const Primitive& primitive, std::string& request) {
    const std::string_view packed = bytes_.View(document_, primitive.packed.view);
    if (primitive.indices == kNone || primitive.position == kNone)
      throw Fault("a compressed mesh has no accessors for its positions and indices");
    // What is compressed are triangles, whatever the mode says.
    const uint64_t corners = uint64_t{primitive.mode == kTriangles ? 1u : 3u} * CountOf(primitive.indices);
    if (packed.size() > kMostElements) throw Fault("an accessor claims too many elements");
    const uint32_t points = CountOf(primitive.position);
    const auto& lists = primitive.packed.attributes;
    const PackedMesh head{static_cast<uint32_t>(packed.size()), static_cast<uint32_t>(lists.size())};
    budget_.Take(sizeof head + lists.size() * sizeof(PackedNumbers) + packed.size());
    AppendBytes(head, request);
    answerSize_ += 8 + 4 * corners;
    for (const auto& [accessor, id] : lists) {
      const Accessor& claimed = document_.accessors[accessor];
      if (claimed.count != points) throw Fault("the attributes of a compressed mesh have different lengths");
      AppendBytes(
          PackedNumbers{id, static_cast<uint32_t>(claimed.component), claimed.width, claimed.normalized},
          request);
      answerSize_ += Padded(claimed.count * claimed.width * SizeOf(claimed.component));
    }
    request += packed;
  }

  void TakeAnswer(size_t start) {
    base::ByteCursor answer(bytes_.AllOf(buffer_));
    answer.Seek(start);
    for (const auto& [key, primitives] : uses_) {
      const auto points = answer.Number<uint32_t>();
      const auto corners = answer.Number<uint32_t>();
      Accessor indices;
      indices.component = Component::U32;
      indices.count = corners;
      const uint32_t indexList = AddAccessor(indices, answer);
      std::map<uint32_t, uint32_t> lists;
      for (const auto& [accessor, id] : key.first.attributes) {
        Accessor list = document_.accessors[accessor];
        list.count = points;
        lists[accessor] = AddAccessor(list, answer);
      }
      if (answer.Failed()) throw Fault("what unpacks its meshes has not answered all");
      for (Primitive* primitive : primitives) {
        primitive->mode = kTriangles;
        primitive->indices = indexList;
        primitive->packed = {};
        ForEachAttribute(*primitive, [&](uint32_t& accessor) {
          if (const auto list = lists.find(accessor); list != lists.end()) accessor = list->second;
        });
      }
    }
  }

  /// Adds an accessor like `plain` for the next bytes of the answer.
  uint32_t AddAccessor(Accessor plain, base::ByteCursor& answer) {
    BufferView view;
    view.buffer = buffer_;
    view.offset = answer.Offset();
    view.size = Padded(plain.count * plain.width * SizeOf(plain.component));
    answer.Bytes(view.size);
    document_.views.push_back(view);
    plain.place = {static_cast<uint32_t>(document_.views.size() - 1), 0};
    plain.sparseCount = 0;
    document_.accessors.push_back(plain);
    return static_cast<uint32_t>(document_.accessors.size() - 1);
  }

  Document& document_;
  BufferBytes& bytes_;
  Budget& budget_;
  std::map<Key, std::vector<Primitive*>> uses_;
  uint64_t answerSize_ = 0;
  uint32_t buffer_ = kNone;
};

}  // namespace

void UnpackMeshes(Document& document, BufferBytes& bytes, uint64_t modelSize, Budget& budget,
                  const std::function<void()>& wait) {
  MeshUnpacker(document, bytes, budget).Unpack(modelSize, wait);
}

}  // namespace scene::gltf

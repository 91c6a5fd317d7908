// SPDX-License-Identifier: MIT
#include "scene/gltf/unpack_view.h"

#include "platform/process.h"

namespace scene::gltf {
namespace {

/// The library's functions: C, with plain memory alone.
using Decode = int (*)(void* to, size_t count, size_t size, const unsigned char* from, size_t fromSize);
using Filter = void (*)(void* numbers, size_t count, size_t stride);

/// Null where the library is not.
void* FindFunction([[maybe_unused]] const char* name) {
#ifdef _WIN32
  return nullptr;
#else
  return platform::LoadPlugin("libmeshoptimizer.so.2d", name);
#endif
}

template <class Function>
Function LoadFunction(const BufferView& view, const char* name) {
#ifdef _WIN32
  constexpr const char* kRemedy = "on Windows";
#else
  constexpr const char* kRemedy = "without the package libmeshoptimizer2d";
#endif
  void* const function = FindFunction(name);
  if (!function) {
    throw Fault("its data is compressed with " + view.compressed + ", which is not read " + kRemedy +
                "; export the model without compression");
  }
  return reinterpret_cast<Function>(function);
}

[[noreturn]] void FailDamaged() { throw Fault("a compressed buffer view is damaged"); }

/// What the library takes for granted.
void Check(const PackedView& packed, uint64_t size) {
  const auto isOneOf = [&](uint64_t a, uint64_t b) { return packed.stride == a || packed.stride == b; };
  const bool isSound = packed.mode == "ATTRIBUTES"  ? packed.stride % 4 == 0 && packed.stride <= 256
                       : packed.mode == "TRIANGLES" ? isOneOf(2, 4) && packed.count % 3 == 0
                                                    : packed.mode == "INDICES" && isOneOf(2, 4);
  const bool isFiltered = !packed.filter.empty() && packed.filter != "NONE";
  const bool hasFilter = packed.filter == "OCTAHEDRAL"   ? isOneOf(4, 8)
                         : packed.filter == "QUATERNION" ? isOneOf(8, 8)
                                                         : packed.filter == "EXPONENTIAL";
  if (!isSound || packed.stride == 0 || (isFiltered && (!hasFilter || packed.mode != "ATTRIBUTES")))
    FailDamaged();
  constexpr uint64_t kMost = 0x7fffffff;
  if (size > kMost || packed.count > size / packed.stride || packed.count * packed.stride != size)
    FailDamaged();
}

}  // namespace

bool CanUnpackViews() { return FindFunction("meshopt_decodeVertexBuffer") != nullptr; }

std::string UnpackView(const BufferView& view, std::string_view packed, Budget& budget) {
  const PackedView& how = view.packed;
  Check(how, view.size);
  // The densest data that the format can hold: a header byte for sixteen bytes.
  constexpr uint64_t kMostDense = 256;
  if (view.size / kMostDense > packed.size()) FailDamaged();
  const auto decode = LoadFunction<Decode>(view, how.mode == "ATTRIBUTES"  ? "meshopt_decodeVertexBuffer"
                                                 : how.mode == "TRIANGLES" ? "meshopt_decodeIndexBuffer"
                                                                           : "meshopt_decodeIndexSequence");
  const Filter filter = how.filter == "OCTAHEDRAL"    ? LoadFunction<Filter>(view, "meshopt_decodeFilterOct")
                        : how.filter == "QUATERNION"  ? LoadFunction<Filter>(view, "meshopt_decodeFilterQuat")
                        : how.filter == "EXPONENTIAL" ? LoadFunction<Filter>(view, "meshopt_decodeFilterExp")
                                                      : nullptr;
  budget.Take(view.size);
  const auto count = static_cast<size_t>(how.count), stride = static_cast<size_t>(how.stride);
  std::string bytes(static_cast<size_t>(view.size), '\0');
  const auto* const from = reinterpret_cast<const unsigned char*>(packed.data());
  if (count > 0 && decode(bytes.data(), count, stride, from, packed.size()) != 0) FailDamaged();
  if (filter && count > 0) filter(bytes.data(), count, stride);
  return bytes;
}

}  // namespace scene::gltf

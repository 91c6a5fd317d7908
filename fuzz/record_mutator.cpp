// SPDX-License-Identifier: MIT
#include "record_mutator.h"

#include <iterator>
#include <limits>

#include "scene/container/array_reader.h"
#include "scene/fbx_reader.h"

namespace fuzz {
namespace {

using support::FbxRecord;
using support::FbxRecords;
using support::FbxValue;

constexpr const char* kRecordNames[] = {"Model",
                                        "Geometry",
                                        "Deformer",
                                        "Pose",
                                        "PoseNode",
                                        "Material",
                                        "Texture",
                                        "Video",
                                        "NodeAttribute",
                                        "LayeredTexture",
                                        "Vertices",
                                        "Indexes",
                                        "PolygonVertexIndex",
                                        "Weights",
                                        "Transform",
                                        "Matrix",
                                        "TransformLink",
                                        "LayerElementUV",
                                        "UVIndex",
                                        "UV",
                                        "Materials",
                                        "Layer",
                                        "LayerElement",
                                        "Properties70",
                                        "Properties60",
                                        "Content",
                                        "Shape",
                                        "FullWeights",
                                        "DeformPercent",
                                        "Link",
                                        "Children",
                                        "Channel",
                                        "Default",
                                        "GeometryUVInfo",
                                        "TextureUV",
                                        "TextureId",
                                        "Connections",
                                        "Objects",
                                        "Definitions",
                                        "MaterialAssignation",
                                        "UseMaterial",
                                        "PropertyTemplate"};
constexpr const char* kTexts[] = {
    "",        "..",           "../../evil",    "..\\..\\evil.tga", "/tmp/evil.png", "C:\\evil.bmp",
    "Mesh",    "LimbNode",     "Skin",          "Cluster",          "BlendShape",    "BlendShapeChannel",
    "Shape",   "BindPose",     "Null",          "ByPolygonVertex",  "ByPolygon",     "ByVertice",
    "AllSame", "Direct",       "IndexToDirect", "Additive",         "Total1",        "OO",
    "OP",      "DiffuseColor", "Lcl Scaling",   "InheritType",      "phong",         "lambert"};
constexpr double kWholeNumbers[] = {0, 1, -1, 2, 3, 100, 65536, 2147483647.0, -2147483648.0, 4294967295.0};
constexpr double kRealNumbers[] = {0.5,
                                   1e-40,
                                   1e38,
                                   1e300,
                                   -1e300,
                                   std::numeric_limits<double>::infinity(),
                                   std::numeric_limits<double>::quiet_NaN()};
constexpr uint32_t kVersions[] = {2000, 3000, 5000, 5800, 6100, 7100, 7400, 7500, 8000};

size_t Pick(size_t count, Random& random) { return random() % count; }

template <typename List>
auto& Any(List& list, Random& random) {
  return list[Pick(std::size(list), random)];
}

/// Where a record stands.
struct Place {
  FbxRecords* list;
  size_t index;
  FbxRecord& Get() const { return (*list)[index]; }
};

void CollectPlaces(FbxRecords& list, std::vector<Place>& places) {
  for (size_t i = 0; i < list.size(); ++i) {
    places.push_back({&list, i});
    CollectPlaces(list[i].children, places);
  }
}

std::vector<Place> PlacesOf(FbxRecords& records) {
  std::vector<Place> places;
  CollectPlaces(records, places);
  return places;
}

FbxRecord* FindTop(FbxRecords& records, std::string_view name) {
  for (FbxRecord& record : records) {
    if (record.name == name) return &record;
  }
  return nullptr;
}

bool IsArray(const FbxValue& value) {
  return std::string_view("fdilbc").find(value.code) != std::string_view::npos;
}
bool IsText(const FbxValue& value) { return value.code == 'S' || value.code == 'R'; }

double AnyNumber(char code, Random& random) {
  const bool isReal = code == 'f' || code == 'd' || code == 'F' || code == 'D';
  if (random() % 4 == 0) return static_cast<double>(random() % 64);
  return isReal && random() % 2 ? Any(kRealNumbers, random) : Any(kWholeNumbers, random);
}

/// What the integer types cannot hold becomes 0.
void MakeWhole(std::vector<double>& numbers) {
  constexpr double kLimit = 1e18;
  for (double& number : numbers) {
    if (!(number > -kLimit && number < kLimit)) number = 0;
  }
}

void MutateArray(FbxValue& value, Random& random) {
  std::vector<double>& numbers = value.numbers;
  switch (random() % 7) {
    case 0:
      value.packed = !value.packed;
      break;
    case 1:
      numbers.resize(numbers.size() / 2);
      break;
    case 2:
      numbers.resize(numbers.size() + 1 + random() % 40, AnyNumber(value.code, random));
      break;
    case 3:
      value.code = "fdilbc"[random() % 6];
      MakeWhole(numbers);
      break;
    case 4:
      for (double& number : numbers) number = -number;
      break;
    default:
      if (!numbers.empty()) Any(numbers, random) = AnyNumber(value.code, random);
  }
}

void MutateText(FbxValue& value, Random& random) {
  switch (random() % 4) {
    case 0:
      value.bytes = Any(kTexts, random);
      break;
    case 1:
      value.bytes += value.bytes;
      if (value.bytes.size() > 4096) value.bytes.resize(16);
      break;
    case 2:
      value.code = value.code == 'S' ? 'R' : 'S';
      break;
    default:
      if (!value.bytes.empty()) Any(value.bytes, random) = static_cast<char>(random());
  }
}

void MutateValue(FbxRecord& record, Random& random) {
  if (record.values.empty() || random() % 16 == 0) {
    record.values.insert(
        record.values.begin() + static_cast<std::ptrdiff_t>(Pick(record.values.size() + 1, random)),
        random() % 2 ? FbxValue(AnyNumber('D', random)) : FbxValue(Any(kTexts, random)));
    return;
  }
  FbxValue& value = Any(record.values, random);
  if (random() % 16 == 0) {
    record.values.erase(record.values.begin() + (&value - record.values.data()));
  } else if (IsArray(value)) {
    MutateArray(value, random);
  } else if (IsText(value)) {
    MutateText(value, random);
  } else {
    const char code = "CYILFD"[random() % 6];
    value = FbxValue::Number(code, AnyNumber(code, random));
  }
}

/// Ends of connections are taken from other connections, so that they name objects.
void MutateConnections(FbxRecord& connections, Random& random) {
  FbxRecords& list = connections.children;
  if (list.empty()) return;
  FbxRecord& changed = Any(list, random);
  const FbxRecord& other = Any(list, random);
  const size_t from = 1 + random() % 2, to = 1 + random() % 2;
  if (random() % 4 == 0) {
    const FbxRecord copy = changed;
    list.push_back(copy);
  } else if (changed.values.size() > to && other.values.size() > from) {
    const FbxValue end = other.values[from];
    changed.values[to] = random() % 8 == 0 ? FbxValue(int64_t{0}) : end;
  }
}

void MutateTree(FbxRecords& records, Random& random) {
  const std::vector<Place> places = PlacesOf(records);
  if (places.empty()) return;
  const Place place = Any(places, random);
  switch (random() % 6) {
    case 0:
      place.list->erase(place.list->begin() + static_cast<std::ptrdiff_t>(place.index));
      break;
    case 1: {
      const FbxRecord copy = place.Get();
      const size_t count = 1 + (random() % 8 == 0 ? random() % 32 : 0);
      place.list->insert(place.list->begin() + static_cast<std::ptrdiff_t>(place.index), count, copy);
      break;
    }
    case 2: {
      const FbxRecord copy = place.Get();
      Any(places, random).Get() = copy;
      break;
    }
    case 3: {
      const FbxRecord copy = place.Get();
      Any(places, random).Get().children.push_back(copy);
      break;
    }
    case 4:
      place.Get().name = Any(kRecordNames, random);
      break;
    default:
      place.Get().nullRecord = !place.Get().nullRecord;
  }
}

/// "Class::Name" of a text becomes what binary files have.
FbxValue TextOf(std::string_view text, bool ascii) {
  const size_t at = ascii ? text.find("::") : std::string_view::npos;
  if (at == std::string_view::npos) return FbxValue(std::string(text));
  return FbxValue(std::string(text.substr(at + 2)) + std::string("\0\1", 2) +
                  std::string(text.substr(0, at)));
}

FbxValue ValueOf(scene::RecordRef record, const scene::Value& value) {
  using Kind = scene::Value::Kind;
  switch (value.kind) {
    case Kind::Integer:
      return FbxValue(value.integer);
    case Kind::Real:
      return FbxValue(value.real);
    case Kind::Text:
      return TextOf(value.Span(), record.Tree().ascii);
    case Kind::Bytes:
      return FbxValue::Raw(std::string(value.Span()));
    default:
      break;
  }
  scene::FbxArray<double> numbers;
  if (!ReadArray(record, numbers)) numbers.Release();
  FbxValue array =
      FbxValue::Array(value.kind == Kind::Array ? value.element : 'd', {numbers.begin(), numbers.end()});
  if (array.code != 'd' && array.code != 'f') MakeWhole(array.numbers);
  array.packed = value.compressed;
  return array;
}

FbxRecord RecordOf(scene::RecordRef ref) {
  FbxRecord record{std::string(ref.Name().substr(0, 255))};
  for (size_t i = 0; i < ref.ValueCount(); ++i) record.values.push_back(ValueOf(ref, *ref.ValueAt(i)));
  for (const scene::RecordRef child : ref) record.children.push_back(RecordOf(child));
  return record;
}

}  // namespace

bool ParseRecords(std::string_view bytes, RecordFile& file) {
  scene::RecordTree tree;
  tree.bytes = bytes;
  if (!ReadFbxRecords(tree).Succeeded()) return false;
  for (uint32_t i = 0; i < tree.records.size(); i = tree.records[i].end) {
    file.records.push_back(RecordOf({&tree, i}));
  }
  file.format.version = static_cast<uint32_t>(tree.version);
  file.format.bigEndian = tree.bigEndian;
  return true;
}

void MutateRecords(RecordFile& file, Random& random) {
  FbxRecord* connections = FindTop(file.records, "Connections");
  const size_t kind = random() % 16;
  if (kind == 0) {
    file.format.version = Any(kVersions, random);
    file.format.bigEndian = random() % 8 == 0;
  } else if (kind < 5 && connections) {
    MutateConnections(*connections, random);
  } else if (kind < 12) {
    const std::vector<Place> places = PlacesOf(file.records);
    if (!places.empty()) MutateValue(Any(places, random).Get(), random);
  } else {
    MutateTree(file.records, random);
  }
}

void SpliceRecords(RecordFile& file, const RecordFile& from, Random& random) {
  FbxRecords source = from.records;
  const std::vector<Place> places = PlacesOf(file.records), others = PlacesOf(source);
  if (places.empty() || others.empty()) return;
  const Place place = Any(places, random);
  const FbxRecord& taken = Any(others, random).Get();
  place.list->insert(place.list->begin() + static_cast<std::ptrdiff_t>(place.index), taken);
}

}  // namespace fuzz

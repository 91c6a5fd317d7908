// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace support {

/// One value of a record under its type code of binary files: C B Z Y I L F D, S R, or an array f d i l b c.
struct FbxValue {
  FbxValue(int number) : code('I'), whole(number) {}
  FbxValue(int64_t number) : code('L'), whole(number) {}
  FbxValue(double number) : code('D'), real(number) {}
  FbxValue(const char* text) : FbxValue(std::string(text)) {}
  FbxValue(std::string text) : code('S'), bytes(std::move(text)) {}
  /// A number under another code than that of its type.
  static FbxValue Number(char code, double number);
  static FbxValue Raw(std::string bytes);
  /// "class::name", or name 00 01 class in a binary file.
  static FbxValue Name(std::string_view name, std::string_view objectClass);
  static FbxValue Array(char code, std::vector<double> numbers);
  static FbxValue PackedArray(char code, std::vector<double> numbers);

  char code;
  int64_t whole = 0;
  double real = 0.0;
  std::string bytes;
  std::string objectClass;
  std::vector<double> numbers;
  bool packed = false;

 private:
  FbxValue() = default;
};

using FbxValues = std::vector<FbxValue>;

/// A record of either container. Fields below `children` are for odd binary files.
struct FbxRecord {
  FbxRecord(std::string recordName, FbxValues recordValues = {}, std::vector<FbxRecord> recordChildren = {})
      : name(std::move(recordName)), values(std::move(recordValues)), children(std::move(recordChildren)) {}
  FbxRecord& Add(FbxRecord child) { return children.emplace_back(std::move(child)); }

  std::string name;
  FbxValues values;
  std::vector<FbxRecord> children;
  bool nullRecord = true;      ///< children end with a null record
  bool endOffsetZero = false;  ///< the header says 0 instead of the end
};

using FbxRecords = std::vector<FbxRecord>;

struct BinaryFormat {
  uint32_t version = 7400;
  bool bigEndian = false;
  bool nullRecord = true;  ///< the file ends with a null record
};

std::string WriteBinary(const FbxRecords& records, const BinaryFormat& format = {});
/// A 7.4 file by its first comment.
std::string WriteAscii(const FbxRecords& records);

/// `bytes` with the little-endian 32-bit `word` at `offset`.
std::string Patched(std::string bytes, size_t offset, uint32_t word);

/// Records "name" with an array of 'd' or 'i'.
FbxRecord Doubles(std::string name, std::vector<double> numbers);
FbxRecord Ints(std::string name, std::vector<double> numbers);

/// An element of a mesh's layer, such as "LayerElementUV".
FbxRecord LayerElement(std::string type, int number, const char* mapping, const char* reference,
                       FbxRecords arrays);

/// "P: name, ..., values" and the "Properties70" record around several.
FbxRecord Property(std::string name, FbxValues values);
FbxRecord Properties(FbxRecords properties);

/// Sixteen numbers as files hold a matrix.
using Matrix16 = std::vector<double>;
Matrix16 Identity();
Matrix16 Translation(double x, double y, double z);

/// A scene document under construction. References to objects stay valid; children can be added to them.
class FbxFile {
 public:
  FbxRecord& Object(std::string record, int64_t id, std::string name, std::string subType = "");
  FbxRecord& Model(int64_t id, std::string name, FbxRecords properties = {});
  /// A mesh geometry; polygons end with the complement of their last corner.
  FbxRecord& Mesh(int64_t id, std::vector<double> points, std::vector<double> polygonVertexIndex);
  FbxRecord& Material(int64_t id, std::string name, std::string shadingModel, FbxRecords properties = {});
  FbxRecord& Skin(int64_t id) { return Object("Deformer", id, "", "Skin"); }
  FbxRecord& Cluster(int64_t id, std::vector<double> indices, std::vector<double> weights);
  FbxRecord& BindPose(int64_t id, std::string name) {
    return Object("Pose", id, std::move(name), "BindPose");
  }

  /// `source` becomes part of `destination`, 0 being the root.
  void Connect(int64_t source, int64_t destination);
  void Connect(int64_t source, int64_t destination, std::string property);
  void Connect(const std::vector<std::pair<int, int>>& sourcesAndDestinations);
  /// Default properties of all objects of the record `kind`.
  void Template(std::string kind, FbxRecords properties);

  FbxRecords Records() const;

 private:
  FbxRecords definitions_;
  std::deque<FbxRecord> objects_;
  FbxRecords connections_;
};

}  // namespace support

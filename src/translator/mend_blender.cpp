// SPDX-License-Identifier: MIT
#include "translator/mend_blender.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <utility>
#include <vector>

namespace translator {
namespace {

using std::string_view;

string_view From(string_view text, size_t at) { return text.substr(std::min(at, text.size())); }

/// Up to `end`, without it; all where it is not there.
string_view Until(string_view text, string_view end) { return text.substr(0, text.find(end)); }

string_view Between(string_view text, string_view before, string_view behind) {
  const size_t found = text.find(before);
  return found == text.npos ? "" : Until(From(text, found + before.size()), behind);
}

class BlenderFile {
 public:
  explicit BlenderFile(string_view file) : file_(file) {}

  std::string Mend() {
    // Skins come before the nodes there.
    size_t at = file_.find("<library_controllers");
    if (at == file_.npos) at = file_.find("<library_visual_scenes");
    while (at < file_.size()) {
      const string_view rest = PieceAt(at);
      if (rest.starts_with("<controller ")) {
        controller_ = Between(rest, " id=\"", "\"");
      } else if (rest.starts_with("<bind_shape_matrix>")) {
        shapes_[controller_] = at;
      } else if (rest.starts_with("<node ")) {
        BeginNode(at);
      } else if (rest.starts_with("</node>")) {
        EndNode();
      } else if (!nodes_.empty()) {
        TakeElement(rest, at);
      }
      at = file_.find('<', at + 1);
    }
    return Apply();
  }

 private:
  struct Edit {
    size_t at, length;
    std::string text;
  };
  struct OpenNode {
    bool isJoint = false;
    bool isConnected = false;  ///< begins at the tail of the joint above
    size_t transform = string_view::npos, scale = string_view::npos;  ///< where they begin
    double place[3] = {};
    double tail[3] = {};       ///< of a joint
    std::vector<size_t> held;  ///< where the transforms begin of what hangs on it
  };

  /// Longer than any element that is looked at.
  string_view PieceAt(size_t at) const { return From(file_, at).substr(0, 4096); }

  static bool HasTail(const OpenNode& node) {
    return std::any_of(node.tail, node.tail + 3, [](double x) { return x != 0.0; });
  }

  void BeginNode(size_t at) {
    // One line each; names may hold anything else.
    const string_view tag = Until(PieceAt(at), "\n");
    nodes_.emplace_back().isJoint = tag.ends_with("type=\"JOINT\">");
    if (!nodes_.back().isJoint) return;
    constexpr string_view kBefore = " name=\"", kBehind = "\" sid=\"";
    const size_t name = tag.find(kBefore), end = tag.rfind(kBehind);
    if (name == tag.npos || end == tag.npos || end < name + kBefore.size()) return;
    const size_t start = name + kBefore.size();
    Replace(at + start, end - start, Escaped(tag.substr(start, end - start)));
  }

  void EndNode() {
    if (nodes_.empty()) return;
    const OpenNode node = std::move(nodes_.back());
    nodes_.pop_back();
    for (const size_t at : node.held) {
      char text[100];
      std::snprintf(text, sizeof text, "<translate>%.9g %.9g %.9g</translate>", node.tail[0], node.tail[1],
                    node.tail[2]);
      if (HasTail(node)) Replace(at, 0, text);
    }
    if (node.isConnected && !nodes_.empty()) std::copy(node.place, node.place + 3, nodes_.back().tail);
  }

  void TakeElement(string_view rest, size_t at) {
    OpenNode& node = nodes_.back();
    const bool isMatrix = rest.starts_with("<matrix sid=\"transform\">");
    const bool isScale = rest.starts_with("<scale sid=\"scale\">");
    if ((isMatrix || isScale) && node.transform == rest.npos) {
      node.transform = at;
      if (!node.isJoint && nodes_.size() > 1 && nodes_[nodes_.size() - 2].isJoint)
        nodes_[nodes_.size() - 2].held.push_back(at);
    }
    if (isMatrix) {
      double numbers[12];
      ReadNumbers(rest, numbers, 12);
      for (size_t i = 0; i < 3; ++i) node.place[i] = numbers[4 * i + 3];
    } else if (isScale) {
      node.scale = at;
    } else if (rest.starts_with("<translate sid=\"location\">")) {
      ReadNumbers(rest, node.place, 3);
      if (node.scale != rest.npos) Swap(std::exchange(node.scale, rest.npos), at);
    } else if (rest.starts_with("<instance_controller ")) {
      MoveShape(Between(rest, " url=\"#", "\""), node);
    } else if (rest.starts_with("<connect ")) {
      ReadNumbers(rest, &connect_, 1);
      node.isConnected = connect_ == 1.0;
    } else if (rest.starts_with("<tip_")) {
      TakeTip(rest, node);
    }
  }

  /// Nodes of skinned meshes have no transform of their own.
  void MoveShape(string_view controller, const OpenNode& node) {
    const auto shape = shapes_.find(controller);
    if (shape == shapes_.end() || node.transform == string_view::npos) return;
    const string_view element = ElementAt(shape->second);
    Replace(node.transform, 0, "<matrix>" + std::string(Between(element, ">", "<")) + "</matrix>");
    Replace(shape->second, element.size(),
            "<bind_shape_matrix>1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1</bind_shape_matrix>");
    shapes_.erase(shape);
  }

  /// Bones without others at their tails tell where these are, in the space of the armature; bones lie along Y.
  void TakeTip(string_view rest, OpenNode& node) {
    const size_t axis = rest.size() > 5 ? static_cast<size_t>(rest[5] - 'x') : 3;
    if (axis > 2) return;
    ReadNumbers(rest, tip_ + axis, 1);
    if (axis == 2 && !HasTail(node)) node.tail[1] = std::hypot(tip_[0], tip_[1], tip_[2]);
  }

  /// Those that an element begins with; 0 for those that are not there.
  static void ReadNumbers(string_view element, double* numbers, size_t count) {
    const std::string text(Until(From(Until(element, "</"), element.find('>') + 1), "<"));
    const char* at = text.c_str();
    for (size_t i = 0; i < count; ++i) {
      char* end = nullptr;
      numbers[i] = std::strtod(at, &end);
      if (!std::isfinite(numbers[i])) numbers[i] = 0.0;
      at = end;
    }
  }

  string_view ElementAt(size_t at) const {
    const string_view rest = PieceAt(at);
    const size_t end = rest.find('>', std::min(rest.find("</"), rest.size()));
    return rest.substr(0, end == rest.npos ? end : end + 1);
  }

  void Swap(size_t first, size_t second) {
    const string_view one = ElementAt(first), other = ElementAt(second);
    Replace(first, one.size(), std::string(other));
    Replace(second, other.size(), std::string(one));
  }

  void Replace(size_t at, size_t length, std::string text) {
    edits_.push_back({at, length, std::move(text)});
  }

  static std::string Escaped(string_view name) {
    std::string text;
    for (const char c : name)
      text += c == '&'   ? "&amp;"
              : c == '<' ? "&lt;"
              : c == '>' ? "&gt;"
              : c == '"' ? "&quot;"
                         : std::string(1, c);
    return text;
  }

  std::string Apply() {
    // What is put in before an element comes before its replacement.
    std::stable_sort(edits_.begin(), edits_.end(), [](const Edit& a, const Edit& b) {
      return a.at != b.at ? a.at < b.at : a.length < b.length;
    });
    std::string mended;
    size_t done = 0;
    for (const Edit& edit : edits_) {
      if (edit.at < done) continue;
      mended.append(file_.substr(done, edit.at - done)).append(edit.text);
      done = edit.at + edit.length;
    }
    return mended.append(file_.substr(done));
  }

  string_view file_;
  string_view controller_;
  std::map<string_view, size_t> shapes_;  ///< where those of controllers begin
  std::vector<OpenNode> nodes_;
  std::vector<Edit> edits_;
  double connect_ = 0.0, tip_[3] = {};
};

}  // namespace

bool IsFromBlender(string_view collada) {
  return Until(collada, "</asset>").find("<authoring_tool>Blender ") != collada.npos;
}

std::string MendBlenderFile(std::string collada) { return BlenderFile(collada).Mend(); }

}  // namespace translator

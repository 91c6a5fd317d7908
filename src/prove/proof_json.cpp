// SPDX-License-Identifier: MIT
#include "prove/proof_json.h"

#include <nlohmann/json.hpp>

#include "prove/compare.h"

namespace prove {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* NameOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::Proven:
      return "proven";
    case Verdict::RigFaults:
      return "rig-faults";
    case Verdict::OurError:
      return "converter-error";
    default:
      return "not-compared";
  }
}

constexpr const char* NameOf(Severity severity) {
  return severity == Severity::Error ? "error" : severity == Severity::Warning ? "warning" : "note";
}

Json AsJson(const ErrorPlace& place) {
  return {{"error", place.error}, {"mesh", place.mesh}, {"vertex", place.vertex}, {"bone", place.bone}};
}

Json AsJson(const std::vector<NamedError>& errors) {
  Json list = Json::array();
  for (const NamedError& each : errors) {
    Json& entry = list.emplace_back(Json{{"name", each.name}});
    entry.update(AsJson(each.worst));
  }
  return list;
}

}  // namespace

Json ProofAsJson(const Proof& proof) {
  Json json{{"result", NameOf(proof.verdict)},
            {"limit", kLimit},
            {"worst", AsJson(proof.worst)},
            {"mean", proof.mean},
            {"first_bone", proof.firstBone},
            {"diagonal", proof.diagonal},
            {"seed", proof.seed},
            {"random_poses", proof.randomPoses},
            {"vertices", proof.vertices},
            {"poses", AsJson(proof.poses)},
            {"meshes", AsJson(proof.meshes)},
            {"bones", AsJson(proof.bones)},
            {"causes", Json::array()},
            {"messages", Json::array()}};
  for (const Message& each : proof.messages) {
    if (each.error > 0.0) {
      json["causes"].push_back({{"code", each.code}, {"error", each.error}, {"vertices", each.vertices}});
    }
    json["messages"].push_back({{"code", each.code},
                                {"severity", NameOf(each.severity)},
                                {"message", each.message},
                                {"fix", each.fix},
                                {"where", {{"kind", each.kind}, {"names", each.names}}}});
  }
  return json;
}

}  // namespace prove

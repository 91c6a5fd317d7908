// SPDX-License-Identifier: MIT
#include "prove/proof_json.h"

#include "core/json_output.h"
#include "prove/compare.h"

namespace prove {
namespace {

using ts3d::JsonWriter;

void WritePlace(JsonWriter& json, const ErrorPlace& place) {
  json.Member("error", place.error);
  json.Member("mesh", place.mesh);
  json.Member("vertex", place.vertex);
  json.Member("bone", place.bone);
}

void WriteErrors(JsonWriter& json, const char* name, const std::vector<NamedError>& errors) {
  json.Objects(name, errors, [&](const NamedError& each) {
    json.Member("name", each.name);
    WritePlace(json, each.worst);
  });
}

void WriteCauses(JsonWriter& json, const std::vector<ProofFinding>& findings) {
  json.OpenArray("causes");
  for (const ProofFinding& each : findings) {
    if (!(each.error > 0.0)) continue;
    json.OpenObject();
    json.Member("code", each.code);
    json.Member("error", each.error);
    json.Member("vertices", each.vertices);
    json.CloseObject();
  }
  json.CloseArray();
}

}  // namespace

const char* NameOf(Verdict verdict) {
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

void WriteProof(JsonWriter& json, const Proof& proof) {
  json.Member("result", NameOf(proof.verdict));
  json.Member("limit", kLimit);
  json.OpenObject("worst");
  WritePlace(json, proof.worst);
  json.CloseObject();
  json.Member("mean", proof.mean);
  json.Member("first_bone", proof.firstBone);
  json.Member("diagonal", proof.diagonal);
  json.Member("seed", proof.seed);
  json.Member("random_poses", proof.randomPoses);
  if (proof.mostInfluences > 0) json.Member("max_influences", proof.mostInfluences);
  if (!proof.modelUnit.empty()) json.Member("unit", proof.modelUnit);
  json.Member("vertices", proof.vertices);
  WriteErrors(json, "poses", proof.poses);
  WriteErrors(json, "meshes", proof.meshes);
  WriteErrors(json, "bones", proof.bones);
  WriteCauses(json, proof.findings);
  json.OpenArray("messages");
  for (const ProofFinding& each : proof.findings) ts3d::WriteFinding(json, each);
  json.CloseArray();
}

}  // namespace prove

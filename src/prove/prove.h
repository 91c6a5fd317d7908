// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "actor/actor.h"
#include "core/finding.h"
#include "prove/causes.h"
#include "scene/model/scene.h"

namespace prove {

struct ProofOptions {
  uint64_t seed = 1;
  int poses = 64;              ///< beside bind pose and present pose
  unsigned threads = 0;        ///< at most; 0: one for each core
  int mostInfluences = 0;      ///< that vertices were to keep; 0: all
  std::string modelUnit = {};  ///< of a model other than FBX; empty: that of its format
};

/// Where model and package are farthest apart, in parts of the model's diagonal.
struct ErrorPlace {
  double error = 0.0;
  std::string mesh;  ///< mesh file
  size_t vertex = 0;
  std::string bone;  ///< that moves the vertex most
};

struct NamedError {
  std::string name;  ///< of a pose, mesh file or bone
  ErrorPlace worst;
};

/// Something that a person should know about a proof.
struct ProofFinding : ts3d::Finding {
  double error = 0.0;   ///< that it causes, in parts of the diagonal; 0: none
  size_t vertices = 0;  ///< that it moves beyond the limit
};

enum class Verdict {
  Proven,       ///< within the limit, everywhere
  RigFaults,    ///< beyond it, where the format cannot hold what the rig does
  OurError,     ///< beyond it, and the converter is at fault
  NotCompared,  ///< model and package do not belong together
};

/// Whether a package moves as its model does.
struct Proof {
  Verdict verdict = Verdict::NotCompared;
  ErrorPlace worst;
  double mean = 0.0;      ///< of the vertices' worst errors, in parts of the diagonal
  double diagonal = 0.0;  ///< in units of the model
  uint64_t seed = 0;
  int randomPoses = 0;
  int mostInfluences = 0;  ///< that vertices were to keep; 0: all
  std::string modelUnit;   ///< that the model was said to be in; empty: that of its format
  size_t vertices = 0;     ///< compared, in each pose
  std::string firstBone;   ///< the first where model and package part; empty: none
  std::vector<NamedError> poses, meshes, bones;
  std::vector<ProofFinding> findings;
};

/// The vertices of a mesh file in one pose, where model and package have them.
struct HeatMesh {
  std::string name;
  std::vector<std::array<double, 3>> model, package;
};

/// Model and package in the pose in which they are farthest apart, in the space of the files.
struct HeatMap {
  std::string pose;
  std::vector<HeatMesh> meshes;  ///< those of the package that were compared, in its order
};

/// Compares `actor`, a package read back, with the model `scene`.
/// @param heat  gets the worst pose; may be null
Proof Prove(scene::KFbxScene& scene, const actor::Actor& actor, const ProofOptions& options,
            HeatMap* heat = nullptr);

/// Loads the model `path`, with backslashes, and compares.
/// @return false, with an `error`, when it cannot be loaded
bool ProveModel(const std::string& path, const actor::Actor& actor, const ProofOptions& options, Proof& proof,
                std::string& error, HeatMap* heat = nullptr);

}  // namespace prove

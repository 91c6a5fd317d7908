// SPDX-License-Identifier: MIT
#include "prove/causes.h"

namespace prove {
namespace {

constexpr std::string_view kSendIt =
    "This is an error of the converter. Send us the model, the package and this report.";

constexpr CauseWords kWords[kCauseCount] = {
    {"none", false, "", ""},
    {"no-skeleton", false,
     "Without a skeleton, meshes are stored as they were modelled, without the place, turn and scale of "
     "their "
     "objects.",
     "Convert with --attach-rigid, or apply the transforms of the objects before the export."},
    {"no-bind-pose", false,
     "The file has no bind pose: bones are taken as they stand now, and meshes as they were modelled.",
     "Convert with --bind-from-skin, or switch on the bind pose in the exporter."},
    {"mesh-not-bound", false,
     "Missing from the bind pose: stored as it was modelled, without the position, rotation and scale of its "
     "object.",
     "Convert with --attach-rigid or --bind-from-skin, or reset the bind pose with this mesh."},
    {"bone-not-bound", true,
     "Missing from the bind pose: used as it stands now, which is not where its skin was bound.",
     "Convert with --bind-from-skin, or reset the bind pose with all bones."},
    {"parent-not-bound", true,
     "The bind pose has the bone but not its parent node, so the bone ends up in the wrong place.",
     "Reset the bind pose with all bones, or parent the bone to another one."},
    {"local-matrix", true,
     "The bind pose says that the matrix is relative to the parent, but it is used as if it were in the "
     "world.",
     "Export the bind pose with world matrices; most exporters do by themselves."},
    {"node-between-bones", true,
     "A node that is not a bone stands between this bone and its parent bone; its transform is lost.",
     "Make the node a bone, or parent the bone directly to the other one."},
    {"root-scale", true,
     "The root bone is scaled, and stored too far from the origin; all of the model floats until an "
     "animation "
     "places the root.",
     "Convert with --rigid-bones, or apply the scale before the export."},
    {"scaled-bones", true,
     "Below a bone with a scale of its own. Bones of the format have no scale, so this bone is displaced.",
     "Convert with --rigid-bones, or apply the scale of all bones before the export."},
    {"mirrored-bone", true,
     "Mirrored relative to its parent bone. Bones of the format have no scale, so this one is displaced.",
     "Remove the negative scale (apply or freeze the scale) and mirror by renaming and rotating instead."},
    {"uneven-scale", true,
     "The scale differs along the axes. Bones of the format have no scale, so what turns below does not "
     "shear "
     "as it does in the model.",
     "Apply or freeze the scale of the bone and of everything above it, then export again."},
    {"scaled-now", true,
     "The bone's scale now differs from that at bind time. Bones of the format have no scale.",
     "Remove animated scale from the rig."},
    {"other-bind-pose", true,
     "The skin was bound in another pose than the bind pose. Where several bones share a point, the package "
     "blends what was blended already.",
     "Convert with --bind-from-skin, or reset the bind pose."},
    {"several-bind-poses", false,
     "The file has several bind poses, and they differ: mesh and skeleton are stored in different ones.",
     "Convert with --bind-from-skin, or delete all bind poses but one."},
    {"second-root", true,
     "Below another root bone. Only the first skeleton is used, and the weights for this bone are lost.",
     "Convert with --join-roots, or parent all bones to one root bone."},
    {"hidden-bones", true,
     "Below a node that the file gives no type. Bones below it are not found, and the weights for this one "
     "are lost.",
     "Convert with --open-groups, or move the skeleton to the top of the scene."},
    {"namesake", true,
     "The weights are for a bone of this name in another skeleton, which is left out; the first skeleton's "
     "bone "
     "of this name gets them.",
     "Convert with --join-roots, which tells them apart, or export one character at a time."},
    {"same-bone-name", true, "Several bones have this name; the weights of all of them go to the first.",
     "Give each bone a unique name."},
    {"unnamed-bone", true,
     "The bone has no name, or nothing of it is left once invalid characters are removed; its weights are "
     "lost.",
     "Give the bone a name."},
    {"unknown-link", true, "Meshes have weights for this node, but it is not a bone; they are lost.",
     "Move the weights to bones, or make the node one."},
    {"no-skin", false, "No skin: it sticks to the root bone as a whole, not to the node it is parented to.",
     "Convert with --attach-rigid, or bind it to the skeleton."},
    {"unweighted-vertices", false,
     "Points without a weight follow the root bone; in the model they follow the mesh's own node.",
     "Paint weights for them."},
    {"additive-skin", false,
     "The weights are meant to add to each other. The package knows blended weights only.",
     "Bind it with normalised weights."},
    {"total-one-skin", false,
     "Weights that do not add up to 1 are meant to move points only in part. The package stores them as full "
     "weights.",
     "Bind it with normalised weights."},
    {"bad-weights", false, "Weights that are negative, all but cancel each other out, or are all 0.",
     "Normalise the weights."},
    {"single-precision", false,
     "So far from the origin, or so many bones below each other, that the runtime's single precision shows.",
     "Move the model to the origin before the export."},
    {"max-influences", false, "Vertices lose their weakest influences, as --max-influences asks for.",
     "Allow more influences, or paint the weights for fewer."},
    {"wrong-place", false, "Vertices lie where neither the model nor the rules of the format put them.",
     kSendIt},
    {"wrong-bone", true, "The bone stands where neither the model nor the rules of the format put it.",
     kSendIt},
    {"wrong-weights", false, "Vertices have weights that neither the model nor the rules of the format give.",
     kSendIt},
    {"unexplained", false,
     "The package moves differently from the model, and nothing in the rig explains why.", kSendIt}};

}  // namespace

const CauseWords& WordsOf(Cause cause) { return kWords[static_cast<size_t>(cause)]; }

}  // namespace prove

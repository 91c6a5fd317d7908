// SPDX-License-Identifier: MIT
//
// All findings and their words. docs/check.md lists the codes.
#pragma once

#include "core/finding.h"

namespace ts3d {

/// One problem that rigs can have. Each "{}" in the text stands for a value of the model.
struct FindingKind {
  std::string_view code;  ///< stable; scripts may rely on it
  Severity severity;
  Subject subject;
  std::string_view text;
  std::string_view fix;  ///< empty when there is nothing to do
};

namespace findings {

using enum Severity;
using enum Subject;

// The file.
inline constexpr FindingKind kNoFile{"no-file", Error, File, "The model file does not exist.",
                                     "Check the path and the name."};
inline constexpr FindingKind kNotLoaded{
    "not-loaded", Error, File, "The model cannot be loaded: {}.",
    "Export it again, as FBX 7.4 (\"FBX 2014\") or later; a damaged download has to be fetched again."};
inline constexpr FindingKind kDamagedArray{
    "damaged-array", Warning, File,
    "The file is damaged: {} cannot be unpacked, and what it holds is missing.",
    "Export it again; a damaged download has to be fetched again."};
inline constexpr FindingKind kPassword{"password", Error, File, "The model is protected by a password.",
                                       "Save it without the password."};
inline constexpr FindingKind kNoMesh{"no-mesh", Error, File,
                                     "The model has no mesh with points, so there is nothing to convert.",
                                     "Include the meshes in the export."};
inline constexpr FindingKind kMotionOnly{
    "no-mesh", Error, File,
    "{} and no mesh: this file holds a motion, or a skeleton alone, and no model to convert.",
    "Convert the file that holds the character, or include the meshes in the export."};
inline constexpr FindingKind kDecimalCommas{
    "decimal-commas", Warning, File,
    "The numbers in this text file have decimal commas. Commas also separate the numbers, so none of them "
    "can be read correctly, and the package is of no use.",
    "Export it again as a binary file, or with a system language that uses decimal points."};
inline constexpr FindingKind kRepairHelps{
    "repair-helps", Note, File, "{} was tried on this model and helps: without it, {}.",
    "Convert with this option, or with --repair for all that a model needs."};
inline constexpr FindingKind kMaxInfluences{"max-influences", Note, File,
                                            "Vertices are to keep their {} strongest influences: {}.", ""};
inline constexpr FindingKind kRepairProof{"repair-proof", Note, File, "Compared with the model: {}.", ""};
inline constexpr FindingKind kAllLeftOut{
    "all-left-out", Warning, File, "Every mesh is left out, so the package shows nothing.",
    "Rename the meshes, rename the file if it is not an actor, or exclude fewer names."};

inline constexpr FindingKind kActor{"actor", Note, File,
                                    "The path makes the model an {}: it is turned upright, its head parts "
                                    "are left out, and it gets the product's materials.",
                                    "If it is not meant to be one, remove \"actor (...)\" from its path."};
inline constexpr FindingKind kMotion{"motion-left-out", Note, File,
                                     "Packages hold no animation; what the file has is left out: {}.",
                                     "The model itself needs no change."};
inline constexpr FindingKind kReadAs{
    "read-as", Note, File, "This is not an FBX file: {}.",
    "If its size is wrong, name the unit that the model is really in with --unit."};
inline constexpr FindingKind kAvatar{"avatar", Note, File,
                                     "The file says which human bones its bones stand for.",
                                     "--rename-preset vrm gives them their product names."};
inline constexpr FindingKind kLicence{"licence", Note, File, "The file's terms of use: {}.", ""};

// The skeleton.
inline constexpr FindingKind kNoSkeleton{
    "no-skeleton", Warning, File,
    "The model has no skeleton; its meshes will be attached to a single placeholder bone, \"dummy_bone\".",
    "Export the armature or joints together with the meshes."};
inline constexpr FindingKind kStaticModel{
    "static-model", Note, File,
    "No skeleton and no skin: the model will not move. It is attached to a single placeholder bone, "
    "\"dummy_bone\".",
    "If it is to move, export the armature or joints together with the meshes."};
inline constexpr FindingKind kPlaceLost{
    "place-lost", Warning, Mesh,
    "Without a skeleton, a mesh is stored as it was modelled, around the origin; the position, rotation and "
    "scale of its object are lost.",
    "Convert with --attach-rigid, or apply the transforms of the objects before the export."};
inline constexpr FindingKind kNoBindPose{
    "no-bind-pose", Warning, File,
    "The file has no bind pose. Bones are used as they stand now and meshes as they were modelled, and the "
    "two do not match.",
    "Convert with --bind-from-skin, or enable the bind pose in the exporter."};
inline constexpr FindingKind kNoBindPoseHarmless{
    "no-bind-pose-harmless", Note, File,
    "The file has no bind pose, but its bones and meshes stand where they were bound.", ""};
inline constexpr FindingKind kHiddenBones{
    "hidden-bones", Warning, Node,
    "The file has no attribute for this node, as is the case for the groups and Nulls of some exporters. "
    "Nothing below such a node is found, which includes {} skeleton nodes.",
    "Convert with --open-groups, or move the skeleton to the top of the scene."};
inline constexpr FindingKind kIdleHiddenBones{"idle-hidden-bones", Note, Node,
                                              "The file has no attribute for this node, so the {} skeleton "
                                              "nodes below it are not found. No mesh follows them.",
                                              ""};
inline constexpr FindingKind kSecondRoot{
    "second-root", Warning, Bone,
    "The skeleton has more than one root bone. Only the first one is used, \"{}\"; this one and the bones "
    "below it are left out, and what they move will not follow.",
    "Convert with --join-roots, or parent all bones to one root bone."};
inline constexpr FindingKind kIdleSecondRoot{
    "idle-second-root", Note, Bone,
    "Another root bone beside \"{}\". It is left out together with the bones below it; no mesh follows them.",
    ""};
inline constexpr FindingKind kMirroredBone{
    "mirrored-bone", Warning, Bone,
    "Mirrored: the scale in the bind pose is negative. The skeleton will not import well.",
    "Remove the negative scale (apply or freeze the scale) and mirror by renaming and rotating instead."};
inline constexpr FindingKind kUnevenScale{
    "uneven-scale", Warning, Bone, "The scale differs along the axes; skeleton and skin may look odd.",
    "Apply or freeze the scale of the bone and of everything above it, then export again."};
inline constexpr FindingKind kLocalMatrix{
    "local-matrix", Warning, Bone,
    "The bind pose gives this matrix relative to the parent, but it is used as a world matrix.",
    "Export the bind pose with world matrices; most exporters do so by default."};
inline constexpr FindingKind kNearlyEvenScale{"nearly-even-scale", Note, Bone,
                                              "The conversion will warn of a scale that differs along the "
                                              "axes, but the difference is too small to see.",
                                              ""};
inline constexpr FindingKind kBoneNotBound{
    "bone-not-bound", Warning, Bone,
    "A bone with weights is missing from the bind pose; it is used as it stands now, which is not where its "
    "skin was bound. Farthest off is \"{}\", by {}.",
    "Convert with --bind-from-skin, or reset the bind pose with all bones."};
inline constexpr FindingKind kBoneNotBoundHarmless{
    "bone-not-bound-harmless", Note, Bone,
    "A bone with weights is missing from the bind pose, but it stands where its skin was bound.", ""};
inline constexpr FindingKind kOtherBindPose{
    "other-bind-pose", Note, Bone,
    "The bind pose is not the pose in which the skin was bound. {} bones differ, this one most, by {}. The "
    "package is sound, but stands in the bind pose.",
    "Convert with --bind-from-skin to have it stand in the pose in which it was bound."};
inline constexpr FindingKind kIdleBoneNotBound{"idle-bone-not-bound", Note, Bone,
                                               "A bone without weights is missing from the bind pose, as end "
                                               "bones often are; it is used as it stands now.",
                                               ""};
inline constexpr FindingKind kParentNotBound{
    "parent-not-bound", Warning, Bone,
    "The bind pose has the bone but not its parent node, so the bone ends up in the wrong place, {} off.",
    "Reset the bind pose with all bones, or parent the bone to another one."};
inline constexpr FindingKind kNodeBetween{
    "node-between-bones", Warning, Bone,
    "Between this bone and its parent bone there is \"{}\", which is not a bone. Its position and rotation "
    "are lost, and the bone does not follow \"{}\" as it should: {} off.",
    "Convert with --rigid-bones, or turn the node into a bone."};
inline constexpr FindingKind kRootScale{
    "root-scale", Warning, Bone,
    "The root bone is scaled by {}. The stored root is put {} times too far from the origin, at {} instead "
    "of {}: the model floats in the runtime until an animation places it.",
    "Convert with --rigid-bones, or apply the scale before the export."};
inline constexpr FindingKind kRootScaleHarmless{
    "root-scale-harmless", Note, Bone,
    "The root bone is scaled by {}. It stands at the origin, so the stored skeleton is as it should be.",
    "Nothing needs to be done; convert with --rigid-bones if the root is to be moved later."};
inline constexpr FindingKind kScaledBones{
    "scaled-bones", Warning, Bone,
    "Bones lose their scale, and what is below them is displaced: skin and bones no longer match. {} bones "
    "are off, this one most, by {}.",
    "Convert with --rigid-bones, or apply the scale of all bones before the export."};
inline constexpr FindingKind kBonesAstray{
    "bones-astray", Warning, Bone,
    "At rest the stored bones are not where their skin is. {} bones are off, this one most, by {}.",
    "Reset the bind pose with all bones and meshes, or try --repair."};
inline constexpr FindingKind kPosedBones{
    "posed-bones", Note, Bone, "Posed differently from the bind pose; the package gets the bind pose.", ""};
inline constexpr FindingKind kSameBoneName{
    "same-bone-name", Warning, Bone, "Several bones share this name; all weights go to the first of them.",
    "Give each bone a unique name."};
inline constexpr FindingKind kIdleSameBoneName{
    "idle-same-bone-name", Note, Bone, "Several bones share this name; only the first of them has weights.",
    ""};
inline constexpr FindingKind kUnnamedBone{"unnamed-bone", Warning, Bone,
                                          "A bone below \"{}\" has no name, or nothing of it is left once "
                                          "invalid characters are removed; its weights are lost.",
                                          "Give the bone a name."};
inline constexpr FindingKind kBoneNameChanged{"bone-name-changed", Note, Bone,
                                              "\"{}\" in the name becomes \"{}\": a character that names "
                                              "cannot hold is removed, together with the one before it.",
                                              "Use only letters, digits, spaces and underscores."};
inline constexpr FindingKind kXmlBoneName{
    "xml-bone-name", Warning, Bone,
    "The name contains &, < or \", which goes into the document as it is and makes it unreadable.",
    "Use only letters, digits, spaces and underscores."};

// Actors.
inline constexpr FindingKind kMissingBones{
    "missing-bones", Warning, Bone,
    "The path of the model makes it an actor, but the skeleton lacks bones that the product moves in actors; "
    "their motion will be lost.",
    "Rename the bones of the rig, or remove \"actor (...)\" from the path if this is not an actor."};
inline constexpr FindingKind kMissingControls{
    "missing-control-bones", Note, Bone,
    "The skeleton lacks bones that the product uses for twist and control; it works without them.", ""};
inline constexpr FindingKind kSimilarBone{"similar-bone", Note, Bone,
                                          "The bone may be what the product calls \"{}\".",
                                          "If so, rename it in the rig."};
inline constexpr FindingKind kBoneCase{
    "bone-letter-case", Note, Bone,
    "The product spells this bone \"{}\". Twist and control bones are looked up with exactly these capitals.",
    "Rename the bone, capitals included."};

// Meshes.
inline constexpr FindingKind kHeadPart{
    "head-part", Note, Mesh,
    "Judging by its name, a part of the head; it is left out, as actors get the product's own head.",
    "To keep a part, give it another name."};
inline constexpr FindingKind kHiddenMesh{"hidden-mesh", Note, Mesh,
                                         "Hidden in the modelling program; it is converted all the same.",
                                         "Leave it out with --exclude, or delete it before the export."};
inline constexpr FindingKind kExcluded{"excluded", Note, Mesh, "Left out, as you asked for.", ""};
inline constexpr FindingKind kUnknownExclusion{
    "unknown-exclusion", Warning, Mesh, "There is nothing of this name to leave out. The nearest names: {}.",
    "Check the name; it is that of the output mesh."};
inline constexpr FindingKind kEmptyMesh{"empty-mesh", Note, Mesh, "No points, so nothing to convert.", ""};
inline constexpr FindingKind kHidingMesh{
    "hidden-by-empty-mesh", Warning, Mesh,
    "Below the mesh \"{}\", which has no points; nothing below that mesh gets into the package.",
    "Delete the empty mesh, or move the meshes out from below it."};
inline constexpr FindingKind kUnusedSlot{
    "unused-material", Note, Mesh,
    "No triangle uses the material of this part; the package lists it with an empty file.",
    "Delete the unused material slots."};
inline constexpr FindingKind kShiftedParts{
    "shifted-parts", Warning, Mesh,
    "Gets the material of another part. Materials and mesh files are numbered separately, and the numbers "
    "differ from \"{}\" on, which is in only one of the two lists.",
    "Delete material slots that no face uses, and empty meshes; or leave such a part out with --exclude."};
inline constexpr FindingKind kStrayPoints{"stray-points", Warning, Mesh,
                                          "{} points are far from all others: up to {} from the middle of "
                                          "the model, which otherwise extends no farther than {}.",
                                          "Delete stray points and forgotten objects."};
inline constexpr FindingKind kNotAMesh{"not-a-mesh", Warning, Node,
                                       "Not a mesh but a {}; only polygon meshes are converted.",
                                       "Turn it into polygons before the export."};
inline constexpr FindingKind kLine{"line-left-out", Note, Node,
                                   "Not a mesh but a {}; only polygon meshes are converted.", ""};
inline constexpr FindingKind kNoTriangles{"no-triangles", Note, Mesh,
                                          "Points but no faces; nothing will show.",
                                          "Delete it, or leave it out with --exclude."};
inline constexpr FindingKind kLoosePoints{"loose-points", Note, Mesh,
                                          "{} of {} points belong to no face; they only take up space.",
                                          "Delete loose points and edges."};
inline constexpr FindingKind kDroppedPolygons{
    "dropped-polygons", Warning, Mesh, "{} polygons refer to points that do not exist; they are left out.",
    "Clean the mesh up and export it again."};
inline constexpr FindingKind kDegenerate{"degenerate-triangles", Note, Mesh,
                                         "{} triangles use a point twice; they are left out.",
                                         "Merge points or clean the mesh up."};
inline constexpr FindingKind kNoMaterialTriangles{
    "lost-triangles", Warning, Mesh,
    "{} triangles have a material number that the mesh does not have; they are left out.",
    "Assign the materials again."};
inline constexpr FindingKind kBadPoints{"bad-points", Warning, Mesh,
                                        "{} points have no usable position (not a number, or infinite).",
                                        "Clean the mesh up and export it again."};
inline constexpr FindingKind kShapes{"shapes", Note, Mesh,
                                     "{} shape keys (blend shapes): the mesh is stored with their current "
                                     "values; the keys themselves are not in the package.",
                                     ""};

// Skins.
inline constexpr FindingKind kMeshNotBound{"mesh-not-bound", Warning, Mesh,
                                           "Missing from the bind pose: stored as it was modelled, without "
                                           "the position, rotation and scale of its object.",
                                           "Convert with --attach-rigid, apply the transforms of the object, "
                                           "or reset the bind pose with this mesh."};
inline constexpr FindingKind kSkinNotBound{
    "skin-not-bound", Warning, Mesh,
    "Missing from the bind pose: stored as it was modelled, but its bones stand elsewhere. Skin and bone are "
    "farthest apart at \"{}\", by {}.",
    "Convert with --bind-from-skin, or reset the bind pose with this mesh and its bones."};
inline constexpr FindingKind kSkinOffBones{
    "skin-off-bones", Warning, Mesh,
    "The skin is not where its bones are. They are farthest apart at \"{}\", by {}.",
    "Reset the bind pose with all bones and meshes, or try --repair."};
inline constexpr FindingKind kNoSkin{
    "no-skin", Warning, Mesh, "No skin: it will stick to the root bone \"{}\" as a whole.",
    "Bind it to the skeleton; give all points full weight on one bone to make it follow that one."};
inline constexpr FindingKind kNoSkinOnBone{
    "no-skin-on-bone", Warning, Mesh,
    "Parented to the bone \"{}\" without a skin. Only skins count: it will stick to the root bone \"{}\".",
    "Convert with --attach-rigid, or bind it to the skeleton with full weight on that bone."};
inline constexpr FindingKind kSeveralSkins{"several-skins", Note, Mesh,
                                           "{} skins; their weights are combined.", ""};
inline constexpr FindingKind kUnknownLink{
    "unknown-link", Warning, Bone,
    "Meshes have weights for this name, but the skeleton that is used has no such bone; {} weights are lost.",
    "Convert with --join-roots, or --open-groups where a group hides the bones; or move the weights to other "
    "bones."};
inline constexpr FindingKind kNamesake{
    "namesake", Warning, Bone,
    "Meshes have weights for a bone of this name in another skeleton, which is left out. They go to the bone "
    "of this name in the skeleton that is used.",
    "Convert with --join-roots, which tells them apart, or export one character at a time."};
inline constexpr FindingKind kNoLink{"cluster-without-bone", Warning, Mesh,
                                     "{} weight lists name no bone; their weights are lost.",
                                     "Bind the mesh again."};
inline constexpr FindingKind kLostJoint{
    "joint-missing", Warning, Bone,
    "Skins have weights for this joint, but the file has no joint of this name; {} points lose them. Points "
    "without other weights will stay with the root bone.",
    "Export the whole skeleton with the skin, or move the weights to other joints."};
inline constexpr FindingKind kUnweighted{
    "unweighted-vertices", Warning, Mesh,
    "{} of {} points have no weight and will stay with the root bone. Most are near {}.",
    "Paint weights for them; select the points without weights to find them."};
inline constexpr FindingKind kManyInfluences{
    "many-influences", Note, Mesh,
    "{} of {} points follow more than 4 bones, up to {}. All are stored; some graphics paths use 4.",
    "Limit the weights to 4 bones a point if the skin tears."};
inline constexpr FindingKind kBadWeights{
    "bad-weights", Warning, Mesh,
    "{} points have negative weights, or weights that add up to nothing, and will be misplaced.",
    "Normalise the weights."};
inline constexpr FindingKind kUnevenWeights{
    "unnormalised-weights", Note, Mesh,
    "The weights of {} points do not add up to 1; they are stored as if they did.", ""};
inline constexpr FindingKind kBadIndices{
    "weights-out-of-range", Note, Mesh,
    "{} weights are for points that the mesh does not have; they are lost.",
    "If the mesh was changed after it was bound, bind it again."};
inline constexpr FindingKind kAdditive{
    "additive-skin", Warning, Mesh,
    "The weights are meant to add to each other. The package knows blended weights only, so the mesh will "
    "move differently from how it does in the modelling program.",
    "Bind it with normalised weights."};
inline constexpr FindingKind kTotalOne{"total-one-skin", Note, Mesh,
                                       "Weights that add up to less than 1 are meant to move points only in "
                                       "part. The package stores them as full weights.",
                                       "Bind it with normalised weights if it moves too much."};

// Names.
inline constexpr FindingKind kNameChanged{"mesh-name-changed", Note, Mesh,
                                          "\"{}\" in the name becomes \"{}\": a character that names cannot "
                                          "hold is removed, together with the one before it.",
                                          "Use only letters, digits, spaces and underscores."};
inline constexpr FindingKind kXmlName{
    "xml-name", Warning, Mesh,
    "The name contains &, < or \", which goes into the document as it is and makes it unreadable.",
    "Use only letters, digits, spaces and underscores."};
inline constexpr FindingKind kUnwritable{"unwritable-name", Warning, Mesh,
                                         "The name cannot be used for a file, so the mesh is left out.",
                                         "Use only letters, digits, spaces and underscores."};
inline constexpr FindingKind kNameClash{
    "name-clash", Warning, Mesh,
    "\"{}\" and \"{}\" make files of this same name, and only the last of them gets into the package.",
    "Rename one of the meshes. Further materials of a mesh add _a, _b, ... to its name."};
inline constexpr FindingKind kCaseClash{
    "name-case-clash", Warning, Mesh,
    "\"{}\" and \"{}\" make files whose names differ only in capitals; where capitals do not count, one "
    "replaces the other.",
    "Rename one of the meshes. Further materials of a mesh add _a, _b, ... to its name."};

// Materials and pictures.
inline constexpr FindingKind kNoMaterial{"no-material", Note, Mesh, "No material; a grey one is made.", ""};
inline constexpr FindingKind kUnknownMaterial{
    "unknown-material", Warning, Material,
    "Unknown kind of shading; only Phong and Lambert are supported. All colours are stored as black, or as "
    "white below a picture.",
    "Change to Phong or Lambert; other kinds do not export well."};
inline constexpr FindingKind kOpacityZero{
    "opacity-zero", Note, Material,
    "The model gives transparency 0 (solid), and the converter stores that number as opacity: 0, as for most "
    "exports. Where the runtime takes that into account, nothing is visible.",
    "If it is invisible in the product, set the transparency factor of the material to 1 and export again."};
inline constexpr FindingKind kOpacityPartial{
    "opacity-partial", Note, Material,
    "The transparency {} is stored as opacity: the more transparent in the model, the more solid here.",
    "Set the transparency factor to the opacity that you want."};
inline constexpr FindingKind kColourRange{
    "colour-range", Note, Material, "A colour is below 0 or above 1 and is stored below 0 or above 255.",
    "Keep colours between 0 and 1."};
inline constexpr FindingKind kSeveralTextures{"several-textures", Note, Material,
                                              "{} colour pictures; only the first, or lowest, is used.", ""};
inline constexpr FindingKind kNotAPicture{
    "texture-not-a-file", Warning, Material,
    "The colour is made by the modelling program, or a stack of layers without a picture; it is left out.",
    "Bake the colour into one picture."};
inline constexpr FindingKind kMapsIgnored{"maps-ignored", Note, Material,
                                          "Only the colour picture is used, not the one for {}.", ""};
inline constexpr FindingKind kTextureNameless{"texture-nameless", Warning, Material,
                                              "The colour picture has no file name.",
                                              "Save the picture and assign it again."};
inline constexpr FindingKind kTextureClash{
    "texture-clash", Warning, Texture,
    "\"{}\" and \"{}\" get this one name in the package, and all materials show the same picture.",
    "Rename one of the pictures; whatever follows the first dot of a name does not count."};
inline constexpr FindingKind kTextureUnused{
    "texture-unusable", Warning, Mesh,
    "No texture coordinates, so the picture of the material \"{}\" is not used.", "Unwrap it (UV)."};
inline constexpr FindingKind kNoCoordinates{"no-uvs", Note, Mesh, "No texture coordinates.", ""};
inline constexpr FindingKind kMissingCoordinates{
    "missing-uvs", Warning, Mesh, "{} vertices have no texture coordinate; the picture smears there.",
    "Unwrap all faces (UV)."};

// What only the caller of the check can tell.
inline constexpr FindingKind kTextureMissing{
    "texture-missing", Warning, Texture, "The picture \"{}\" is not found. Looked at: {}.",
    "Put the picture beside the model, or name its folder with --textures."};
inline constexpr FindingKind kTextureUnreadable{"texture-unreadable", Warning, Texture,
                                                "The picture {} cannot be converted: {}.",
                                                "Save it as .tga beside the model."};

}  // namespace findings

}  // namespace ts3d

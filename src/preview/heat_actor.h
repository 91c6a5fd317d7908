// SPDX-License-Identifier: MIT
#pragma once

#include "actor/actor.h"
#include "preview/stand.h"
#include "prove/prove.h"

namespace preview {

/// The worst pose of a proof as something to draw: the model as it was evaluated, in grey, and to the right of it the
/// package, coloured by how far each vertex is from the model: blue up to the limit of proofs, then a colour for each
/// power of ten, red from a tenth of the diagonal on. Both stand upright along Y and face +Z.
/// @param package  that was proven
/// @param stand    of the package
/// @param diagonal of the model
actor::Actor HeatActor(const actor::Actor& package, const prove::HeatMap& heat, const Stand& stand,
                       double diagonal);

}  // namespace preview

// support/RandomModels.h
// Small structures of every kind from a seed, for statements that must hold whatever the model: warped shells, mixed
// elements, materials of several densities, offset beams, loads of all kinds, nodes numbered at random.
#pragma once

#include "support/ModelText.h"

namespace tarnvexo::test {

enum class Supports {
    None,
    ThreeTwoOne, // what holds a rigid body and no more
    More,        // and others beside them
};

// By turns a bumpy plate with stiffeners, a tube of shells with an end wall, and a frame of beams; 12 to 60 nodes.
ModelText RandomModel(unsigned seed, Supports supports);

} // namespace tarnvexo::test

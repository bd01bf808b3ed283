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
    Clamped,     // all of one node, the translations of another: supports without a direction
};

// Flat: every quadrilateral in a plane of its own. The stiffness of a warped one is that of its projection, which a
// rigid rotation strains; statements about free motions hold for flat ones.
enum class Quads { Warped, Flat };

// By turns a bumpy plate with stiffeners, a tube of shells with an end wall, and a frame of beams; 12 to 60 nodes.
ModelText RandomModel(unsigned seed, Supports supports, Quads quads = Quads::Warped);

// One of these or two apart, each held by itself, with beams into the open, in sizes from 6 to about 400 nodes, with
// several loads of every kind. Without supports always one: nothing balances parts one by one.
ModelText RandomAssembly(unsigned seed, Supports supports, Quads quads);

} // namespace tarnvexo::test

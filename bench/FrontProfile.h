// Where the operations and the time of a multifrontal factorisation are, by height of the fronts.
#pragma once

#include "solver/BlockMatrix.h"

namespace tarnvexo {

// For every class of heights, on standard output: number of fronts, their share of operations, of the seconds that
// solver/FrontCost expects and of those measured. Every front of the pattern is eliminated, alone and without its
// numbers, on one thread (LoneFront.h); adding it to its parent is in the expected seconds only.
void PrintFrontProfile(const BlockPattern& pattern);

} // namespace tarnvexo

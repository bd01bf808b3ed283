// solver/FrontSchedule.h
// Who computes which front, and where what is left of it waits for its parent.
//
// The tree is cut into subtrees, which one thread each computes alone, whoever is free taking the next, and the fronts
// above them, which all threads compute together one after the other. What is left of a front waits in one of two
// stacks by turns: that of its depth, even or odd. A front's children lie on top of the one stack while it is made on
// top of the other, so nothing is ever moved. All places are known beforehand.
#pragma once

#include "solver/FrontTree.h"

#include <cstddef>
#include <vector>

namespace tarnvexo {

struct FrontSchedule {
    std::vector<int> subtrees;   // their last fronts, the longest work first
    std::vector<int> shared;     // the fronts above, in order of computation
    std::vector<int> firstFront; // of the subtree of every front: it ends with the front itself
};

// For a crew of `members` threads; one thread has no use for a cut.
FrontSchedule ScheduleFronts(const FrontTree& tree, int members);

// What is left of front f begins at entry at[f] of its stack: stacks[side[f]] of the thread for fronts inside a
// subtree, those of all threads for shared ones; the last front of a subtree leaves it in a place of its own.
struct UpdatePlaces {
    enum Side : unsigned char { Even, Odd, OfItsOwn };

    std::vector<std::size_t> at;
    std::vector<Side> side;
    std::size_t ownStack[2]; // entries that each thread's stacks need at most
    std::size_t sharedStack[2];
    std::size_t ofItsOwn; // entries for what all subtrees leave

    // Of a crew: the stacks of threads and those of all are not in use at the same time.
    std::size_t Entries(int members) const;
};

// sizes [fronts]: entries of what is left of each.
UpdatePlaces PlaceUpdates(const FrontTree& tree, const FrontSchedule& schedule, const std::vector<std::size_t>& sizes);

} // namespace tarnvexo

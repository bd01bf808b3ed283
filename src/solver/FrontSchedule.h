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

// Where the numbers of a front wait that are left for its parent: on a stack of the thread for fronts inside a subtree,
// on one of those of all threads for shared ones; the last front of a subtree leaves them in a place of its own.
struct UpdatePlaces {
    enum Side : unsigned char { Even, Odd, OfItsOwn };

    std::vector<std::size_t> at; // entry of the stack, or of the place of its own
    std::vector<Side> side;
    std::size_t ownStack[2]; // entries that each thread's stacks need at most
    std::size_t sharedStack[2];
    std::size_t ofItsOwn; // entries for what all subtrees leave

    // Entries for a crew. The stacks of threads and those of all are not in use at the same time and share memory:
    // first the places of their own, then the stacks.
    std::size_t Entries(int members) const;

    // First entry of a front, counted from the beginning of the stacks or of the places of their own. stack: number of
    // the thread, or SharedStack.
    static constexpr int SharedStack = -1;
    std::size_t Begin(int front, int stack) const;
};

// sizes [fronts]: entries of what is left of each.
UpdatePlaces PlaceUpdates(const FrontTree& tree, const FrontSchedule& schedule, const std::vector<std::size_t>& sizes);

} // namespace tarnvexo

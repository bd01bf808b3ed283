// app/PartGaps.h
// How near connected parts come to one another: nodes at one place that were never merged are the usual reason why a
// part is loose.
//
// Nodes stand in a k-d tree whose subtrees know their box and, where all their nodes are of one part, that part: a
// search passes over its own part as a whole. Cost: O(N·log N) to build, about O(log N) a search.
// Source: J. L. Bentley, Commun. ACM 18 (1975) 509–517.
#pragma once

#include "core/ConnectedParts.h"
#include "core/ModelStore.h"

#include <limits>
#include <vector>

namespace tarnvexo {

struct PartGap {
    double distance = std::numeric_limits<double>::infinity(); // infinite: there is no other part
    int node = -1;                                             // of the part
    int otherNode = -1;                                        // the nearest node of another part
    int meetingNodes = 0; // nodes of the part that another part has a node within the tolerance of
};

// One gap for every part wanted. Of equal distances the first node of the part is told.
std::vector<PartGap> FindPartGaps(const ModelStore& model, const ConnectedParts& parts, const std::vector<int>& wanted,
                                  double tolerance);

} // namespace tarnvexo

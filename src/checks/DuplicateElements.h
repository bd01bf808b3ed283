// checks/DuplicateElements.h
// Elements that are there a second time.
//   shells  on the same set of nodes, in whatever order; quadrilaterals with quadrilaterals, triangles with triangles.
//           Thickness and material do not matter: two plates in one place are rarely meant
//   beams   between the same two nodes, in either direction, with the same section in the same position. Different
//           sections between two nodes are legitimate (a face bar on a web, a pair of angles back to back)
#pragma once

#include "core/ModelStore.h"

#include <vector>

namespace tarnvexo {

struct Duplicate {
    int element;  // position in the table of its kind
    int original; // the first of its like
};

struct DuplicateElements {
    std::vector<Duplicate> quads, tris, beams; // each by element, ascending
};

DuplicateElements FindDuplicateElements(const ModelStore& model);

} // namespace tarnvexo

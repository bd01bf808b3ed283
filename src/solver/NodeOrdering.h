// solver/NodeOrdering.h
// Fill-reducing orders of a node graph: by planes (CoordinateBisection.h), by the libraries AMD (approximate minimum
// degree) and METIS (nested dissection of the graph alone), and the choice among them. Sources: P. R. Amestoy, T. A.
// Davis, I. S. Duff, SIAM J. Matrix Anal. Appl. 17 (1996) 886–905; G. Karypis, V. Kumar, SIAM J. Sci. Comput. 20 (1998)
// 359–392.
//
// No ordering wins everywhere. Bisection needs 1.5 to 3 times fewer operations than AMD on large plates and hulls, AMD
// 1.3 to 1.8 times fewer on long girders and wings, and both take a fraction of METIS's time. Over 30 models of 350 to
// 210,000 nodes METIS was better than the better of the two on four: a fuselage by 3 %, space frames by up to 14 %. But
// it takes half a second at 100,000 nodes, so it is tried only where a small gain would pay for it.
#pragma once

#include "core/Vector3.h"
#include "solver/EliminationTree.h"
#include "solver/NodeGraph.h"

#include <string>
#include <vector>

namespace tarnvexo {

// Errors: throw std::bad_alloc, and std::runtime_error with the status when a library refuses the graph.
EliminationOrder OrderByMetis(const NodeGraph& graph);
EliminationOrder OrderByAmd(const NodeGraph& graph);

struct ChosenOrder {
    std::string method; // "bisection", "AMD" or "METIS"
    EliminationOrder order;
    EliminationTree tree;
    FactorCost cost;
};

// The order with fewest operations, in postorder. Bisection and AMD run at the same time, METIS after them where the
// operations of the better one say so: time and threads of the run decide nothing, so the result is always the same.
//   coordinates   of each node of the graph
ChosenOrder OrderNodes(const NodeGraph& graph, const std::vector<Vector3>& coordinates);

// Whether METIS's likely gain is worth its time, for a graph of that many nodes whose best factor so far is known.
bool IsMetisWorthwhile(int nodes, const FactorCost& best);

} // namespace tarnvexo

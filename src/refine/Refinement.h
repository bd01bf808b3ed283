// refine/Refinement.h
// Uniform refinement: every quadrilateral into k × k, every triangle into k², every beam into k of the same kind.
//
// Nodes     The coarse ones keep their numbers; behind them come k − 1 on every edge, in order of the edge's lower and
//           higher node, then the inner ones, element by element. An edge is a pair of nodes, whoever uses it: shells
//           and beams that share both nodes share all nodes between. New nodes lie on straight edges and on the
//           bilinear surface of a quadrilateral. The skyline follows these numbers: see refine/NodeRenumbering.
// Elements  Those of parent e are k²·e ... k²·e + k² − 1 (beams: k·e ...), in rows along its edge 1–2. They keep
//           material, thickness, section and orientation vector; e3 points to the parent's side and e1 along its edge
//           1–2, or against it in the triangles that stand on their tip.
// Loads     Forces and supports stay at their nodes. Pressures keep the plane through the parent's values at its nodes
//           1 to 3, as elements/ShellPressureLoad takes it; line loads stay linear. So the resultant of the loads is
//           that of the coarse model, for flat elements.
//
// A quadrilateral that is not convex, or has a node twice, gives elements that are no better.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

// fine is filled whole, as the reader would; k = 1 gives the tables of the coarse model. k >= 1.
// Errors: a count beyond 32 bits throws std::length_error with a message (what, expected, to do).
void RefineModel(const ModelStore& coarse, int k, ModelStore& fine);

} // namespace tarnvexo

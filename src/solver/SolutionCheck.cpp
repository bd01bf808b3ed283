#include "solver/SolutionCheck.h"

#include <cstdio>

namespace tarnvexo {

std::string PivotWarning(const ModelStore& model)
{
    int count = 0;
    int first = 0;
    for (int j = 0; j < model.EquationCount; ++j) {
        // Not "<= 0": a pivot that is not a number counts too.
        if (!(model.GlobalStiffness[model.DiagonalAddress[j]] > 0.0) && count++ == 0) {
            first = j;
        }
    }
    if (count == 0) {
        return "";
    }
    constexpr const char* names[DofsPerNode] = {"dx", "dy", "dz", "rx", "ry", "rz"};
    char text[500];
    std::snprintf(
        text, sizeof text,
        "fem_solving.txt: warning: node %d, direction %s: pivot %.6g in the solution (%d of %d pivots are not "
        "positive)\n"
        "  expected: positive pivots: every part held against moving freely, every node stiffened by elements\n"
        "  to do:    look for a node without elements, a part that is not connected, or missing supports;\n"
        "            displacements and stresses of this run mean nothing until then",
        first / DofsPerNode, names[first % DofsPerNode], model.GlobalStiffness[model.DiagonalAddress[first]], count,
        model.EquationCount);
    return text;
}

} // namespace tarnvexo

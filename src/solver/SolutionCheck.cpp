#include "solver/SolutionCheck.h"

#include <cstdio>

namespace tarnvexo {

std::vector<double> StiffnessDiagonal(const ModelStore& model)
{
    std::vector<double> diagonal(model.EquationCount);
    for (int j = 0; j < model.EquationCount; ++j) { diagonal[j] = model.GlobalStiffness[model.DiagonalAddress[j]]; }
    return diagonal;
}

std::string PivotWarning(const ModelStore& model, const std::vector<double>& assembledDiagonal, const char* modelName)
{
    const std::vector<double> pivots = StiffnessDiagonal(model);
    int count = 0;
    int first = 0;
    for (int j = 0; j < model.EquationCount; ++j) {
        // Not "<=": a pivot that is not a number counts too.
        if (!(pivots[j] > PivotTolerance * assembledDiagonal[j]) && count++ == 0) {
            first = j;
        }
    }
    if (count == 0) {
        return "";
    }
    constexpr const char* names[DofsPerNode] = {"dx", "dy", "dz", "rx", "ry", "rz"};
    char text[700];
    std::snprintf(
        text, sizeof text,
        "%s: warning: node %d, direction %s: pivot %.6g in the solution, where the stiffness is %.6g (%d of "
        "%d pivots are like that)\n"
        "  expected: positive pivots of more than %g of the stiffness: every part held against moving freely,\n"
        "            every node stiffened by elements, elements of sound shape and material\n"
        "  to do:    look for missing supports, a part that is not connected, a node without elements, zero\n"
        "            moduli or sizes; displacements and stresses of this run mean nothing until then",
        modelName, first / DofsPerNode, names[first % DofsPerNode], pivots[first], assembledDiagonal[first], count,
        model.EquationCount, PivotTolerance);
    return text;
}

} // namespace tarnvexo

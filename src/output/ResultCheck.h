// output/ResultCheck.h
// Looks for results that are not numbers. The files are written all the same.
#pragma once

#include "core/ModelStore.h"

#include <string>
#include <vector>

namespace tarnvexo {

// Nodes or elements of one kind with a result that is infinite or not a number.
struct NonFiniteResults {
    const char* kind; // "node", "four-node shell", "three-node shell", "beam"
    long long all = 0;
    long long bad = 0;
    long long firstBad = 0;
};

// One count for each kind: displacements of nodes; stresses of shells and, with the displacements there, of the section
// walls of beams, averaged ones too. In parallel.
std::vector<NonFiniteResults> CountNonFiniteResults(const ModelStore& model);

// "2 of 3 nodes (first 1), 1 of 1 beams (first 0)"; empty when all results are finite.
std::string NonFiniteText(const std::vector<NonFiniteResults>& counts);

// Warning of the console run with these counts, without a line end behind it; empty when all are finite.
std::string ResultWarning(const ModelStore& model);

} // namespace tarnvexo

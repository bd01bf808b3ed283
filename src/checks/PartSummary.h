// checks/PartSummary.h
// What each connected part of the structure consists of: enough to recognise it and to see what holds and loads it.
#pragma once

#include "core/ConnectedParts.h"
#include "core/ModelStore.h"

#include <string>
#include <vector>

namespace tarnvexo {

struct PartSummary {
    int nodes = 0;
    int lowestNode = 0;
    int quads = 0, tris = 0, beams = 0;
    double mass = 0.0;   // area·thickness·density of shells, A·L·density of beams
    Vector3 boxLow = {}; // box around its nodes
    Vector3 boxHigh = {};
    Vector3 centre = {};          // of the box
    int restrainedDirections = 0; // each once, however often the model restrains it
    int nodalForces = 0;          // records
    int distributedLoads = 0;     // records, on shells and beams

    int Elements() const { return quads + tris + beams; }
};

// One per part, in the order of the parts. Linear.
std::vector<PartSummary> SummariseParts(const ModelStore& model, const ConnectedParts& parts);

// "120 nodes, 100 quads, 4 beams, mass 12.5, from (0, 0, 0) to (1, 2, 3), 6 directions restrained, 2 loads".
std::string PartSummaryText(const PartSummary& part);

} // namespace tarnvexo

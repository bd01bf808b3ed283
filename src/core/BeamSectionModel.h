// core/BeamSectionModel.h
// Result of a beam on its real section walls: a small shell mesh swept along the beam, with its own displacements and
// face stresses. One per beam in ModelStore::BeamStressRecords; made by output/BeamSectionStress, averaged by
// output/BeamJointAveraging, written by output/ContourFile.
#pragma once

#include "core/Dofs.h"
#include "core/Vector3.h"

#include <vector>

namespace tarnvexo {

// One four-node wall patch. Node numbers are those of the section model.
struct SectionPatch {
    int nodes[QuadNodeCount] = {};
    double thickness = 0.0;
    Vector3 normal = {};                                  // e3 of the patch: the positive face looks that way
    double positiveFace[QuadNodeCount][StressCount] = {}; // raw corner stresses, global axes
    double negativeFace[QuadNodeCount][StressCount] = {};
};

// Face stresses of a node after averaging over the walls that meet there.
struct SectionNodeStress {
    double positiveFace[StressCount] = {};
    double negativeFace[StressCount] = {};
};

struct BeamSectionModel {
    std::vector<Vector3> nodes;        // beam end 1, the rings, beam end 2
    std::vector<double> displacements; // DofsPerNode per node
    std::vector<SectionPatch> patches;
    std::vector<SectionNodeStress> averaged; // per node; the first corner visited at a node decides its values
};

} // namespace tarnvexo

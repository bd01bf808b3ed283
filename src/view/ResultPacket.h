// view/ResultPacket.h
// The results of a run as the viewer gets them: typed arrays behind a head that names them. The format is in
// docs/formats/result-packet.md.
//
// A vertex is a node with one pair of face stresses: shells that have the same averages at a node share it, in single
// precision as the packet has them. Node numbers are those of the structure, then of the section walls of beam 0, 1,
// ... Units: those of the model; nothing is converted. Numbers beyond single precision become infinite.
#pragma once

#include "core/ModelStore.h"
#include "input/ContourFileReader.h"
#include "input/ShellStressFileReader.h"

#include <string>
#include <vector>

namespace tarnvexo {

struct ResultParts {
    std::string title;
    ContourModel contour;
    bool hasOwnStresses = false; // of the same shells as the contour file
    ShellStresses ownStresses;
    bool hasModel = false; // of the same nodes and elements as the contour file
    ModelStore model;
    std::vector<double> inertiaForces; // DofsPerNode per node of the structure, or none
    std::string view;                  // state of the view to begin with; empty: the viewer's own
};

// The packet, not compressed.
std::string ResultPacket(const ResultParts& parts);

} // namespace tarnvexo

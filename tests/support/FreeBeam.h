// support/FreeBeam.h
// Free-floating beams and strips under a force that their own inertia balances, held by nominal supports only.
#pragma once

#include "support/MeshBuilder.h"

#include <string>
#include <vector>

namespace tarnvexo::test {

// A beam of equal elements along x, its centroid line on the nodes, under a force along z at one node.
struct FreeBeam {
    std::string name;
    bool isTube = false;
    TBeamSection tee = {}; // without flange: a rectangle
    CBeamSection tube = {};
    double length = 10.0;
    int elements = 48;
    double force = 1000.0;
};

struct FreeBeamResult {
    std::vector<double> deflection; // along z, per node
    std::vector<double> moment;     // bending moment at every node, positive with tension on the −z' side
    double EI = 0.0;
    double shearRigidity = 0.0; // κ·G·A
};

FreeBeamResult SolveFreeBeam(const FreeBeam& beam, int loadedNode);

// A strip of shells in the x-y plane, ν = 0, under a force along z spread over one column of nodes.
struct FreeStrip {
    double length = 20.0;
    double width = 1.0;
    double thickness = 0.5;
    int columns = 48;
    int rows = 2;
    double E = 2.06e11;
    double force = 1000.0;

    double EI() const { return E * width * thickness * thickness * thickness / 12.0; }
    double ShearRigidity() const { return 5.0 / 6.0 * 0.5 * E * width * thickness; } // κ = 5/6, G = E/2
};

struct FreeStripResult {
    std::vector<double> deflection; // along z, per column of nodes, on the middle line
    std::vector<double> moment;     // mean of every column of cells, from face stresses, whole width; sign as above
};

FreeStripResult SolveFreeStrip(const FreeStrip& strip, Cell cell, int loadedColumn);

} // namespace tarnvexo::test

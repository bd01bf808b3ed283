// support/ModelText.h
// Builds the text of a small model file, record by record, for tests. Each call adds one record and returns its index.
// Numbers are written with 17 digits, so that the reader gets back the same doubles.
#pragma once

#include "core/Vector3.h"

#include <array>
#include <string>
#include <vector>

namespace tarnvexo::test {

class ModelText {
public:
    int Material(double E, double Mu, double Density);
    int Thickness(double TK);
    int TSection(double Hw, double Tw, double Bf, double Tf);
    int LSection(double Hw, double Tw, double Bf, double Tf);
    int CSection(double R, double T);
    int Node(double x, double y, double z);
    int Quad(std::array<int, 4> nodes, int material = 0, int thickness = 0);
    int Tri(std::array<int, 3> nodes, int material = 0, int thickness = 0);
    int Beam(std::array<int, 2> nodes, Vector3 orientation, int material, int sectionType, int sectionIndex,
             double offset = 0.0, int mirrored = 0);
    int Restrain(int node, std::array<int, 6> flags = {1, 1, 1, 1, 1, 1});
    int Force(int node, std::array<double, 6> components);
    int QuadLoad(int element, double p1, double p2, double p3);
    int TriLoad(int element, double p1, double p2, double p3);
    int BeamLoad(int element, double q1, double q2);

    // The whole file.
    std::string Text() const;

private:
    using Records = std::vector<std::string>;

    Records materials, thicknesses, tSections, lSections, cSections, nodes, quads, tris, beams, restraints, forces,
        quadLoads, triLoads, beamLoads;
};

// The number as the model file writes it.
std::string NumberText(double value);

} // namespace tarnvexo::test

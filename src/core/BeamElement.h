// core/BeamElement.h
// What a beam element holds: end points, orientation, material and the constants of its cross-section.
// Filled while the model file is read (elements/BeamSection); read by the kernels in elements/ and inertia/.
#pragma once

#include "core/Vector3.h"

namespace tarnvexo {

// Constants of a cross-section about its centroid; y' across the section, z' up (towards the orientation point).
struct BeamSectionConstants {
    double A = 0.0;    // area                                                                    length²
    double I1 = 0.0;   // second moment of area, bending in x'-z' (deflection along z')           length⁴
    double I2 = 0.0;   // second moment of area, bending in x'-y' (deflection along y')           length⁴
    double J = 0.0;    // torsion constant                                                        length⁴
    double phi1 = 0.0; // shear-deformation factor 12·E·I1/(G·As·L²) that goes with I1
    double phi2 = 0.0; // the same for I2
    double c1 = 0.0;   // extreme fibre on the +y' side, from the web's centre line               length
    double c2 = 0.0;   // extreme fibre on the -y' side, from the web's centre line
    double c3 = 0.0;   // from the centroid to the top (+z')
    double c4 = 0.0;   // from the centroid to the bottom (-z')
    double ex = 0.0;   // from the node line to the centroid: along x' (always 0),                length
    double ey = 0.0;   // along y',
    double ez = 0.0;   // along z'
};

struct BeamElement {
    Vector3 node1 = {};
    Vector3 node2 = {};
    Vector3 reference = {};   // node1 + orientation vector: fixes the direction of z'
    double tolerance = 1e-15; // kept with the element's points; no formula reads it
    double E = 0.0;
    double Mu = 0.0;
    double sectionOffset = 0.0; // BeamSecOz: height of the section's base above the node line
    bool mirrored = false;      // L sections only
    BeamSectionConstants section;
    double Density = 0.0;
};

} // namespace tarnvexo

#include "elements/BeamStiffness.h"

#include "elements/BeamSection.h"
#include "elements/Elasticity.h"
#include "elements/LocalAxes.h"
#include "solver/DenseMatrix.h"

namespace tarnvexo {

namespace {

// Stiffness about the centroid line in local axes.
void CentroidStiffness(const BeamElement& beam, double K[BeamDofCount][BeamDofCount])
{
    const BeamSectionConstants& s = beam.section;
    const double L = BeamLength(beam);
    const double a = beam.E * s.A / L;
    const double g = ShearModulus(beam.E, beam.Mu) * s.J / L;
    const double b1 = beam.E * s.I1 / (1.0 + s.phi1) / (L * L * L); // bending in x'–z'
    const double b2 = beam.E * s.I2 / (1.0 + s.phi2) / (L * L * L); // bending in x'–y'
    constexpr int n2 = DofsPerNode;                                 // first DOF of node 2

    for (int i = 0; i < BeamDofCount; ++i) {
        for (int j = 0; j < BeamDofCount; ++j) { K[i][j] = 0.0; }
    }
    K[DX][DX] = K[n2 + DX][n2 + DX] = a;
    K[DX][n2 + DX] = -a;
    K[RX][RX] = K[n2 + RX][n2 + RX] = g;
    K[RX][n2 + RX] = -g;

    K[DY][DY] = K[n2 + DY][n2 + DY] = 12.0 * b2;
    K[DY][n2 + DY] = -12.0 * b2;
    K[DY][RZ] = K[DY][n2 + RZ] = 6.0 * b2 * L;
    K[RZ][n2 + DY] = K[n2 + DY][n2 + RZ] = -6.0 * b2 * L;
    K[RZ][RZ] = K[n2 + RZ][n2 + RZ] = (4.0 + s.phi2) * b2 * L * L;
    K[RZ][n2 + RZ] = (2.0 - s.phi2) * b2 * L * L;

    K[DZ][DZ] = K[n2 + DZ][n2 + DZ] = 12.0 * b1;
    K[DZ][n2 + DZ] = -12.0 * b1;
    K[DZ][RY] = K[DZ][n2 + RY] = -6.0 * b1 * L;
    K[RY][n2 + DZ] = K[n2 + DZ][n2 + RY] = 6.0 * b1 * L;
    K[RY][RY] = K[n2 + RY][n2 + RY] = (4.0 + s.phi1) * b1 * L * L;
    K[RY][n2 + RY] = (2.0 - s.phi1) * b1 * L * L;

    for (int i = 0; i < BeamDofCount; ++i) {
        for (int j = 0; j < i; ++j) { K[i][j] = K[j][i]; }
    }
}

// Displacements of the centroid line from those of the node line: u_c = u + θ × e.
void OffsetTransformation(const BeamSectionConstants& s, double T[BeamDofCount][BeamDofCount])
{
    for (int i = 0; i < BeamDofCount; ++i) {
        for (int j = 0; j < BeamDofCount; ++j) { T[i][j] = i == j ? 1.0 : 0.0; }
    }
    for (int n = 0; n < BeamDofCount; n += DofsPerNode) {
        T[n + DX][n + RY] = s.ez;
        T[n + DX][n + RZ] = -s.ey;
        T[n + DY][n + RX] = -s.ez;
        T[n + DY][n + RZ] = s.ex;
        T[n + DZ][n + RX] = s.ey;
        T[n + DZ][n + RY] = -s.ex;
    }
}

} // namespace

void BeamStiffness(const BeamElement& beam, double K[BeamDofCount][BeamDofCount])
{
    double Kc[BeamDofCount][BeamDofCount];
    double T[BeamDofCount][BeamDofCount];
    CentroidStiffness(beam, Kc);
    OffsetTransformation(beam.section, T);
    TripleProduct<BeamDofCount, BeamDofCount>(&K[0][0], &T[0][0], &Kc[0][0]);

    Vector3 frame[3];
    BeamFrame(beam, frame);
    MatrixToGlobal<BeamNodeCount>(frame, &K[0][0]);
}

} // namespace tarnvexo

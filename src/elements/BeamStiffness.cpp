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

    MirrorUpperTriangle(K);
}

// K ← Tᵀ·K·T with displacements of the centroid line from those of the node line, u_c = u + θ × e: the forces of a node
// act on its rotations with the moments e × F. First the rows, Tᵀ·K, then the columns.
void AddOffset(const BeamSectionConstants& s, double K[BeamDofCount][BeamDofCount])
{
    for (int n = 0; n < BeamDofCount; n += DofsPerNode) {
        for (int j = 0; j < BeamDofCount; ++j) {
            K[n + RX][j] = s.ey * K[n + DZ][j] - s.ez * K[n + DY][j] + K[n + RX][j];
            K[n + RY][j] = s.ez * K[n + DX][j] - s.ex * K[n + DZ][j] + K[n + RY][j];
            K[n + RZ][j] = s.ex * K[n + DY][j] - s.ey * K[n + DX][j] + K[n + RZ][j];
        }
    }
    for (int i = 0; i < BeamDofCount; ++i) {
        for (int n = 0; n < BeamDofCount; n += DofsPerNode) {
            K[i][n + RX] = s.ey * K[i][n + DZ] - s.ez * K[i][n + DY] + K[i][n + RX];
            K[i][n + RY] = s.ez * K[i][n + DX] - s.ex * K[i][n + DZ] + K[i][n + RY];
            K[i][n + RZ] = s.ex * K[i][n + DY] - s.ey * K[i][n + DX] + K[i][n + RZ];
        }
    }
}

} // namespace

void BeamStiffness(const BeamElement& beam, double K[BeamDofCount][BeamDofCount])
{
    CentroidStiffness(beam, K);
    AddOffset(beam.section, K);

    Vector3 frame[3];
    BeamFrame(beam, frame);
    MatrixToGlobal<BeamNodeCount>(frame, K);
}

} // namespace tarnvexo

#include "elements/BeamLoadVector.h"

#include "elements/BeamSection.h"
#include "elements/BeamStiffness.h"
#include "support/ElementTools.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

const Material Steel = {2.1e5, 0.3, 7.85e-9};
const double G = Steel.E / (2.0 * (1.0 + Steel.Mu));
const LBeamSection Angle = {110.0, 9.0, 60.0, 12.0};

BeamElement Beam(const Vector3& node1, const Vector3& node2, const Vector3& reference)
{
    BeamElement beam;
    LBeamSetUp(beam, node1, node2, reference, Steel, Angle, 7.0, false);
    return beam;
}

TEST(BeamLoadVector, OfAUniformLoadIsHalfTheLoadAndATwelfthOfItsMomentAtEachEnd)
{
    const double L = 4.0, q = 3.0;
    double f[BeamDofCount];
    BeamLoadVector(Beam({0.0, 0.0, 0.0}, {L, 0.0, 0.0}, {0.0, 0.0, 1.0}), {0, q, q}, f);
    const double expected[BeamDofCount] = {0.0, 0.0, 6.0, 0.0, -4.0, 0.0, 0.0, 0.0, 6.0, 0.0, 4.0, 0.0};
    for (int i = 0; i < BeamDofCount; ++i) { EXPECT_NEAR(f[i], expected[i], 1e-15 * 6.0) << i; }
}

TEST(BeamLoadVector, OfALinearLoadHasTheHermiteWeights)
{
    const double L = 2.0, q1 = 5.0, q2 = -3.0;
    double f[BeamDofCount];
    BeamLoadVector(Beam({0.0, 0.0, 0.0}, {L, 0.0, 0.0}, {0.0, 0.0, 1.0}), {0, q1, q2}, f);
    EXPECT_NEAR(f[DZ], (0.35 * q1 + 0.15 * q2) * L, 1e-14);
    EXPECT_NEAR(f[RY], -q1 * L * L / 20.0 - q2 * L * L / 30.0, 1e-14);
    EXPECT_NEAR(f[6 + DZ], (0.15 * q1 + 0.35 * q2) * L, 1e-14);
    EXPECT_NEAR(f[6 + RY], q1 * L * L / 30.0 + q2 * L * L / 20.0, 1e-14);
}

const Vector3 Node1 = {300.0, -200.0, 150.0}, Node2 = {610.0, 240.0, -90.0}, Up = {0.2, 0.1, 1.0};

// Resultants of a load that rises from q1 to q2: force (q1 + q2)·L/2 along z', moment about node 1 (q1 + 2·q2)·L²/6.
TEST(BeamLoadVector, HasTheResultantsOfTheDistributedLoadInSkewDirections)
{
    const BeamElement beam = Beam(Node1, Node2, Node1 + Up);
    const double L = Length(Node2 - Node1), q1 = 5.0, q2 = -2.0;
    Vector3 frame[3];
    BeamFrame(beam, frame);
    double f[BeamDofCount];
    BeamLoadVector(beam, {0, q1, q2}, f);
    const Vector3 F1 = {f[0], f[1], f[2]}, M1 = {f[3], f[4], f[5]}, F2 = {f[6], f[7], f[8]}, M2 = {f[9], f[10], f[11]};
    const Vector3 force = F1 + F2, moment = M1 + M2 + Cross(Node2 - Node1, F2);
    const Vector3 exactForce = (q1 + q2) * L / 2.0 * frame[2];
    const Vector3 exactMoment = -(q1 + 2.0 * q2) * L * L / 6.0 * frame[1];
    for (int k = 0; k < 3; ++k) {
        EXPECT_NEAR(force[k], exactForce[k], 1e-14 * 5.0 * L) << k;
        EXPECT_NEAR(moment[k], exactMoment[k], 1e-14 * 5.0 * L * L) << k;
    }
}

TEST(BeamLinearLoad, SharesAnAxialLoadLikeABar)
{
    const double q1[3] = {6.0, 0.0, 0.0}, q2[3] = {12.0, 0.0, 0.0};
    double f[BeamDofCount];
    BeamLinearLoad(2.0, q1, q2, f);
    EXPECT_NEAR(f[DX], 8.0, 1e-14);      // L·(2·q1 + q2)/6
    EXPECT_NEAR(f[6 + DX], 10.0, 1e-14); // L·(q1 + 2·q2)/6
}

TEST(BeamLinearLoad, TurnsTheEndsAboutZForALoadAlongYTheOtherWayThanAboutYForALoadAlongZ)
{
    const double alongY1[3] = {0.0, 5.0, 0.0}, alongY2[3] = {0.0, -3.0, 0.0};
    const double alongZ1[3] = {0.0, 0.0, 5.0}, alongZ2[3] = {0.0, 0.0, -3.0};
    double fy[BeamDofCount], fz[BeamDofCount];
    BeamLinearLoad(2.0, alongY1, alongY2, fy);
    BeamLinearLoad(2.0, alongZ1, alongZ2, fz);
    for (int n : {0, 6}) {
        EXPECT_EQ(fy[n + DY], fz[n + DZ]);
        EXPECT_EQ(fy[n + RZ], -fz[n + RY]);
        EXPECT_EQ(fy[n + DX] + fy[n + DZ] + fy[n + RX] + fy[n + RY], 0.0);
    }
    EXPECT_GT(fy[RZ], 0.0);
}

// Cantilever from Node1 to Node2 with a load that rises from q1 to q2 over its whole length; tip in local axes.
// A slender one has no shear deformation, and its centroid above the node line.
struct Tip {
    Vector3 u, rotation;
};
Tip SolveCantilever(const std::vector<double>& fractions, double q1, double q2, bool slender = false)
{
    const int last = static_cast<int>(fractions.size()) - 1;
    DenseSystem system(last + 1);
    for (int i = 0; i < last; ++i) {
        const Vector3 from = Node1 + fractions[i] * (Node2 - Node1);
        const Vector3 to = Node1 + fractions[i + 1] * (Node2 - Node1);
        BeamElement beam = Beam(from, to, from + Up);
        if (slender) {
            beam.section.phi1 = 0.0;
            beam.section.ey = 0.0;
        }
        double K[BeamDofCount][BeamDofCount], f[BeamDofCount];
        BeamStiffness(beam, K);
        BeamLoadVector(beam, {0, q1 + fractions[i] * (q2 - q1), q1 + fractions[i + 1] * (q2 - q1)}, f);
        system.AddElement<BeamNodeCount>({i, i + 1}, &K[0][0]);
        system.AddLoads<BeamNodeCount>({i, i + 1}, f);
    }
    system.Clamp(0);
    const std::vector<double> d = system.Solve();
    Vector3 axes[3];
    BeamFrame(Beam(Node1, Node2, Node1 + Up), axes);
    const Frame frame = {axes[0], axes[1], axes[2]};
    const double* end = &d[DofsPerNode * last];
    return {IntoFrame(frame, {end[DX], end[DY], end[DZ]}), IntoFrame(frame, {end[RX], end[RY], end[RZ]})};
}

const double L = Length(Node2 - Node1);

// w = q·L⁴/(8·E·I) + q·L²/(2·G·As). The section's twist under the load beside its centroid, −q·ey·L²/(2·G·J), moves the
// node by ey more.
double UniformTip(double q)
{
    const BeamSectionConstants s = Beam(Node1, Node2, Node1 + Up).section;
    const double twist = -q * s.ey * L * L / (2.0 * G * s.J);
    return q * L * L * L * L / (8.0 * Steel.E * s.I1) + q * L * L / (2.0 * G * Angle.Hw * Angle.Tw) - twist * s.ey;
}

TEST(BeamLoadVector, UniformLoadBendsACantileverExactlyWhateverTheMesh)
{
    for (const std::vector<double>& mesh : {std::vector<double>{0.0, 1.0}, {0.0, 0.25, 0.4, 1.0}}) {
        EXPECT_NEAR(SolveCantilever(mesh, 2.5, 2.5).u[2], UniformTip(2.5), 1e-10 * UniformTip(2.5));
    }
}

TEST(BeamLoadVector, LoadOnTheNodeLineTwistsASectionWithItsCentroidBesideIt)
{
    const BeamSectionConstants s = Beam(Node1, Node2, Node1 + Up).section;
    const double twist = -2.5 * s.ey * L * L / (2.0 * G * s.J);
    EXPECT_NEAR(SolveCantilever({0.0, 0.25, 0.4, 1.0}, 2.5, 2.5).rotation[0], twist, 1e-10 * std::fabs(twist));
}

// w = q1·L⁴/8 + (q2 − q1)·11·L⁴/120 over E·I, w′ = q1·L³/6 + (q2 − q1)·L³/8 over E·I.
TEST(BeamLoadVector, LinearLoadBendsASlenderCantileverExactlyWhateverTheMesh)
{
    const BeamSectionConstants s = Beam(Node1, Node2, Node1 + Up).section;
    const double q1 = 2.5, q2 = -4.0, EI = Steel.E * s.I1;
    const double w = (q1 / 8.0 + (q2 - q1) * 11.0 / 120.0) * L * L * L * L / EI;
    const double slope = (q1 / 6.0 + (q2 - q1) / 8.0) * L * L * L / EI;
    for (const std::vector<double>& mesh : {std::vector<double>{0.0, 1.0}, {0.0, 0.25, 0.4, 1.0}}) {
        const Tip tip = SolveCantilever(mesh, q1, q2, true);
        EXPECT_NEAR(tip.u[2], w, 1e-10 * std::fabs(w));
        EXPECT_NEAR(tip.rotation[1], -slope, 1e-10 * std::fabs(slope));
    }
}

// Hermite end moments are those of a beam that is stiff in shear, and Hermite end forces are not the shares of the
// torque about the centroid; the error that is left falls with the square of the element length at least.
TEST(BeamLoadVector, LinearLoadOnAShearFlexibleCantileverConverges)
{
    const BeamSectionConstants s = Beam(Node1, Node2, Node1 + Up).section;
    const double q1 = 0.0, q2 = 4.0;
    const double twist = -s.ey * L * L / (G * s.J) * (q1 / 6.0 + q2 / 3.0);
    const double w = (q1 / 8.0 + (q2 - q1) * 11.0 / 120.0) * L * L * L * L / (Steel.E * s.I1) - twist * s.ey +
                     (q1 / 6.0 + q2 / 3.0) * L * L / (G * Angle.Hw * Angle.Tw);
    double previous = 0.0;
    for (int elements : {1, 2, 4}) {
        std::vector<double> mesh;
        for (int i = 0; i <= elements; ++i) { mesh.push_back(static_cast<double>(i) / elements); }
        const double error = std::fabs(SolveCantilever(mesh, q1, q2).u[2] - w);
        if (elements > 1) {
            EXPECT_LT(error, 0.3 * previous) << elements << " elements";
        }
        previous = error;
    }
    EXPECT_LT(previous, 1e-3 * w);
}

} // namespace
} // namespace tarnvexo

// Beams and strips against closed forms: cantilevers of every section with an offset, free-floating beams and strips
// under a force that their own inertia balances, and the balance itself.
#include "elements/Elasticity.h"
#include "inertia/InertiaRelief.h"
#include "support/FreeBeam.h"
#include "support/MeshBuilder.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace tarnvexo::test {
namespace {

constexpr Material Steel = {2.06e11, 0.3, 7850.0};
const double G = ShearModulus(Steel.E, Steel.Mu);

// --- cantilevers -------------------------------------------------------------------------------------------------

// Section constants by the parallel-axis theorem about the centroid, and the centroid from the node line.
struct SectionFigures {
    std::string name;
    double A, I1, I2, J, shearArea1, shearArea2; // infinite: no shear deformation
    double ey, ez;
    std::function<void(MeshBuilder& mesh, int node1, int node2, const Vector3& up)> addBeam;
};

constexpr double NoShear = INFINITY;

// h x t web on the node line raised by Oz, b x tf flange on top with its centre at y' = yf.
SectionFigures WebAndFlange(double h, double t, double b, double tf, double yf, double Oz)
{
    SectionFigures s;
    const double web = h * t, flange = b * tf;
    s.A = web + flange;
    const double zc = (web * h / 2 + flange * (h + tf / 2)) / s.A;
    const double yc = flange * yf / s.A;
    s.I1 = t * h * h * h / 12 + web * (zc - h / 2) * (zc - h / 2) + b * tf * tf * tf / 12 +
           flange * (h + tf / 2 - zc) * (h + tf / 2 - zc);
    s.I2 = h * t * t * t / 12 + web * yc * yc + tf * b * b * b / 12 + flange * (yf - yc) * (yf - yc);
    s.J = (h * t * t * t + b * tf * tf * tf) / 3;
    s.shearArea1 = web;
    s.shearArea2 = NoShear;
    s.ey = yc;
    s.ez = zc + Oz;
    return s;
}

std::vector<SectionFigures> Sections()
{
    const double h = 0.2, t = 0.012, b = 0.1, tf = 0.016, Oz = 0.03, R = 0.1, T = 0.01;
    SectionFigures tee = WebAndFlange(h, t, b, tf, 0.0, Oz);
    tee.name = "T";
    tee.addBeam = [=](MeshBuilder& mesh, int node1, int node2, const Vector3& up) {
        mesh.AddTBeam(node1, node2, up, {h, t, b, tf}, Oz);
    };
    SectionFigures angle = WebAndFlange(h, t, b, tf, (b - t) / 2, Oz);
    angle.name = "L";
    angle.addBeam = [=](MeshBuilder& mesh, int node1, int node2, const Vector3& up) {
        mesh.AddLBeam(node1, node2, up, {h, t, b, tf}, Oz);
    };
    SectionFigures mirrored = WebAndFlange(h, t, b, tf, -(b - t) / 2, Oz);
    mirrored.name = "L mirrored";
    mirrored.addBeam = [=](MeshBuilder& mesh, int node1, int node2, const Vector3& up) {
        mesh.AddLBeam(node1, node2, up, {h, t, b, tf}, Oz, true);
    };
    SectionFigures rectangle = WebAndFlange(h, t, 0.0, 0.0, 0.0, Oz);
    rectangle.name = "rectangle";
    rectangle.shearArea1 = h * t * 2 / 3;
    rectangle.addBeam = [=](MeshBuilder& mesh, int node1, int node2, const Vector3& up) {
        mesh.AddTBeam(node1, node2, up, {h, t, 0.0, 0.0}, Oz);
    };
    SectionFigures tube;
    tube.name = "tube";
    const double outer = R + T / 2, inner = R - T / 2, pi = std::acos(-1.0);
    tube.A = pi * (outer * outer - inner * inner);
    tube.I1 = tube.I2 = pi / 4 * (std::pow(outer, 4) - std::pow(inner, 4));
    tube.J = 2 * tube.I1;
    tube.shearArea1 = tube.shearArea2 = tube.A / 2;
    tube.ey = 0.0;
    tube.ez = Oz;
    tube.addBeam = [=](MeshBuilder& mesh, int node1, int node2, const Vector3& up) {
        mesh.AddTube(node1, node2, up, {R, T}, Oz);
    };
    return {tee, angle, mirrored, rectangle, tube};
}

struct Motion {
    Vector3 displacement = {};
    Vector3 rotation = {};
};

// Tip of a cantilever of length L along x' under a force and a moment at its tip node, all in x', y', z'. The load
// works at the centroid line with the moment of the offset, and the node moves as the centroid and its rotation say.
Motion CantileverTip(const SectionFigures& s, double L, const Vector3& force, const Vector3& momentAtNode)
{
    const double E = Steel.E;
    const Vector3 toCentroid = {0.0, s.ey, s.ez};
    const Vector3 moment = momentAtNode + Cross(-toCentroid, force);
    Motion tip;
    tip.rotation[0] = moment[0] * L / (G * s.J);
    tip.rotation[1] = moment[1] * L / (E * s.I1) - force[2] * L * L / (2 * E * s.I1);
    tip.rotation[2] = moment[2] * L / (E * s.I2) + force[1] * L * L / (2 * E * s.I2);
    const Vector3 centroid = {
        force[0] * L / (E * s.A),
        force[1] * (L * L * L / (3 * E * s.I2) + L / (G * s.shearArea2)) + moment[2] * L * L / (2 * E * s.I2),
        force[2] * (L * L * L / (3 * E * s.I1) + L / (G * s.shearArea1)) - moment[1] * L * L / (2 * E * s.I1)};
    tip.displacement = centroid + Cross(tip.rotation, -toCentroid);
    return tip;
}

// Three elements along a direction that is no axis; six load cases, one per tip load.
TEST(VerificationBeam, CantileverOfEverySectionFollowsShearDeformableBeamTheory)
{
    const double L = 2.4;
    const Vector3 x = Normalised({2.0, -1.0, 0.5});
    const Vector3 up = {0.3, 0.4, 1.0};
    const Vector3 y = Normalised(Cross(up, x));
    const Vector3 z = Cross(x, y);
    const auto global = [&](const Vector3& local) { return local[0] * x + local[1] * y + local[2] * z; };

    for (const SectionFigures& section : Sections()) {
        for (int loadCase = 0; loadCase < DofsPerNode; ++loadCase) {
            SCOPED_TRACE(section.name + ", load " + std::to_string(loadCase));
            Vector3 force = {}, moment = {};
            (loadCase < 3 ? force : moment)[loadCase % 3] = 1000.0;

            MeshBuilder mesh(Steel);
            const int elements = 3;
            for (int i = 0; i <= elements; ++i) { mesh.AddNode(Vector3{1.0, 2.0, 3.0} + L * i / elements * x); }
            for (int i = 0; i < elements; ++i) { section.addBeam(mesh, i, i + 1, up); }
            mesh.Restrain(0, {DX, DY, DZ, RX, RY, RZ});
            mesh.AddForce(elements, global(force), global(moment));
            SolveSupported(mesh.Model());

            const double* u = &mesh.Model().GlobalDisplacement[DofsPerNode * elements];
            const Motion expected = CantileverTip(section, L, force, moment);
            // Stiffness 1e9 against the penalty 1e20 of the clamped end leaves 1e-11; round-off is about as large.
            const Vector3 displacement = global(expected.displacement), rotation = global(expected.rotation);
            for (int k = 0; k < 3; ++k) {
                EXPECT_NEAR(u[DX + k], displacement[k], 1e-9 * Length(displacement)) << k;
                EXPECT_NEAR(u[RX + k], rotation[k], 1e-9 * (Length(rotation) + Length(displacement) / L)) << k;
            }
        }
    }
}

// --- free beams --------------------------------------------------------------------------------------------------

// T section on its centroid line; rectangle; tube.
std::vector<FreeBeam> FreeBeams()
{
    std::vector<FreeBeam> beams(3);
    beams[0].name = "T";
    beams[0].tee = {0.2, 0.012, 0.1, 0.016};
    beams[1].name = "rectangle";
    beams[1].tee = {0.3, 0.05, 0.0, 0.0};
    beams[2].name = "tube";
    beams[2].isTube = true;
    beams[2].tube = {0.1, 0.01};
    return beams;
}

// Nodal values of the beam element are exact; the solution of 48 elements loses four of sixteen digits, 4e-12.
constexpr double FreeBeamRoundOff = 1e-10;

TEST(VerificationBeam, FreeBeamUnderAMidForceBendsByFLOver8AndItsTipsLagByTheClosedForm)
{
    for (const FreeBeam& beam : FreeBeams()) {
        SCOPED_TRACE(beam.name);
        const FreeBeamResult result = SolveFreeBeam(beam, beam.elements / 2);
        const double F = beam.force, L = beam.length;
        const double middle = result.deflection[beam.elements / 2];
        const double lag = F * L * L * L / (128.0 * result.EI) + F * L / (8.0 * result.shearRigidity);
        EXPECT_NEAR(middle - result.deflection.front(), lag, FreeBeamRoundOff * lag);
        EXPECT_NEAR(middle - result.deflection.back(), lag, FreeBeamRoundOff * lag);
        EXPECT_NEAR(result.moment[beam.elements / 2], -F * L / 8.0, FreeBeamRoundOff * F * L);
        for (const double moment : result.moment) { EXPECT_GE(moment, -F * L / 8.0 * (1.0 + FreeBeamRoundOff)); }
    }
}

// Inertia loads q(x) = F/L·(6x/L − 2), x from the free end: M(x) = F·x²/L·(1 − x/L), largest at x = 2L/3, 4FL/27, a
// third of the length from the force; the middle sags by 5FL³/(384EI) + FL/(8κGA) below the chord of the ends. An
// element's loads of a linear course are those of a slender beam, which moves the sag by a share of the order (h/L)².
TEST(VerificationBeam, FreeBeamUnderAnEndForceHasItsLargestMomentAtTwoThirdsOfTheLengthFromTheFreeEnd)
{
    for (const FreeBeam& beam : FreeBeams()) {
        SCOPED_TRACE(beam.name);
        const int n = beam.elements;
        ASSERT_EQ(n % 3, 0);
        const FreeBeamResult result = SolveFreeBeam(beam, n);
        const double F = beam.force, L = beam.length;
        const auto largest = std::max_element(result.moment.begin(), result.moment.end());
        EXPECT_EQ(largest - result.moment.begin(), 2 * n / 3);
        for (int i = 0; i <= n; ++i) {
            const double x = static_cast<double>(i) / n;
            EXPECT_NEAR(result.moment[i], F * L * x * x * (1.0 - x), FreeBeamRoundOff * F * L) << i;
        }
        EXPECT_NEAR(*largest, 4.0 * F * L / 27.0, FreeBeamRoundOff * F * L);
        const double sag = 5.0 * F * L * L * L / (384.0 * result.EI) + F * L / (8.0 * result.shearRigidity);
        const double chord = 0.5 * (result.deflection.front() + result.deflection.back());
        EXPECT_NEAR(chord - result.deflection[n / 2], sag, sag / (n * n));
    }
}

// --- free strips -------------------------------------------------------------------------------------------------

// Moments at the middles of the columns of cells, where linear rotations give them best, and deflections: second order
// in the share of a cell, (1/48)². Triangles are slender: their strip has no shear deflection.
void ExpectBeamBehaviour(Cell cell, bool shearDeformable)
{
    const FreeStrip strip;
    const int n = strip.columns;
    const double F = strip.force, L = strip.length;
    const double bending = F * L * L * L / strip.EI();
    const double shear = shearDeformable ? F * L / strip.ShearRigidity() : 0.0;
    const double meshError = 4.0 / (n * n);

    const FreeStripResult mid = SolveFreeStrip(strip, cell, n / 2);
    const double lag = bending / 128.0 + shear / 8.0;
    EXPECT_NEAR(mid.deflection[n / 2] - mid.deflection[0], lag, meshError * lag);
    for (int i = 0; i < n / 2; ++i) {
        const double x = (i + 0.5) / n;
        EXPECT_NEAR(mid.moment[i], -0.5 * F * L * x * x, meshError * F * L / 8.0) << i;
    }

    const FreeStripResult end = SolveFreeStrip(strip, cell, n);
    const double sag = 5.0 / 384.0 * bending + shear / 8.0;
    EXPECT_NEAR(0.5 * (end.deflection[0] + end.deflection[n]) - end.deflection[n / 2], sag, meshError * sag);
    for (int i = 0; i < n; ++i) {
        const double x = (i + 0.5) / n;
        EXPECT_NEAR(end.moment[i], F * L * x * x * (1.0 - x), meshError * 4.0 * F * L / 27.0) << i;
    }
}

TEST(VerificationBeam, FreeStripOfQuadsFollowsTheShearDeformableBeam)
{
    ExpectBeamBehaviour(Cell::Quad, true);
}

TEST(VerificationBeam, FreeStripOfTrianglesFollowsTheSlenderBeam)
{
    ExpectBeamBehaviour(Cell::TriAlternating, false);
}

// --- the balance -------------------------------------------------------------------------------------------------

// Sizes of the terms that cancel in a resultant.
LoadResultant SumOfMagnitudes(const ModelStore& model)
{
    LoadResultant sum;
    for (int n = 0; n < model.NPOIN; ++n) {
        const double* load = &model.GLOAD[std::size_t(DofsPerNode) * n];
        for (int k = 0; k < 3; ++k) {
            const int k1 = (k + 1) % 3, k2 = (k + 2) % 3;
            sum.force[k] += std::fabs(load[k]);
            sum.moment[k] += std::fabs(model.NodeCoordinates[n][k1] * load[k2]) +
                             std::fabs(model.NodeCoordinates[n][k2] * load[k1]) + std::fabs(load[DofsPerNode / 2 + k]);
        }
    }
    return sum;
}

// Half a barrel of flat quadrilaterals with a lid of triangles, loaded without any symmetry. share: what may be left of
// the sum of the magnitudes that cancel.
void ExpectBalance(const std::function<Vector3(int i, int j)>& barrel, double share)
{
    MeshBuilder mesh(Steel);
    const Grid grid = AddGrid(mesh, 6, 8, 0.02, Cell::Quad, barrel);
    const int centre = mesh.AddNode({0.0, 0.0, 0.0});
    for (int j = 0; j < grid.rows; ++j) { mesh.AddTri({grid.At(0, j), grid.At(0, j + 1), centre}, 0.03); }
    mesh.AddPressure(4000.0);
    mesh.AddForce(grid.At(6, 1), {1000.0, -700.0, 300.0}, {50.0, 60.0, -70.0});
    mesh.AddForce(grid.At(2, 8), {-200.0, 900.0, 1100.0});
    mesh.Restrain(grid.At(0, 0), {DX, DY, DZ});
    mesh.Restrain(grid.At(6, 0), {DY, DZ});
    mesh.Restrain(grid.At(3, 8), {DY});

    ModelStore& model = mesh.Model();
    BalanceLoads(model);
    const LoadResultant after = ResultantOfLoads(model);
    const LoadResultant terms = SumOfMagnitudes(model);
    for (int k = 0; k < 3; ++k) {
        EXPECT_NEAR(after.force[k], 0.0, share * terms.force[k]) << k;
        EXPECT_NEAR(after.moment[k], 0.0, share * terms.moment[k]) << k;
    }
}

TEST(VerificationBalance, ShellsOfOneDensityAreInEquilibriumToRoundOff)
{
    ExpectBalance(
        [](int i, int j) {
            const double angle = std::acos(-1.0) * j / 8;
            return Vector3{0.5 * i, std::cos(angle), std::sin(angle)};
        },
        1e-14);
}

// Cells that are no parallelograms: the mass integrals of a cone use Gauss points of nine digits, while the centroid of
// an element is exact; what is left is of the size of the tenth digit.
TEST(VerificationBalance, TaperedShellsOfOneDensityAreInEquilibriumToTheDigitsOfTheGaussPoints)
{
    ExpectBalance(
        [](int i, int j) {
            const double angle = std::acos(-1.0) * j / 8;
            const double radius = 1.0 - 0.12 * i;
            return Vector3{0.5 * i, radius * std::cos(angle), radius * std::sin(angle)};
        },
        1e-9);
}

} // namespace
} // namespace tarnvexo::test

// Square plates, simply supported and clamped, under uniform and central load, against the series solutions.
// One quarter of the plate is meshed with n x n cells. Values are D/(q·a⁴) or D/(P·a²) times the centre's deflection.
#include "support/VerificationModels.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo::test {
namespace {

// Clamped plates, uniform load: Ritz solution of the shear-deformable plate (shear factor 5/6) in Legendre polynomials,
// eight digits for t/a = 1/10 and 1/100. The thin plate's values are 0.00126532 and, under a central force, 0.0056120
// (S. P. Timoshenko, S. Woinowsky-Krieger, Theory of Plates and Shells, tables 35 and 37: 0.00126 and 0.00560).
constexpr double ClampedUniformThin = 0.00126532;
constexpr double ClampedCentralThin = 0.0056120;
constexpr double ClampedUniform100 = 0.00126786;
constexpr double ClampedUniform10 = 0.00150463;
constexpr double SoftUniform10 = 0.00461691; // the same method, edges free to rotate about their normal

double RelativeError(const SquarePlate& plate, int n, double reference)
{
    return PlateCentre(plate, n) / reference - 1.0;
}

// Halving the mesh size quarters the error; under a force, where the moment is singular like ln r, the error is of the
// order h²·|ln h|: 4·ln 4/ln 8 = 2.7 from four cells to eight, 3 to sixteen. errorAtFinest: after two halvings.
void ExpectQuadraticConvergence(const SquarePlate& plate, double reference, double errorAtFinest, int coarsest = 4)
{
    const double fall = plate.load == PlateLoad::Uniform ? 3.3 : 2.6;
    const double coarse = RelativeError(plate, coarsest, reference);
    const double middle = RelativeError(plate, 2 * coarsest, reference);
    const double fine = RelativeError(plate, 4 * coarsest, reference);
    EXPECT_GT(coarse / middle, fall) << coarse << " " << middle;
    EXPECT_GT(middle / fine, fall) << middle << " " << fine;
    EXPECT_NEAR(fine, 0.0, errorAtFinest);
}

TEST(VerificationPlate, SineSeriesOfTheThinPlateGivesTimoshenkosValues)
{
    EXPECT_NEAR(NavierCentre(0.001, PlateLoad::Uniform, false), 0.00406, 0.000005);
    EXPECT_NEAR(NavierCentre(0.001, PlateLoad::Central, false), 0.01160, 0.000005);
}

// Quadrilaterals: the error of the bilinear element is 0.13 % with 8 x 8 cells on the quarter, a quarter of it with 16.
TEST(VerificationPlate, SimplySupportedQuadsConvergeToTheSineSeries)
{
    for (const double thickness : {0.001, 0.01, 0.1}) {
        SCOPED_TRACE(thickness);
        const SquarePlate plate = {.thickness = thickness};
        ExpectQuadraticConvergence(plate, NavierCentre(thickness, PlateLoad::Uniform, true), 0.0005);
    }
}

// 0.06 % with 16 x 16.
TEST(VerificationPlate, SimplySupportedQuadsUnderACentralForceConvergeToTheSineSeries)
{
    const SquarePlate plate = {.load = PlateLoad::Central};
    ExpectQuadraticConvergence(plate, NavierCentre(0.001, PlateLoad::Central, false), 0.001);
}

TEST(VerificationPlate, ClampedQuadsConvergeToTheRitzSolution)
{
    ExpectQuadraticConvergence({.thickness = 0.001, .edge = PlateEdge::Clamped}, ClampedUniformThin, 0.001);
    ExpectQuadraticConvergence({.thickness = 0.01, .edge = PlateEdge::Clamped}, ClampedUniform100, 0.001);
    ExpectQuadraticConvergence({.thickness = 0.1, .edge = PlateEdge::Clamped}, ClampedUniform10, 0.001);
}

TEST(VerificationPlate, ClampedQuadsUnderACentralForceConvergeToTheThinPlate)
{
    const SquarePlate plate = {.edge = PlateEdge::Clamped, .load = PlateLoad::Central};
    ExpectQuadraticConvergence(plate, ClampedCentralThin, 0.003);
}

// A layer as wide as the plate is thick forms along the edge; it takes two cells of the coarsest mesh, 8 x 8.
TEST(VerificationPlate, SoftlySupportedModeratelyThickQuadsConvergeToTheRitzSolution)
{
    const SquarePlate plate = {.thickness = 0.1, .edge = PlateEdge::SoftSupport};
    ExpectQuadraticConvergence(plate, SoftUniform10, 0.0015, 8);
}

// Interior nodes moved by a quarter of a cell. The error stays of the size of the regular mesh's, but its sign depends
// on the mesh, so only its size is tested.
TEST(VerificationPlate, DistortedQuadsStayWithinTwiceTheRegularMeshError)
{
    const struct {
        SquarePlate plate;
        double reference;
    } cases[] = {
        {{.thickness = 0.001}, NavierCentre(0.001, PlateLoad::Uniform, true)},
        {{.thickness = 0.01}, NavierCentre(0.01, PlateLoad::Uniform, true)},
        {{.thickness = 0.001, .edge = PlateEdge::Clamped}, ClampedUniformThin},
        {{.thickness = 0.01, .edge = PlateEdge::Clamped}, ClampedUniform100},
    };
    for (const auto& [regular, reference] : cases) {
        SCOPED_TRACE(regular.thickness);
        SquarePlate distorted = regular;
        distorted.distortion = 0.25;
        for (const int n : {8, 16}) {
            EXPECT_LT(std::fabs(RelativeError(distorted, n, reference)),
                      2.0 * std::fabs(RelativeError(regular, n, reference)))
                << n;
        }
    }
}

// Transverse shear is interpolated along two fixed directions of the element, which is exact on parallelograms alone.
// The shear's share of the deflection is 5 % at t/a = 1/10 and 16 % if clamped; less than 1 % of it stays as an error.
TEST(VerificationPlate, DistortionOfModeratelyThickQuadsCostsLessThanOnePercentOfTheShearDeflection)
{
    const double thin = NavierCentre(0.1, PlateLoad::Uniform, false);
    const double thick = NavierCentre(0.1, PlateLoad::Uniform, true);
    const SquarePlate plate = {.thickness = 0.1, .distortion = 0.25};
    EXPECT_NEAR(PlateCentre(plate, 32), thick, 0.01 * (thick - thin));
    const SquarePlate clamped = {.thickness = 0.1, .edge = PlateEdge::Clamped, .distortion = 0.25};
    EXPECT_NEAR(PlateCentre(clamped, 32), ClampedUniform10, 0.01 * (ClampedUniform10 - ClampedUniformThin));
}

// Triangles cut along alternating diagonals: a pattern that keeps the plate's symmetry.
TEST(VerificationPlate, TrianglesConvergeToTheThinPlate)
{
    const SquarePlate supported = {.cell = Cell::TriAlternating};
    ExpectQuadraticConvergence(supported, NavierCentre(0.001, PlateLoad::Uniform, false), 0.001);
    const SquarePlate supportedCentral = {.load = PlateLoad::Central, .cell = Cell::TriAlternating};
    ExpectQuadraticConvergence(supportedCentral, NavierCentre(0.001, PlateLoad::Central, false), 0.002);
    const SquarePlate clamped = {.edge = PlateEdge::Clamped, .cell = Cell::TriAlternating};
    ExpectQuadraticConvergence(clamped, ClampedUniformThin, 0.002);
    const SquarePlate clampedCentral = {
        .edge = PlateEdge::Clamped, .load = PlateLoad::Central, .cell = Cell::TriAlternating};
    ExpectQuadraticConvergence(clampedCentral, ClampedCentralThin, 0.003);
}

// Distorted triangles, parallel diagonals: 0.02 % simply supported, 0.5 % clamped.
TEST(VerificationPlate, DistortedTrianglesConvergeToTheThinPlate)
{
    const SquarePlate supported = {.cell = Cell::Tri, .distortion = 0.25};
    EXPECT_NEAR(RelativeError(supported, 16, NavierCentre(0.001, PlateLoad::Uniform, false)), 0.0, 0.001);
    const SquarePlate clamped = {.edge = PlateEdge::Clamped, .cell = Cell::Tri, .distortion = 0.25};
    EXPECT_NEAR(RelativeError(clamped, 16, ClampedUniformThin), 0.0, 0.006);
}

// No transverse shear: at t/a = 1/10 a triangle gives the thin plate's deflection, 5 % below the shear-deformable one.
TEST(VerificationPlate, TrianglesAreThinPlatesAtEveryThickness)
{
    const double thin = PlateCentre({.thickness = 0.001, .cell = Cell::Tri}, 8);
    const double thick = PlateCentre({.thickness = 0.1, .cell = Cell::Tri}, 8);
    EXPECT_NEAR(thick / thin, 1.0, 1e-9); // the solution's own round-off is 1e-11 on this mesh
}

} // namespace
} // namespace tarnvexo::test

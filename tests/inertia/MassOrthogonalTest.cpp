#include "inertia/MassOrthogonal.h"

#include "inertia/StructureCentroid.h"
#include "support/ElementTools.h"
#include "support/MeshBuilder.h"
#include "support/MixedStructure.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

const Material Steel = {2.1e11, 0.3, 7850.0};

// A model with what the projection needs of it, the origin at the centroid.
struct Prepared {
    ModelStore model;
    std::vector<NodeInertia> inertia;
    ConnectedParts parts;
    std::vector<PartMotions> motions;

    explicit Prepared(const ModelStore& source) : model(source)
    {
        MoveOriginToCentroid(model);
        inertia = ShellInertia(model);
        parts = FindConnectedParts(model);
        motions = FindPartMotions(model, parts, RestrainedEquations(model));
    }

    std::vector<MotionVector> Products(const std::vector<double>& u) const
    {
        return MassProducts(model, inertia, parts, motions, u);
    }
    std::vector<double> Orthogonal(std::vector<double> u) const
    {
        MakeMassOrthogonal(model, inertia, parts, motions, u);
        return u;
    }
};

std::vector<double> RandomDisplacements(const ModelStore& model, unsigned seed)
{
    ModelStore copy = model;
    LoadAtRandom(copy, seed);
    return copy.GLOAD;
}

// u plus the motion q of part p.
std::vector<double> Moved(const Prepared& p, std::vector<double> u, int part, const MotionVector& q)
{
    for (int n = 0; n < p.model.NPOIN; ++n) {
        if (p.parts.partOfNode[n] != part) {
            continue;
        }
        const MotionVector motion = MotionAt(p.motions[part], q, p.model.NodeCoordinates[n]);
        for (int k = 0; k < DofsPerNode; ++k) {
            u[DofsPerNode * n + k] += k < RX ? motion[k] : motion[k] / p.motions[part].size;
        }
    }
    return u;
}

double MassOf(const Prepared& p)
{
    double mass = 0.0;
    for (const NodeInertia& node : p.inertia) { mass += node.mass; }
    return mass;
}

double LargestOf(const MotionVector& products)
{
    double largest = 0.0;
    for (const double product : products) { largest = std::max(largest, std::fabs(product)); }
    return largest;
}

// Rᵀ·M·R by hand: a tube of mass m and half length L along x, moving along y and turning about z through its middle.
TEST(MassProducts, OfATubeAreItsMomenta)
{
    MeshBuilder mesh(Steel);
    mesh.AddNode({-1.5, 0.0, 0.0});
    mesh.AddNode({1.5, 0.0, 0.0});
    mesh.AddTube(0, 1, {0.0, 0.0, 1.0}, {0.1, 0.01});
    const Prepared p(mesh.Model());
    const double mass = 3.0 * p.model.BeamElements[0].section.A * Steel.Density;
    const MotionVector q = {0.0, 2.0, 0.0, 0.0, 0.0, 5.0};
    const std::vector<MotionVector> products = p.Products(Moved(p, std::vector<double>(12, 0.0), 0, q));
    const double expected[6] = {0.0, 2.0 * mass, 0.0, 0.0, 0.0, 5.0 * mass / 3.0}; // m·(2L)²/12 / L²
    for (int k = 0; k < 6; ++k) { EXPECT_NEAR(products[0][k], expected[k], 1e-14 * mass * 5.0) << k; }
}

// Products of a shell are momenta, too: mass·u of the centre and the angular momentum of a turn.
TEST(MassProducts, OfAPlateAreItsMomenta)
{
    MeshBuilder mesh(Steel);
    AddGrid(mesh, 4, 2, 0.02, Cell::Quad, [](int i, int j) { return Vector3{0.5 * i, 0.4 * j, 3.0}; });
    const Prepared p(mesh.Model());
    const double a = 2.0, b = 0.8, mass = a * b * 0.02 * Steel.Density, size = 0.5 * std::hypot(a, b);
    EXPECT_NEAR(p.motions[0].size, size, 1e-15);
    std::vector<double> zero(std::size_t(DofsPerNode) * p.model.NPOIN, 0.0);
    const auto products = p.Products(Moved(p, zero, 0, {1.0, 0.0, -3.0, 0.0, 0.0, 2.0}));
    const double polar = mass * (a * a + b * b) / 12.0 / (size * size);
    const double expected[6] = {mass, 0.0, -3.0 * mass, 0.0, 0.0, 2.0 * polar};
    for (int k = 0; k < 6; ++k) { EXPECT_NEAR(products[0][k], expected[k], 1e-7 * mass) << k; }
}

TEST(MakeMassOrthogonal, LeavesNoMomentumInTheFreeMotions)
{
    const Prepared p(MixedStructure().Model());
    ASSERT_EQ(p.parts.count, 1);
    for (const unsigned seed : {1u, 2u, 3u}) {
        const std::vector<double> u = RandomDisplacements(p.model, seed);
        const MotionVector before = p.Products(u)[0], after = p.Products(p.Orthogonal(u))[0];
        EXPECT_GT(LargestOf(before), 1e-3 * MassOf(p));
        EXPECT_LT(LargestOf(after), 1e-13 * MassOf(p)); // displacements of order 1
    }
}

TEST(MakeMassOrthogonal, GivesTheSameWhateverFreeMotionIsAdded)
{
    const Prepared p(MixedStructure().Model());
    const std::vector<double> u = RandomDisplacements(p.model, 4), expected = p.Orthogonal(u);
    for (const MotionVector& q : {MotionVector{1, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 1, 0}, {3, -20, 7, 11, -5, 100}}) {
        const std::vector<double> moved = p.Orthogonal(Moved(p, u, 0, q));
        EXPECT_LT(LargestDifference(expected.data(), moved.data(), static_cast<int>(u.size())), 1e-12);
    }
}

TEST(MakeMassOrthogonal, TakesARigidMotionAwayAltogether)
{
    const Prepared p(MixedStructure().Model());
    const std::vector<double> zero(std::size_t(DofsPerNode) * p.model.NPOIN, 0.0);
    const std::vector<double> result = p.Orthogonal(Moved(p, zero, 0, {1.0, 2.0, -1.0, 0.5, -0.3, 2.0}));
    for (const double u : result) { EXPECT_NEAR(u, 0.0, 1e-13); }
}

// A plate clamped at a node and, apart from it, a free one and one on a hinge.
TEST(MakeMassOrthogonal, TreatsEveryPartByItsOwnFreeMotions)
{
    MeshBuilder mesh(Steel);
    for (int plate = 0; plate < 3; ++plate) {
        const Grid grid = AddGrid(mesh, 3, 2, 0.02, Cell::Quad, [&](int i, int j) {
            return Vector3{10.0 * plate + 0.5 * i, 0.4 * j + 0.05 * i * j, 3.0};
        });
        if (plate == 0) {
            mesh.Restrain(grid.At(0, 0), {DX, DY, DZ, RX, RY, RZ});
        } else if (plate == 2) {
            for (int i = 0; i <= 3; ++i) { mesh.Restrain(grid.At(i, 0), {DX, DY, DZ}); }
        }
    }
    const Prepared p(mesh.Model());
    const std::vector<double> u = RandomDisplacements(p.model, 5), result = p.Orthogonal(u);
    const std::vector<MotionVector> before = p.Products(u), after = p.Products(result);
    for (int i = 0; i < DofsPerNode * 12; ++i) { EXPECT_EQ(result[i], u[i]); }
    double turning = 0.0;
    for (int k = 0; k < RigidMotionCount; ++k) {
        EXPECT_NEAR(after[1][k], 0.0, 1e-13 * MassOf(p));
        turning += p.motions[2].free[0][k] * after[2][k];
    }
    EXPECT_NEAR(turning, 0.0, 1e-13 * MassOf(p));
    EXPECT_GT(std::fabs(after[2][DX]), 1e-3 * std::fabs(before[2][DX])); // held motions stay
    // The nodes on the hinge keep their displacement.
    for (int i = 0; i <= 3; ++i) {
        for (int k = 0; k < 3; ++k) {
            const int equation = DofsPerNode * (24 + 3 * i) + k;
            EXPECT_NEAR(result[equation], u[equation], 1e-14);
        }
    }
}

// The twist of a straight line of tubes moves no mass.
TEST(MakeMassOrthogonal, LeavesAMotionWithoutMassAlone)
{
    MeshBuilder mesh(Steel);
    for (int i = 0; i <= 3; ++i) { mesh.AddNode({1.0 * i, 0.0, 0.0}); }
    for (int i = 0; i < 3; ++i) { mesh.AddTube(i, i + 1, {0.0, 0.0, 1.0}, {0.05, 0.01}); }
    const Prepared p(mesh.Model());
    const std::vector<double> zero(24, 0.0);
    const std::vector<double> result = p.Orthogonal(Moved(p, zero, 0, {1.0, 2.0, -1.0, 3.0, -0.3, 2.0}));
    for (int i = 0; i < 24; ++i) { EXPECT_NEAR(result[i], i % DofsPerNode == RX ? 3.0 / 1.5 : 0.0, 1e-13) << i; }
}

} // namespace
} // namespace tarnvexo

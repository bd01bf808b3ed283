#include "app/InertiaLoads.h"

#include "app/AssemblyDriver.h"
#include "app/ModelLoading.h"
#include "inertia/BalanceCheck.h"
#include "inertia/InertiaRelief.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

// Shells of several kinds and beams: forces and moments of applied and inertia loads about the origin of the file
// cancel.
TEST(InertiaLoads, BalanceTheAppliedOnes)
{
    const std::string file = TARNVEXO_SOURCE_DIR "/examples/wing/fem_solving.txt";
    ModelStore model;
    LoadModel(model, file);
    const std::vector<Vector3> before = model.NodeCoordinates;
    std::string fault;
    const std::vector<double> inertia = BalancingInertiaLoads(model, file, fault);
    EXPECT_EQ(fault, "");
    ASSERT_EQ(inertia.size(), before.size() * DofsPerNode);
    for (std::size_t n = 0; n < before.size(); ++n) {
        for (std::size_t k = 0; k < 3; ++k) { EXPECT_NEAR(model.NodeCoordinates[n][k], before[n][k], 1e-8); }
    }
    AssembleLoads(model);
    const LoadSizes applied = SizesOfLoads(model);
    double largest = 0.0;
    for (std::size_t i = 0; i < inertia.size(); ++i) {
        model.GLOAD[i] += inertia[i];
        largest = std::fmax(largest, std::fabs(inertia[i]));
    }
    EXPECT_GT(largest, 0.0);
    const LoadResultant rest = ResultantOfLoads(model);
    EXPECT_LE(Length(rest.force), 1e-12 * applied.forces);
    EXPECT_LE(Length(rest.moment), 1e-12 * applied.moments);
}

TEST(InertiaLoads, OfAModelWithoutMassAreNone)
{
    const std::string file = TARNVEXO_SOURCE_DIR "/examples/wing/fem_solving.txt";
    ModelStore model;
    LoadModel(model, file);
    for (QuadShellElement& element : model.QuadElements) { element.Density = 0.0; }
    for (TriShellElement& element : model.TriElements) { element.Density = 0.0; }
    for (BeamElement& element : model.BeamElements) { element.Density = 0.0; }
    std::string fault;
    EXPECT_TRUE(BalancingInertiaLoads(model, file, fault).empty());
    EXPECT_NE(fault, "");
}

} // namespace
} // namespace tarnvexo

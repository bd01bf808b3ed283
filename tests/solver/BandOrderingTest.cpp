#include "solver/BandOrdering.h"

#include "support/MeshBuilder.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using test::MeshBuilder;

constexpr Material Steel = {2.1e11, 0.3, 7850.0};

// Two chains whose nodes alternate, and two nodes without element.
TEST(ReverseCuthillMcKee, KeepsConnectedPartsTogetherInTheOrderOfTheirLowestNodes)
{
    MeshBuilder mesh(Steel);
    for (int n = 0; n < 10; ++n) { mesh.AddNode({double(n), 0.0, 0.0}); }
    for (int n = 1; n < 6; ++n) { mesh.AddTube(n, n + 2, {0.0, 0.0, 1.0}, {0.1, 0.01}); } // 1-3-5-7 and 2-4-6
    const std::vector<int> newNumber = ReverseCuthillMcKee(BuildNodeGraph(mesh.Model()));
    EXPECT_EQ(newNumber, (std::vector<int>{0, 4, 7, 3, 6, 2, 5, 1, 8, 9}));
}

TEST(ReverseCuthillMcKee, StartsAtTheEndOfAChainNotInItsMiddle)
{
    MeshBuilder mesh(Steel);
    for (int n = 0; n < 7; ++n) { mesh.AddNode({double(n), 0.0, 0.0}); }
    const int chain[7] = {4, 6, 1, 0, 3, 5, 2};
    for (int i = 0; i < 6; ++i) { mesh.AddTube(chain[i], chain[i + 1], {0.0, 0.0, 1.0}, {0.1, 0.01}); }
    const std::vector<int> newNumber = ReverseCuthillMcKee(BuildNodeGraph(mesh.Model()));
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(std::abs(newNumber[std::size_t(chain[i + 1])] - newNumber[std::size_t(chain[i])]), 1);
    }
}

TEST(ReverseCuthillMcKee, OfAModelWithoutNodesIsEmpty)
{
    EXPECT_TRUE(ReverseCuthillMcKee(BuildNodeGraph(ModelStore())).empty());
}

} // namespace
} // namespace tarnvexo

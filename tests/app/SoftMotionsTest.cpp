// Chains of springs without a model: the stiffness of every joint is chosen, so motions and λ are known.
#include "app/SoftMotions.h"

#include "support/NodeGraphs.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <memory>

namespace tarnvexo {
namespace {

using namespace test;

// Nodes 0, 1, 2 ... in a row; springs in each of the six directions from node to node and from node 0 to the ground,
// all of stiffness 1 unless they are changed.
class Springs {
public:
    explicit Springs(int nodes) : weights(static_cast<std::size_t>(DofsPerNode) * nodes, 0.0)
    {
        matrix.pattern = LowerPattern(Chain(nodes), NaturalOrder(nodes));
        matrix.values = LargeArray(BlockEntries * matrix.pattern.rows.size());
        std::fill_n(matrix.values.Data(), BlockEntries * matrix.pattern.rows.size(), 0.0);
        for (int dof = 0; dof < DofsPerNode; ++dof) {
            AddToGround(0, dof, 1.0);
            for (int node = 0; node + 1 < nodes; ++node) { AddBetween(node, dof, 1.0); }
        }
    }

    void AddToGround(int node, int dof, double stiffness)
    {
        Entry(node, 0, dof) += stiffness;
        weights[static_cast<std::size_t>(DofsPerNode) * node + dof] += std::fabs(stiffness);
    }

    // To the next node.
    void AddBetween(int node, int dof, double stiffness)
    {
        AddToGround(node, dof, stiffness);
        AddToGround(node + 1, dof, stiffness);
        Entry(node, 1, dof) -= stiffness;
    }

    // The spring from the node to the next one gets another stiffness.
    void Change(int node, int dof, double stiffness)
    {
        for (const int end : {node, node + 1}) {
            Entry(end, 0, dof) += stiffness - 1.0;
            weights[static_cast<std::size_t>(DofsPerNode) * end + dof] += stiffness - 1.0;
        }
        Entry(node, 1, dof) = -stiffness;
    }

    // Every equation in units of its own: K becomes S·K·S.
    void Scale(const std::vector<double>& s)
    {
        for (int J = 0; J < matrix.pattern.Size(); ++J) {
            for (int block = 0; block < matrix.pattern.BlocksOf(J); ++block) {
                for (int dof = 0; dof < DofsPerNode; ++dof) {
                    Entry(J, block, dof) *= s[At(J, dof)] * s[At(J + block, dof)];
                }
            }
        }
        for (std::size_t i = 0; i < s.size(); ++i) { weights[i] *= s[i] * s[i]; }
    }

    static std::size_t At(int node, int dof) { return static_cast<std::size_t>(DofsPerNode) * node + dof; }

    BlockMatrix matrix;
    std::vector<double> weights;

private:
    // Of the column of the node and the direction: in the diagonal block (0), or in that of the next node (1).
    double& Entry(int node, int block, int dof)
    {
        const int height = DofsPerNode * matrix.pattern.BlocksOf(node);
        return matrix.Column(node)[height * dof + DofsPerNode * block + dof];
    }
};

class SoftMotionsOf : public testing::TestWithParam<EngineKind> {
protected:
    static SoftMotions Find(Springs& springs)
    {
        const std::unique_ptr<SparseEngine> engine = MakeSparseEngine(GetParam(), 1);
        engine->Analyse(springs.matrix.pattern);
        return FindSoftMotions(*engine, springs.matrix, springs.weights);
    }

    // √d·u of the nodes in one direction.
    static std::vector<double> Along(const SoftMotion& motion, const Springs& springs, int dof)
    {
        std::vector<double> u;
        for (std::size_t i = static_cast<std::size_t>(dof); i < motion.motion.size(); i += DofsPerNode) {
            u.push_back(std::fabs(std::sqrt(springs.weights[i]) * motion.motion[i]));
        }
        return u;
    }

    static void ExpectNear(const std::vector<double>& values, const std::vector<double>& expected)
    {
        ASSERT_EQ(values.size(), expected.size());
        for (std::size_t i = 0; i < values.size(); ++i) { EXPECT_NEAR(values[i], expected[i], 1e-6) << i; }
    }
};

INSTANTIATE_TEST_SUITE_P(All, SoftMotionsOf,
                         testing::Values(EngineKind::Multifrontal, EngineKind::Cholmod, EngineKind::Skyline),
                         [](const auto& info) -> std::string {
                             return info.param == EngineKind::Multifrontal ? "Sparse"
                                    : info.param == EngineKind::Cholmod    ? "Cholmod"
                                                                           : "Skyline";
                         });

TEST_P(SoftMotionsOf, ASoundChainAreNone)
{
    Springs springs(6);
    EXPECT_TRUE(Find(springs).motions.empty());
}

// √d is √2 inside and 1 at the free end, where one spring is missing.
TEST_P(SoftMotionsOf, ACutSpringAreWhatIsBehindIt)
{
    Springs springs(6);
    springs.Change(2, DY, 0.0);
    const SoftMotions found = Find(springs);
    ASSERT_EQ(found.motions.size(), 1u);
    EXPECT_LE(std::fabs(found.motions[0].lambda), NoStiffness);
    EXPECT_FALSE(found.mayBeMore);
    const double end = std::sqrt(0.5);
    ExpectNear(Along(found.motions[0], springs, DY), {0.0, 0.0, 0.0, end, 1.0, end});
    ExpectNear(Along(found.motions[0], springs, DX), {0.0, 0.0, 0.0, 0.0, 0.0, 0.0});
}

// uᵀ·K·u = k and uᵀ·D·u = 1 + 2 + 1 for a motion of 1 of three nodes.
TEST_P(SoftMotionsOf, ASoftSpringHaveItsShareOfTheStiffness)
{
    Springs springs(6);
    springs.Change(2, RZ, 1e-11);
    const SoftMotions found = Find(springs);
    ASSERT_EQ(found.motions.size(), 1u);
    EXPECT_NEAR(found.motions[0].lambda, 1e-11 / 4.0, 1e-16);
}

TEST_P(SoftMotionsOf, TwoCutsInARowComeOutApart)
{
    Springs springs(7);
    springs.Change(1, DX, 0.0);
    springs.Change(4, DX, 0.0);
    const SoftMotions found = Find(springs);
    ASSERT_EQ(found.motions.size(), 2u);
    std::vector<std::vector<double>> parts = {Along(found.motions[0], springs, DX),
                                              Along(found.motions[1], springs, DX)};
    std::sort(parts.begin(), parts.end());
    ExpectNear(parts[0], {0.0, 0.0, 0.0, 0.0, 0.0, 1.0, 1.0});
    const double end = std::sqrt(0.5);
    ExpectNear(parts[1], {0.0, 0.0, end, 1.0, end, 0.0, 0.0});
}

TEST_P(SoftMotionsOf, ThreeKindsComeNegativeOnesFirstAndSoftOnesLast)
{
    Springs springs(5);
    springs.Change(1, DX, 1e-12);
    springs.Change(2, DY, 0.0);
    springs.AddToGround(4, DZ, -3.0);
    springs.Change(2, RX, 1e-11);
    const SoftMotions found = Find(springs);
    ASSERT_EQ(found.motions.size(), 4u);
    EXPECT_LT(found.motions[0].lambda, -0.01);
    EXPECT_LE(std::fabs(found.motions[1].lambda), NoStiffness);
    EXPECT_NEAR(found.motions[2].lambda, 1e-12 / 4.0, 1e-15);
    EXPECT_NEAR(found.motions[3].lambda, 1e-11 / 2.0, 1e-15);
}

TEST_P(SoftMotionsOf, EquationsInOtherUnitsHaveTheSameLambda)
{
    Springs springs(6);
    springs.Change(2, RZ, 1e-11);
    springs.Change(3, DX, 0.0);
    std::vector<double> units;
    for (int i = 0; i < 6 * DofsPerNode; ++i) { units.push_back(i % DofsPerNode < RX ? 1e-6 : 1e3); }
    springs.Scale(units);
    const SoftMotions found = Find(springs);
    ASSERT_EQ(found.motions.size(), 2u);
    EXPECT_LE(std::fabs(found.motions[0].lambda), NoStiffness);
    EXPECT_NEAR(found.motions[1].lambda, 1e-11 / 4.0, 1e-16);
}

TEST_P(SoftMotionsOf, AMatrixLeaveItAsItWas)
{
    Springs springs(6);
    springs.Change(2, DX, 0.0);
    const std::vector<double> before = DenseOf(springs.matrix);
    EXPECT_FALSE(Find(springs).motions.empty());
    EXPECT_EQ(DenseOf(springs.matrix), before);
}

TEST_P(SoftMotionsOf, AMatrixThatIsNoNumbersAreNone)
{
    Springs springs(4);
    springs.AddToGround(2, DX, std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(Find(springs).motions.empty());
}

// Ten joints cut in all six directions: 60 motions, of which a block holds 40.
TEST_P(SoftMotionsOf, MoreThanOneBlockHoldsAreSaidToBeMore)
{
    Springs springs(31);
    for (int node = 0; node < 30; node += 3) {
        for (int dof = 0; dof < DofsPerNode; ++dof) { springs.Change(node, dof, 0.0); }
    }
    const SoftMotions found = Find(springs);
    EXPECT_EQ(found.motions.size(), 40u);
    EXPECT_TRUE(found.mayBeMore);
    for (const SoftMotion& motion : found.motions) { EXPECT_TRUE(std::fabs(motion.lambda) <= NoStiffness); }
}

} // namespace
} // namespace tarnvexo

#include "elements/ShellStiffnessBatch.h"

#include "elements/ShellSetUp.h"
#include "elements/ShellStiffness.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <hwy/targets.h>
#include <random>
#include <thread>
#include <vector>

namespace tarnvexo {
namespace {

// Distorted, warped elements of different materials and thicknesses, askew to the global axes.
class RandomShells {
public:
    QuadShellElement Quad()
    {
        const std::array<Vector3, 4> nodes = Nodes();
        QuadShellElement element;
        QuadShellSetUp(element, nodes.data(), QuadNodeCount, Modulus(), Poisson(), 1.0, Thickness());
        return element;
    }
    TriShellElement Tri()
    {
        const std::array<Vector3, 4> nodes = Nodes();
        TriShellElement element;
        TriShellSetUp(element, nodes.data(), TriNodeCount, Modulus(), Poisson(), Thickness(), 1.0);
        return element;
    }

private:
    double Number(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random); }
    Vector3 Vector() { return {Number(-1.0, 1.0), Number(-1.0, 1.0), Number(-1.0, 1.0)}; }
    double Modulus() { return Number(1e10, 4e11); }
    double Poisson() { return Number(0.0, 0.45); }
    double Thickness() { return Number(0.001, 0.1); }
    std::array<Vector3, 4> Nodes()
    {
        const Vector3 origin = 5.0 * Vector(), a = Normalised(Vector()), b = Normalised(Vector());
        const auto corner = [&](double x, double y) { return origin + x * a + y * b + 0.2 * Vector(); };
        return {corner(0.0, 0.0), corner(1.0, 0.0), corner(1.0, 1.0), corner(0.0, 1.0)};
    }

    std::mt19937_64 random = std::mt19937_64(7);
};

constexpr double Untouched = -777.0;

// Whether the batch gives the bits of the scalar kernel for 1 ... ShellBatch elements, and writes no matrix more.
template <class Element, int n>
void ExpectEqualToOneByOne(const std::vector<Element>& elements,
                           void (*batch)(const Element* const*, int, double (*)[n][n]),
                           void (*scalar)(const Element&, double (*)[n]))
{
    for (int count = 1; count <= ShellBatch; ++count) {
        const Element* chosen[ShellBatch];
        for (int e = 0; e < count; ++e) { chosen[e] = &elements[e]; }
        std::vector<std::array<double, n * n>> K(ShellBatch + 1);
        for (auto& matrix : K) { matrix.fill(Untouched); }
        batch(chosen, count, reinterpret_cast<double(*)[n][n]>(K.data()));
        for (int e = 0; e < count; ++e) {
            double expected[n][n];
            scalar(elements[e], expected);
            EXPECT_EQ(std::memcmp(K[e].data(), expected, sizeof expected), 0) << "element " << e << " of " << count;
        }
        for (double entry : K[count]) { EXPECT_EQ(entry, Untouched); }
    }
}

void ExpectBatchesEqualToOneByOne()
{
    RandomShells shells;
    std::vector<QuadShellElement> quads;
    std::vector<TriShellElement> tris;
    for (int e = 0; e < ShellBatch; ++e) {
        quads.push_back(shells.Quad());
        tris.push_back(shells.Tri());
    }
    ExpectEqualToOneByOne(quads, QuadShellStiffnessBatch, QuadShellStiffness);
    ExpectEqualToOneByOne(tris, TriShellStiffnessBatch, TriShellStiffness);
}

TEST(ShellStiffnessBatch, IsEqualToTheElementsOneByOneToTheLastBit)
{
    ExpectBatchesEqualToOneByOne();
}

TEST(ShellStiffnessBatch, IsEqualOnEveryVectorUnitOfThisProcessor)
{
    for (std::int64_t rest = hwy::SupportedTargets(); rest != 0; rest &= rest - 1) {
        const std::int64_t target = rest & -rest;
        SCOPED_TRACE(hwy::TargetName(target));
        hwy::SetSupportedTargetsForTest(target);
        ExpectBatchesEqualToOneByOne();
    }
    hwy::SetSupportedTargetsForTest(0);
}

TEST(ShellStiffnessBatch, OneDegenerateElementLeavesTheOthersAlone)
{
    RandomShells shells;
    std::vector<QuadShellElement> quads(ShellBatch, shells.Quad());
    QuadShellElement collapsed = quads[3];
    for (Vector3& node : collapsed.coordinates) { node = collapsed.coordinates[0]; }
    const QuadShellElement* chosen[ShellBatch];
    for (int e = 0; e < ShellBatch; ++e) { chosen[e] = e == 3 ? &collapsed : &quads[e]; }
    std::vector<double> K(ShellBatch * QuadDofCount * QuadDofCount);
    const auto matrices = reinterpret_cast<double(*)[QuadDofCount][QuadDofCount]>(K.data());
    QuadShellStiffnessBatch(chosen, ShellBatch, matrices);
    double expected[QuadDofCount][QuadDofCount];
    QuadShellStiffness(quads[0], expected);
    for (int e = 0; e < ShellBatch; ++e) {
        EXPECT_EQ(std::isfinite(matrices[e][0][0]), e != 3);
        EXPECT_EQ(std::memcmp(matrices[e], expected, sizeof expected) == 0, e != 3);
    }
}

TEST(ShellStiffnessBatch, MayBeCalledFromSeveralThreads)
{
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t) { threads.emplace_back(ExpectBatchesEqualToOneByOne); }
}

} // namespace
} // namespace tarnvexo

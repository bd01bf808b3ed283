#include "output/NodalAveraging.h"

#include "support/SmallModels.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace tarnvexo {
namespace {

using test::ModelText;
using test::StoreOf;

// Every component of the element's faces at node position i: positive face p, negative face n.
template <class Element> void SetFaces(Element& element, int i, double p, double n)
{
    std::fill_n(element.positiveFace[i], StressCount, p);
    std::fill_n(element.negativeFace[i], StressCount, n);
}

ModelText ThreeThicknesses(double t0, double t1)
{
    ModelText model;
    model.Material(2.1e11, 0.3, 7850.0);
    model.Thickness(t0);
    model.Thickness(t1);
    return model;
}

// Two squares on both sides of the edge 1-2 (x = 1), the second of thickness t1, bent up by the angle and, when
// reversed, with its normal the other way. The faces hold 1, -1 and 3, -5.
ModelStore TwoQuads(double t0, double t1, double angle, bool reversed)
{
    ModelText model = ThreeThicknesses(t0, t1);
    const double x = 1.0 + std::cos(angle), z = std::sin(angle);
    model.Node(0.0, 0.0, 0.0);
    model.Node(1.0, 0.0, 0.0);
    model.Node(1.0, 1.0, 0.0);
    model.Node(0.0, 1.0, 0.0);
    model.Node(x, 0.0, z);
    model.Node(x, 1.0, z);
    model.Quad({0, 1, 2, 3}, 0, 0);
    if (reversed) {
        model.Quad({1, 2, 5, 4}, 0, 1);
    } else {
        model.Quad({1, 4, 5, 2}, 0, 1);
    }
    ModelStore store = StoreOf(model);
    for (int i = 0; i < QuadNodeCount; ++i) {
        SetFaces(store.QuadElements[0], i, 1.0, -1.0);
        SetFaces(store.QuadElements[1], i, 3.0, -5.0);
    }
    AverageShellStresses(store);
    return store;
}

struct Faces {
    double positive;
    double negative;
    bool operator==(const Faces&) const = default;
};

void PrintTo(const Faces& faces, std::ostream* out)
{
    *out << faces.positive << " / " << faces.negative;
}

// What element e holds at the position i after averaging.
Faces Averaged(const ModelStore& model, int e, int i)
{
    const QuadShellElement& element = model.QuadElements[std::size_t(e)];
    return {element.averagedPositiveFace[i][SX], element.averagedNegativeFace[i][SX]};
}

TEST(NodalAveraging, OfAFlatPlateTakesAllFourElementsOfAnInteriorNode)
{
    ModelText text = ThreeThicknesses(0.01, 0.01);
    for (double y : {0.0, 1.0, 2.0}) {
        for (double x : {0.0, 1.0, 2.0}) { text.Node(x, y, 0.0); }
    }
    for (int n : {0, 1, 3, 4}) { text.Quad({n, n + 1, n + 4, n + 3}); }
    ModelStore model = StoreOf(text);
    const double values[4] = {1.0, 2.0, 4.0, 8.0};
    for (int e = 0; e < 4; ++e) {
        for (int i = 0; i < 4; ++i) { SetFaces(model.QuadElements[std::size_t(e)], i, values[e], -10.0 * values[e]); }
    }
    AverageShellStresses(model);
    const int positionOfNode4[4] = {2, 3, 1, 0};
    for (int e = 0; e < 4; ++e) { EXPECT_EQ(Averaged(model, e, positionOfNode4[e]), (Faces{3.75, -37.5})); }
    EXPECT_EQ(Averaged(model, 0, 1), (Faces{1.5, -15.0})); // node 1, on the edge: elements 0 and 1
    EXPECT_EQ(Averaged(model, 0, 0), (Faces{1.0, -10.0})); // node 0, the corner
}

TEST(NodalAveraging, ExchangesTheFacesOfANeighbourWithOpposedNormal)
{
    const ModelStore model = TwoQuads(0.01, 0.01, 0.0, true);
    EXPECT_EQ(Averaged(model, 0, 1), (Faces{(1.0 - 5.0) / 2, (-1.0 + 3.0) / 2}));
    EXPECT_EQ(Averaged(model, 0, 2), (Faces{-2.0, 1.0}));
    EXPECT_EQ(Averaged(model, 1, 0), (Faces{(3.0 - 1.0) / 2, (-5.0 + 1.0) / 2}));
    EXPECT_EQ(Averaged(model, 1, 1), (Faces{1.0, -2.0}));
    EXPECT_EQ(Averaged(model, 0, 0), (Faces{1.0, -1.0}));
}

TEST(NodalAveraging, LeavesOutTheOtherSideOfARightAngledFold)
{
    for (bool reversed : {false, true}) {
        const ModelStore model = TwoQuads(0.01, 0.01, std::acos(0.0), reversed);
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(Averaged(model, 0, i), (Faces{1.0, -1.0})) << "position " << i;
            EXPECT_EQ(Averaged(model, 1, i), (Faces{3.0, -5.0})) << "position " << i;
        }
    }
}

// A web under a plate that runs through: the two plate elements average, the web keeps its own.
TEST(NodalAveraging, LeavesOutTheWebOfATJunction)
{
    ModelText text = ThreeThicknesses(0.01, 0.01);
    text.Node(1.0, 0.0, 0.0);
    text.Node(1.0, 1.0, 0.0);
    for (const Vector3& p : {Vector3{0, 0, 0}, {2, 0, 0}, {1, 0, -1}}) {
        text.Node(p[0], p[1], p[2]);
        text.Node(p[0], p[1] + 1.0, p[2]);
    }
    text.Quad({2, 0, 1, 3});
    text.Quad({0, 4, 5, 1});
    text.Quad({6, 0, 1, 7});
    ModelStore model = StoreOf(text);
    const double values[3] = {1.0, 3.0, 7.0};
    for (int e = 0; e < 3; ++e) {
        for (int i = 0; i < 4; ++i) { SetFaces(model.QuadElements[std::size_t(e)], i, values[e], -values[e]); }
    }
    AverageShellStresses(model);
    EXPECT_EQ(Averaged(model, 0, 1), (Faces{2.0, -2.0}));
    EXPECT_EQ(Averaged(model, 1, 0), (Faces{2.0, -2.0}));
    EXPECT_EQ(Averaged(model, 2, 1), (Faces{7.0, -7.0}));
}

// |d| = 2·(t/2)·sin(φ/2) for equal thickness: the limit t/10 is at 11.48 degrees.
TEST(NodalAveraging, TakesANeighbourAcrossAFlatFold)
{
    const double degree = std::acos(-1.0) / 180.0;
    EXPECT_EQ(Averaged(TwoQuads(0.01, 0.01, 11.4 * degree, false), 0, 1), (Faces{2.0, -3.0}));
    EXPECT_EQ(Averaged(TwoQuads(0.01, 0.01, 11.5 * degree, false), 0, 1), (Faces{1.0, -1.0}));
    EXPECT_EQ(Averaged(TwoQuads(0.01, 0.01, -11.4 * degree, true), 0, 1), (Faces{-2.0, 1.0}));
}

TEST(NodalAveraging, LetsThicknesses10And13ExcludeEachOther)
{
    const ModelStore model = TwoQuads(10.0, 13.0, 0.0, false);
    EXPECT_EQ(Averaged(model, 0, 1), (Faces{1.0, -1.0}));
    EXPECT_EQ(Averaged(model, 1, 0), (Faces{3.0, -5.0}));
}

TEST(NodalAveraging, LetsThicknesses10And11IncludeEachOther)
{
    const ModelStore model = TwoQuads(10.0, 11.0, 0.0, false);
    EXPECT_EQ(Averaged(model, 0, 1), (Faces{2.0, -3.0}));
    EXPECT_EQ(Averaged(model, 1, 0), (Faces{2.0, -3.0}));
}

TEST(NodalAveraging, LetsTheThickerOf100And122IncludeTheThinnerButNotTheOtherWay)
{
    const ModelStore model = TwoQuads(100.0, 122.0, 0.0, false);
    EXPECT_EQ(Averaged(model, 0, 1), (Faces{1.0, -1.0}));
    EXPECT_EQ(Averaged(model, 1, 0), (Faces{2.0, -3.0}));
}

// 12/2 - 10/2 = 1 = 10/10 without any rounding.
TEST(NodalAveraging, TakesANeighbourExactlyATenthOfTheThicknessAway)
{
    EXPECT_EQ(Averaged(TwoQuads(10.0, 12.0, 0.0, false), 0, 1), (Faces{2.0, -3.0}));
}

TEST(MatchFaces, CountsPerpendicularNormalsAsOpposed)
{
    EXPECT_EQ(MatchFaces({0, 0, 0}, 1.0, {0, 0, 1}, 0.0), FaceMatch::Exchanged); // no distance hides the choice
    EXPECT_EQ(MatchFaces({0, 0, 1}, 1.0, {1, 0, 0}, 1.0), FaceMatch::Apart);
    EXPECT_EQ(MatchFaces({0, 0, 1}, 1.0, {0, 0, 1}, 1.0), FaceMatch::Same);
    EXPECT_EQ(MatchFaces({0, 0, 1}, 1.0, {0, 0, -1}, 1.0), FaceMatch::Exchanged);
}

TEST(NodalAveraging, ReadsOnlyFacesThatAreNotAveraged)
{
    ModelStore model = TwoQuads(0.01, 0.01, 0.0, false);
    const Faces once = Averaged(model, 0, 1);
    AverageShellStresses(model);
    EXPECT_EQ(Averaged(model, 0, 1), once);
}

// The literal procedure: for one element and one node number, a search through all elements.
struct Shell {
    const Vector3* normal;
    double thickness;
    const int* nodes;
    int nodeCount;
    const double (*positive)[StressCount];
    const double (*negative)[StressCount];
};

template <class Elements, class Connectivity>
std::vector<Shell> Shells(const Elements& elements, const Connectivity& nodes)
{
    std::vector<Shell> shells;
    for (std::size_t e = 0; e < elements.size(); ++e) {
        shells.push_back({&elements[e].axes[2], elements[e].thickness, nodes[e].data(), int(nodes[e].size()),
                          elements[e].positiveFace, elements[e].negativeFace});
    }
    return shells;
}

int FirstPosition(const Shell& shell, int node)
{
    return int(std::find(shell.nodes, shell.nodes + shell.nodeCount, node) - shell.nodes);
}

// out [2][6]; returns the position the averages belong to.
int AverageLiterally(const std::vector<Shell>& own, std::size_t e, const std::vector<Shell>& others, int node,
                     double out[2][StressCount])
{
    const Shell& shell = own[e];
    const int i = FirstPosition(shell, node);
    for (int k = 0; k < StressCount; ++k) {
        out[0][k] = shell.positive[i][k];
        out[1][k] = shell.negative[i][k];
    }
    int count = 1;
    const auto visit = [&](const Shell& other) {
        const int position = FirstPosition(other, node);
        if (position == other.nodeCount) {
            return;
        }
        double dot = 0.0, square = 0.0;
        for (int c = 0; c < 3; ++c) { dot += (*shell.normal)[c] * (*other.normal)[c]; }
        const double sign = dot <= 0.0 ? -1.0 : 1.0;
        for (int c = 0; c < 3; ++c) {
            const double d =
                other.thickness / 2 * (sign * (*other.normal)[c]) - shell.thickness / 2 * (*shell.normal)[c];
            square += d * d;
        }
        if (std::sqrt(square) > shell.thickness / 10) {
            return;
        }
        for (int k = 0; k < StressCount; ++k) {
            out[0][k] += dot <= 0.0 ? other.negative[position][k] : other.positive[position][k];
            out[1][k] += dot <= 0.0 ? other.positive[position][k] : other.negative[position][k];
        }
        ++count;
    };
    for (std::size_t j = 0; j < own.size(); ++j) {
        if (j != e) {
            visit(own[j]);
        }
    }
    for (const Shell& other : others) { visit(other); }
    const double reciprocal = 1.0 / count;
    for (int k = 0; k < StressCount; ++k) {
        out[0][k] *= reciprocal;
        out[1][k] *= reciprocal;
    }
    return i;
}

template <class Elements>
void ExpectLiteralAverages(const Elements& elements, const std::vector<Shell>& own, const std::vector<Shell>& others)
{
    for (std::size_t e = 0; e < elements.size(); ++e) {
        auto expected = elements[e]; // positions that no node number leads to keep their zeros
        std::fill_n(&expected.averagedPositiveFace[0][0], expected.NodeCount * StressCount, 0.0);
        std::fill_n(&expected.averagedNegativeFace[0][0], expected.NodeCount * StressCount, 0.0);
        for (int p = 0; p < own[e].nodeCount; ++p) {
            double mean[2][StressCount];
            const int i = AverageLiterally(own, e, others, own[e].nodes[p], mean);
            std::copy_n(mean[0], StressCount, expected.averagedPositiveFace[i]);
            std::copy_n(mean[1], StressCount, expected.averagedNegativeFace[i]);
        }
        for (int i = 0; i < own[e].nodeCount; ++i) {
            for (int k = 0; k < StressCount; ++k) {
                ASSERT_EQ(elements[e].averagedPositiveFace[i][k], expected.averagedPositiveFace[i][k])
                    << "element " << e << ", position " << i << ", component " << k;
                ASSERT_EQ(elements[e].averagedNegativeFace[i][k], expected.averagedNegativeFace[i][k])
                    << "element " << e << ", position " << i << ", component " << k;
            }
        }
    }
}

template <int Nodes>
void FillElement(ShellElement<Nodes>& element, std::array<int, std::size_t(Nodes)>& nodes, int nodeCount,
                 std::mt19937& random)
{
    // Normals near few directions, both ways: neighbours are coplanar, folded a little, folded much or opposed.
    std::uniform_real_distribution<double> stress(-1.0, 1.0), little(-0.06, 0.06);
    const Vector3 directions[] = {{0, 0, 1}, {0, 0, -1}, {1, 0, 0}};
    const double thicknesses[] = {10.0, 10.0, 10.0, 11.0, 12.0, 13.0};
    const Vector3 direction = directions[random() % 3];
    element.axes[2] =
        random() % 2 == 0 ? direction : Normalised(direction + Vector3{little(random), little(random), little(random)});
    element.thickness = thicknesses[random() % 6];
    for (int& node : nodes) { node = int(random() % unsigned(nodeCount)); }
    for (int i = 0; i < Nodes; ++i) {
        for (int k = 0; k < StressCount; ++k) {
            element.positiveFace[i][k] = stress(random);
            element.negativeFace[i][k] = stress(random);
        }
    }
}

// About 16 elements at a node, a good part of them with a node twice.
TEST(NodalAveraging, EqualsTheLiteralSearchThroughAllElementsBitForBit)
{
    constexpr int nodeCount = 60;
    std::mt19937 random(64);
    ModelStore model;
    model.NPOIN = nodeCount;
    model.NodeCoordinates.resize(nodeCount);
    model.NELEM_S_4ND = 150;
    model.QuadElements.resize(150);
    model.QuadConnectivity.resize(150);
    model.NELEM_S_3ND = 130;
    model.TriElements.resize(130);
    model.TriConnectivity.resize(130);
    for (std::size_t e = 0; e < 150; ++e) {
        FillElement(model.QuadElements[e], model.QuadConnectivity[e], nodeCount, random);
    }
    for (std::size_t e = 0; e < 130; ++e) {
        FillElement(model.TriElements[e], model.TriConnectivity[e], nodeCount, random);
    }
    AverageShellStresses(model);
    const std::vector<Shell> quads = Shells(model.QuadElements, model.QuadConnectivity);
    const std::vector<Shell> tris = Shells(model.TriElements, model.TriConnectivity);
    ExpectLiteralAverages(model.QuadElements, quads, tris);
    ExpectLiteralAverages(model.TriElements, tris, quads);
}

} // namespace
} // namespace tarnvexo

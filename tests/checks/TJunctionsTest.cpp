#include "checks/TJunctions.h"

#include "support/MeshBuilder.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace tarnvexo {
namespace {

using test::MeshBuilder;

constexpr Material Steel = {2.1e11, 0.3, 7850.0};
constexpr TBeamSection Section = {0.1, 0.01, 0.05, 0.01};
constexpr double Limit = 1e-4;

std::vector<TJunction> JunctionsOf(const ModelStore& model, double limit = Limit, double coincidence = 1e-6)
{
    const NodeTree tree(UsedNodes(model));
    return FindTJunctions(model, ShellEdges(model, std::vector<char>(ShellCount(model), false)), tree,
                          FindCoincidentNodes(model, tree, coincidence * tree.Size()), limit);
}

// One quadrilateral above the line y = 0; the ends of its lower edge, of length 2, are nodes 0 and 1.
MeshBuilder Coarse()
{
    MeshBuilder mesh(Steel);
    const int a = mesh.AddNode({0.0, 0.0, 0.0}), b = mesh.AddNode({2.0, 0.0, 0.0});
    mesh.AddQuad({a, b, mesh.AddNode({2.1, 1.0, 0.2}), mesh.AddNode({-0.2, 1.1, 0.0})}, 0.01);
    return mesh;
}

// And two below it; the node between them is moved off the line by y, and stands at x.
ModelStore Refined(double y, double x = 0.9)
{
    MeshBuilder mesh = Coarse();
    const int m = mesh.AddNode({x, y, 0.0});
    const int c = mesh.AddNode({0.0, -1.0, 0.0}), d = mesh.AddNode({1.0, -1.2, 0.0}),
              e = mesh.AddNode({2.0, -1.0, 0.0});
    mesh.AddQuad({c, d, m, 0}, 0.01);
    mesh.AddQuad({d, e, 1, m}, 0.01);
    return mesh.Model();
}

TEST(TJunctions, MiddleNodeOfARefinedNeighbourIsOne)
{
    const std::vector<TJunction> found = JunctionsOf(Refined(0.0));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].node, 4);
    EXPECT_EQ(found[0].low, 0);
    EXPECT_EQ(found[0].high, 1);
    EXPECT_EQ(found[0].shell, 0);
    EXPECT_EQ(found[0].length, 2.0);
    EXPECT_EQ(found[0].distance, 0.0);
}

TEST(TJunctions, DistanceIsHeldAgainstTheLengthOfTheEdge)
{
    EXPECT_EQ(JunctionsOf(Refined(-1.9e-4)).size(), 1u);
    EXPECT_TRUE(JunctionsOf(Refined(-2.1e-4)).empty());
    EXPECT_EQ(JunctionsOf(Refined(-0.019), 0.01).size(), 1u);
}

TEST(TJunctions, NodeAtAnEndOfTheEdgeIsNone)
{
    EXPECT_TRUE(JunctionsOf(Refined(0.0, 0.0)).empty());
    EXPECT_TRUE(JunctionsOf(Refined(0.0, 2.0)).empty());
}

TEST(TJunctions, TransitionByTrianglesIsNone)
{
    MeshBuilder mesh(Steel);
    const int a = mesh.AddNode({0.0, 0.0, 0.0}), m = mesh.AddNode({1.0, 0.0, 0.0}), b = mesh.AddNode({2.0, 0.0, 0.0});
    const int c = mesh.AddNode({2.0, 1.0, 0.0}), d = mesh.AddNode({0.0, 1.0, 0.0});
    const int e = mesh.AddNode({0.0, -1.0, 0.0}), f = mesh.AddNode({1.0, -1.0, 0.0}),
              g = mesh.AddNode({2.0, -1.0, 0.0});
    mesh.AddTri({a, m, d}, 0.01);
    mesh.AddTri({m, b, c}, 0.01);
    mesh.AddTri({m, c, d}, 0.01);
    mesh.AddQuad({e, f, m, a}, 0.01);
    mesh.AddQuad({f, g, b, m}, 0.01);
    EXPECT_TRUE(JunctionsOf(mesh.Model()).empty());
}

TEST(TJunctions, SliverOnTheEdgeConnectsTheNode)
{
    ModelStore model = Refined(0.0);
    model.TriConnectivity.push_back({0, 4, 1});
    ++model.NELEM_S_3ND;
    EXPECT_TRUE(JunctionsOf(model).empty());
}

// The edge is one of two plates already; a web of finer mesh stands on it.
TEST(TJunctions, WebOnAnEdgeInsideAPlateIsFound)
{
    MeshBuilder mesh = Coarse();
    mesh.AddQuad({mesh.AddNode({0.0, -1.0, 0.0}), mesh.AddNode({2.0, -1.0, 0.0}), 1, 0}, 0.01);
    const int m = mesh.AddNode({1.1, 0.0, 0.0}), top = mesh.AddNode({1.0, 0.0, 1.0});
    mesh.AddTri({0, m, top}, 0.01);
    mesh.AddTri({m, 1, top}, 0.01);
    const std::vector<TJunction> found = JunctionsOf(mesh.Model());
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].node, m);
}

TEST(TJunctions, BeamNodeOnTheEdgeIsFound)
{
    MeshBuilder mesh = Coarse();
    const int m = mesh.AddNode({0.5, 0.0, 0.0});
    mesh.AddTBeam(0, m, {0.0, 0.0, 1.0}, Section);
    mesh.AddTBeam(m, 1, {0.0, 0.0, 1.0}, Section);
    ASSERT_EQ(JunctionsOf(mesh.Model()).size(), 1u);
}

// Coarse() and a beam that stands on it at the place.
ModelStore BeamOn(const Vector3& foot)
{
    MeshBuilder mesh = Coarse();
    const int m = mesh.AddNode(foot);
    mesh.AddTBeam(m, mesh.AddNode(foot + Vector3{0.0, 0.0, 3.0}), {1.0, 0.0, 0.0}, Section);
    return mesh.Model();
}

TEST(TJunctions, NodeInsideAFaceIsFound)
{
    MeshBuilder mesh(Steel);
    mesh.AddTri({mesh.AddNode({0.0, 0.0, 0.0}), mesh.AddNode({3.0, 0.0, 1.0}), mesh.AddNode({0.0, 2.0, 1.0})}, 0.01);
    const int m = mesh.AddNode({1.0, 0.5, 1.0 / 3.0 + 0.25});
    mesh.AddTBeam(m, mesh.AddNode({1.0, 0.5, 3.0}), {1.0, 0.0, 0.0}, Section);
    const std::vector<TJunction> found = JunctionsOf(mesh.Model());
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].node, m);
    EXPECT_TRUE(found[0].IsInFace());
    EXPECT_EQ(found[0].shell, 0);
    EXPECT_DOUBLE_EQ(found[0].length, std::sqrt(13.0)); // of the longest side
    EXPECT_NEAR(found[0].distance, 0.0, 1e-15);
}

// Off the face by more than a ten-thousandth of the longest side; beside it; at a corner.
TEST(TJunctions, NodeBesideAFaceIsNone)
{
    MeshBuilder flat(Steel);
    const int a = flat.AddNode({0.0, 0.0, 0.0}), b = flat.AddNode({2.0, 0.0, 0.0}), c = flat.AddNode({2.0, 1.0, 0.0}),
              d = flat.AddNode({0.0, 1.0, 0.0});
    flat.AddQuad({a, b, c, d}, 0.01);
    const auto junctions = [&](const Vector3& foot) {
        MeshBuilder mesh = flat;
        const int m = mesh.AddNode(foot);
        mesh.AddTBeam(m, mesh.AddNode(foot + Vector3{0.0, 0.0, 3.0}), {1.0, 0.0, 0.0}, Section);
        return JunctionsOf(mesh.Model()).size();
    };
    EXPECT_EQ(junctions({0.7, 0.4, 1.9e-4}), 1u);
    EXPECT_EQ(junctions({0.7, 0.4, -1.9e-4}), 1u);
    EXPECT_EQ(junctions({0.7, 0.4, 2.1e-4}), 0u);
    EXPECT_EQ(junctions({2.1, 0.4, 0.0}), 0u);
    EXPECT_EQ(junctions({2.0, 1.0, 0.0}), 0u);
    EXPECT_EQ(junctions({1.9, 0.9, 0.0}), 1u);
}

TEST(TJunctions, NodeOfAShellAtAnEdgeOfTheFaceIsNone)
{
    ModelStore model = BeamOn({0.9, 0.001, 0.0}); // inside, if by little
    ASSERT_EQ(JunctionsOf(model, 1e-2).size(), 1u);
    model.TriConnectivity.push_back({0, 4, 1}); // a sliver that overlaps
    ++model.NELEM_S_3ND;
    EXPECT_TRUE(JunctionsOf(model, 1e-2).empty());
}

TEST(TJunctions, NodeOnAnEdgeIsToldOfTheEdgeThoughItIsInsideAnotherFace)
{
    ModelStore model = BeamOn({1.0, 0.0, 0.0});
    for (const Vector3& corner : {Vector3{-9.0, -9.0, 0.0}, {9.0, -9.0, 0.0}, {0.0, 9.0, 0.0}}) {
        model.NodeCoordinates.push_back(corner);
        ++model.NPOIN;
    }
    model.TriConnectivity.push_back({6, 7, 8});
    ++model.NELEM_S_3ND;
    const std::vector<TJunction> found = JunctionsOf(model);
    const auto foot = std::find_if(found.begin(), found.end(), [](const TJunction& one) { return one.node == 4; });
    ASSERT_NE(foot, found.end());
    EXPECT_FALSE(foot->IsInFace());
    EXPECT_EQ(foot->low, 0);
}

TEST(TJunctions, ShellWithoutAreaOrPlaceHasNoFace)
{
    ModelStore model = BeamOn({1.0, 0.5, 0.05});
    ASSERT_EQ(JunctionsOf(model, 0.1).size(), 1u);
    for (const Vector3& corner : {Vector3{1.0, 0.0, 0.0}, {std::nan(""), 0.0, 0.0}, {INFINITY, 0.0, 0.0}}) {
        model.NodeCoordinates[2] = model.NodeCoordinates[3] = corner;
        const std::vector<TJunction> found = JunctionsOf(model, 0.1);
        EXPECT_TRUE(std::none_of(found.begin(), found.end(), [](const TJunction& one) { return one.IsInFace(); }));
    }
}

// As many triangles on one another as nodes inside them: each looks at 200 of these at most.
TEST(TJunctions, FacesOnOneAnotherLookAtSomeNodesOnly)
{
    MeshBuilder mesh(Steel);
    constexpr int count = 2000;
    for (int i = 0; i < count; ++i) {
        mesh.AddTri({mesh.AddNode({0.0, 0.0, 0.0}), mesh.AddNode({3.0, 0.0, 0.0}), mesh.AddNode({0.0, 3.0, 0.0})},
                    0.01);
        const int m = mesh.AddNode({0.5 + 1e-4 * i, 1.0, 0.0});
        mesh.AddTBeam(m, mesh.AddNode({0.5, 1.0, 2.0}), {1.0, 0.0, 0.0}, Section);
    }
    const std::vector<TJunction> found = JunctionsOf(mesh.Model());
    EXPECT_EQ(found.size(), 200u);
    for (const TJunction& junction : found) { EXPECT_EQ(junction.shell, 0); }
}

TEST(TJunctions, NodeWithoutElementIsNone)
{
    MeshBuilder mesh = Coarse();
    mesh.AddNode({1.0, 0.0, 0.0});
    EXPECT_TRUE(JunctionsOf(mesh.Model()).empty());
}

TEST(TJunctions, EdgeWithoutLengthOrPlaceHasNone)
{
    ModelStore model = Refined(0.0);
    model.NodeCoordinates[1] = model.NodeCoordinates[0];
    EXPECT_TRUE(JunctionsOf(model).empty());
    model.NodeCoordinates[1] = {std::nan(""), 0.0, 0.0};
    EXPECT_TRUE(JunctionsOf(model).empty());
    model.NodeCoordinates[1] = {INFINITY, 0.0, 0.0};
    EXPECT_TRUE(JunctionsOf(model).empty());
}

// A ten-thousandth of the long edge is a hundred elements of the fine mesh beside it: only those on the edge count.
TEST(TJunctions, LongEdgeBesideAFineMeshTakesTheNodesOnItAlone)
{
    MeshBuilder mesh(Steel);
    const int a = mesh.AddNode({0.0, 0.0, 0.0}), b = mesh.AddNode({1e6, 0.0, 0.0});
    mesh.AddTri({a, b, mesh.AddNode({0.0, -1e5, 0.0})}, 0.01);
    AddGrid(mesh, 60, 60, 0.01, test::Cell::Quad, [](int i, int j) { return Vector3{5e5 + i, double(j), 0.0}; });
    EXPECT_EQ(JunctionsOf(mesh.Model()).size(), 61u);
}

// Many times the same edge with different nodes costs one search, and its middle nodes are all found.
TEST(TJunctions, EdgesAtOnePlaceAreSearchedForOnce)
{
    MeshBuilder mesh(Steel);
    constexpr int copies = 3000;
    for (int i = 0; i < copies; ++i) {
        const int a = mesh.AddNode({0.0, 0.0, 0.0}), b = mesh.AddNode({1.0, 0.0, 0.0}),
                  m = mesh.AddNode({0.4, 0.0, 0.0});
        mesh.AddTri({a, b, mesh.AddNode({0.5, 1.0, 0.0})}, 0.01);
        mesh.AddTri({a, m, mesh.AddNode({0.3, -1.0, 0.0})}, 0.01);
    }
    const std::vector<TJunction> found = JunctionsOf(mesh.Model());
    ASSERT_EQ(found.size(), std::size_t(copies));
    for (const TJunction& junction : found) { EXPECT_EQ(junction.shell, 0); }
}

TEST(TJunctions, EdgeOfAThousandShellsIsSearchedForOnce)
{
    MeshBuilder mesh(Steel);
    const int a = mesh.AddNode({0.0, 0.0, 0.0}), b = mesh.AddNode({1.0, 0.0, 0.0}), m = mesh.AddNode({0.5, 0.0, 0.0});
    for (int i = 0; i < 1000; ++i) { mesh.AddTri({a, b, mesh.AddNode({0.5, std::cos(i), std::sin(i)})}, 0.01); }
    EXPECT_TRUE(JunctionsOf(mesh.Model()).empty());
    mesh.AddTBeam(m, mesh.AddNode({0.5, 3.0, 0.0}), {0.0, 0.0, 1.0}, Section);
    EXPECT_EQ(JunctionsOf(mesh.Model()).size(), 1u);
}

// Against every node, edge and face, on long and short triangles laid at random through nodes of a lattice.
TEST(TJunctions, AreThoseOfAllNodesEdgesAndFaces)
{
    std::mt19937 random(3);
    MeshBuilder mesh(Steel);
    std::vector<Vector3> places;
    for (int i = 0; i < 7 * 7 * 3; ++i) {
        places.push_back({0.3 * (i % 7), 0.3 * (i / 7 % 7), 0.3 * (i / 49)});
        mesh.AddNode(places.back());
    }
    const int count = static_cast<int>(places.size());
    for (int i = 0; i < 150; ++i) {
        const int a = int(random() % count), b = int(random() % count), c = int(random() % count);
        if (Length(Cross(places[b] - places[a], places[c] - places[a])) > 1e-3) {
            mesh.AddTri({a, b, c}, 0.01);
        }
    }
    const ModelStore& model = mesh.Model();
    enum { None, OnEdge, InFace };
    std::vector<int> expected(count, None);
    std::vector<char> isUsed(count, false);
    for (const auto& tri : model.TriConnectivity) {
        for (const int node : tri) { isUsed[node] = true; }
    }
    for (const auto& tri : model.TriConnectivity) {
        for (int side = 0; side < 3; ++side) {
            const Vector3 p = places[tri[side]], d = places[tri[(side + 1) % 3]] - p;
            for (int n = 0; n < count; ++n) {
                const double along = Dot(places[n] - p, d) / Dot(d, d);
                if (isUsed[n] && along > 1e-3 && along < 1.0 - 1e-3 && Length(places[n] - p - along * d) < 1e-9) {
                    expected[n] = OnEdge;
                }
            }
        }
    }
    const auto sharesAnEdge = [&](const auto& tri, int n) {
        return std::any_of(model.TriConnectivity.begin(), model.TriConnectivity.end(), [&](const auto& other) {
            const auto isShared = [&](int node) { return std::find(tri.begin(), tri.end(), node) != tri.end(); };
            return std::find(other.begin(), other.end(), n) != other.end() &&
                   std::count_if(other.begin(), other.end(), isShared) == 2;
        });
    };
    for (const auto& tri : model.TriConnectivity) {
        const Vector3 normal = Cross(places[tri[1]] - places[tri[0]], places[tri[2]] - places[tri[0]]);
        for (int n = 0; n < count; ++n) {
            bool isInside =
                isUsed[n] && expected[n] == None && std::fabs(Dot(normal, places[n] - places[tri[0]])) < 1e-9;
            for (int side = 0; side < 3; ++side) {
                const Vector3 p = places[tri[side]], q = places[tri[(side + 1) % 3]];
                isInside = isInside && Dot(normal, Cross(q - p, places[n] - p)) > 1e-6;
            }
            if (isInside && !sharesAnEdge(tri, n)) {
                expected[n] = InFace;
            }
        }
    }
    std::vector<int> found(count, None);
    for (const TJunction& junction : JunctionsOf(model)) {
        found[junction.node] = junction.IsInFace() ? InFace : OnEdge;
    }
    EXPECT_EQ(found, expected);
    EXPECT_GT(std::count(expected.begin(), expected.end(), OnEdge), 20);
    EXPECT_GT(std::count(expected.begin(), expected.end(), InFace), 3);
}

} // namespace
} // namespace tarnvexo

#include "refine/Refinement.h"

#include "elements/ModelSetUp.h"
#include "elements/ShellPressureLoad.h"
#include "elements/ShellTransform.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <stdexcept>
#include <utility>

namespace tarnvexo {

namespace {

// The edges of a model, each once, sorted by lower and higher node. An edge from a node to itself is none.
class EdgeTable {
public:
    explicit EdgeTable(const ModelStore& model)
    {
        edges.reserve(4 * model.QuadConnectivity.size() + 3 * model.TriConnectivity.size() +
                      model.BeamConnectivity.size());
        for (const auto& nodes : model.QuadConnectivity) { AddRing(nodes); }
        for (const auto& nodes : model.TriConnectivity) { AddRing(nodes); }
        for (const auto& [a, b] : model.BeamConnectivity) { Add(a, b); }
        std::sort(edges.begin(), edges.end());
        edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    }

    using Edge = std::pair<int, int>; // lower node, higher node
    const std::vector<Edge>& Edges() const { return edges; }

    int IndexOf(int a, int b) const
    {
        const auto place = std::lower_bound(edges.begin(), edges.end(), Edge(std::minmax(a, b)));
        return static_cast<int>(place - edges.begin());
    }

private:
    template <std::size_t Nodes> void AddRing(const std::array<int, Nodes>& nodes)
    {
        for (std::size_t i = 0; i < Nodes; ++i) { Add(nodes[i], nodes[(i + 1) % Nodes]); }
    }
    void Add(int a, int b)
    {
        if (a != b) {
            edges.emplace_back(std::minmax(a, b));
        }
    }

    std::vector<Edge> edges;
};

// Throws when there would be more records than the model file's numbers can count.
void CheckCount(double count, const char* records, int k)
{
    constexpr int most = std::numeric_limits<int>::max();
    if (count > most) {
        char text[400];
        std::snprintf(text, sizeof text,
                      "error: refined by %d, the model would have %.0f %s\n"
                      "  expected: %d or fewer, since counts and numbers of the model file have 32 bits\n"
                      "  to do:    refine by a smaller number",
                      k, count, records, most);
        throw std::length_error(text);
    }
}

// Counts in floating point: exact as far as they are allowed, and free of overflow beyond.
void CheckCounts(const ModelStore& coarse, std::size_t edgeCount, int k)
{
    const double parts = double(k) * k;
    CheckCount(coarse.NPOIN + double(edgeCount) * (k - 1.0) + coarse.NELEM_S_4ND * (k - 1.0) * (k - 1.0) +
                   coarse.NELEM_S_3ND * (k - 1.0) * (k - 2.0) / 2,
               "nodes", k);
    CheckCount(coarse.NELEM_S_4ND * parts, "four-node shells", k);
    CheckCount(coarse.NELEM_S_3ND * parts, "three-node shells", k);
    CheckCount(double(coarse.NELEM_B) * k, "beams", k);
    CheckCount(coarse.NDL_S_4ND * parts, "four-node shell loads", k);
    CheckCount(coarse.NDL_S_3ND * parts, "three-node shell loads", k);
    CheckCount(double(coarse.NDL_B) * k, "beam loads", k);
}

// Point of the line from a (t = 0) to b (t = 1); coordinates in which a and b agree are kept to the last bit.
Vector3 Between(const Vector3& a, const Vector3& b, double t)
{
    return {std::lerp(a[0], b[0], t), std::lerp(a[1], b[1], t), std::lerp(a[2], b[2], t)};
}

class Refinement {
public:
    Refinement(const ModelStore& coarseModel, int refineBy, ModelStore& fineModel)
        : coarse(coarseModel), fine(fineModel), k(refineBy), edges(coarseModel)
    {
    }

    void Refine();

private:
    void AddEdgeNodes();
    void RefineQuads();
    void RefineTris();
    void RefineBeams();
    void RefineBeamLoads();
    template <int Nodes>
    void RefinePressures(const std::vector<ShellElement<Nodes>>& parents,
                         const std::vector<std::array<int, Nodes>>& parentNodes,
                         const std::vector<std::array<int, Nodes>>& partNodes,
                         const std::vector<ShellDistributedLoad>& loads, std::vector<ShellDistributedLoad>& partLoads);

    // Point i of k from node a (i = 0) to node b (i = k).
    int EdgeNode(int a, int b, int i) const;
    int AddNode(const Vector3& X);
    const Vector3& Point(int node) const { return coarse.NodeCoordinates[std::size_t(node)]; }

    const ModelStore& coarse;
    ModelStore& fine;
    const int k;
    const EdgeTable edges;
};

void Refinement::Refine()
{
    CheckCounts(coarse, edges.Edges().size(), k);
    fine = ModelStore();
    fine.Materials = coarse.Materials;
    fine.Thicknesses = coarse.Thicknesses;
    fine.TBeamSections = coarse.TBeamSections;
    fine.LBeamSections = coarse.LBeamSections;
    fine.CBeamSections = coarse.CBeamSections;
    fine.NodeCoordinates = coarse.NodeCoordinates;
    AddEdgeNodes();
    RefineQuads();
    RefineTris();
    RefineBeams();
    fine.Restraints = coarse.Restraints;
    fine.NodalForces = coarse.NodalForces;
    RefinePressures<QuadNodeCount>(coarse.QuadElements, coarse.QuadConnectivity, fine.QuadConnectivity,
                                   coarse.QuadDistributedLoads, fine.QuadDistributedLoads);
    RefinePressures<TriNodeCount>(coarse.TriElements, coarse.TriConnectivity, fine.TriConnectivity,
                                  coarse.TriDistributedLoads, fine.TriDistributedLoads);
    RefineBeamLoads();
    SetUpModel(fine);
}

int Refinement::AddNode(const Vector3& X)
{
    fine.NodeCoordinates.push_back(X);
    return static_cast<int>(fine.NodeCoordinates.size()) - 1;
}

void Refinement::AddEdgeNodes()
{
    for (const auto& [low, high] : edges.Edges()) {
        for (int i = 1; i < k; ++i) { AddNode(Between(Point(low), Point(high), double(i) / k)); }
    }
}

int Refinement::EdgeNode(int a, int b, int i) const
{
    if (i == 0 || a == b) {
        return a;
    }
    if (i == k) {
        return b;
    }
    return coarse.NPOIN + edges.IndexOf(a, b) * (k - 1) + (a < b ? i : k - i) - 1;
}

void Refinement::RefineQuads()
{
    if (coarse.QuadConnectivity.empty()) {
        return; // k² is bounded by the elements there are
    }
    // Nodes of one parent: i along its edge 1–2, j along its edge 1–4.
    const int side = k + 1;
    std::vector<int> grid(std::size_t(side) * std::size_t(side));
    const auto at = [&](int i, int j) -> int& { return grid[std::size_t(j) * std::size_t(side) + std::size_t(i)]; };
    for (std::size_t e = 0; e < coarse.QuadConnectivity.size(); ++e) {
        const auto& [n1, n2, n3, n4] = coarse.QuadConnectivity[e];
        for (int i = 0; i <= k; ++i) {
            at(i, 0) = EdgeNode(n1, n2, i);
            at(i, k) = EdgeNode(n4, n3, i);
        }
        for (int j = 1; j < k; ++j) {
            at(0, j) = EdgeNode(n1, n4, j);
            at(k, j) = EdgeNode(n2, n3, j);
            for (int i = 1; i < k; ++i) {
                const double xi = double(i) / k, eta = double(j) / k;
                at(i, j) = AddNode(Between(Between(Point(n1), Point(n2), xi), Between(Point(n4), Point(n3), xi), eta));
            }
        }
        for (int j = 0; j < k; ++j) {
            for (int i = 0; i < k; ++i) {
                fine.QuadConnectivity.push_back({at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)});
                fine.QuadProperties.push_back(coarse.QuadProperties[e]);
            }
        }
    }
}

void Refinement::RefineTris()
{
    if (coarse.TriConnectivity.empty()) {
        return; // k² is bounded by the elements there are
    }
    // Nodes of one parent: i along its edge 1–2, j along its edge 1–3, i + j <= k.
    const int side = k + 1;
    std::vector<int> grid(std::size_t(side) * std::size_t(side));
    const auto at = [&](int i, int j) -> int& { return grid[std::size_t(j) * std::size_t(side) + std::size_t(i)]; };
    for (std::size_t e = 0; e < coarse.TriConnectivity.size(); ++e) {
        const auto& [n1, n2, n3] = coarse.TriConnectivity[e];
        for (int i = 0; i <= k; ++i) {
            at(i, 0) = EdgeNode(n1, n2, i);
            at(0, i) = EdgeNode(n1, n3, i);
            at(k - i, i) = EdgeNode(n2, n3, i);
        }
        for (int j = 1; j < k; ++j) {
            const double height = double(j) / k;
            for (int i = 1; i + j < k; ++i) {
                at(i, j) = AddNode(Between(Between(Point(n1), Point(n3), height), Between(Point(n2), Point(n3), height),
                                           double(i) / (k - j)));
            }
        }
        for (int j = 0; j < k; ++j) {
            for (int i = 0; i + j < k; ++i) {
                fine.TriConnectivity.push_back({at(i, j), at(i + 1, j), at(i, j + 1)});
                fine.TriProperties.push_back(coarse.TriProperties[e]);
                if (i + j + 1 < k) { // the same triangle turned by half a turn, beside it
                    fine.TriConnectivity.push_back({at(i + 1, j + 1), at(i, j + 1), at(i + 1, j)});
                    fine.TriProperties.push_back(coarse.TriProperties[e]);
                }
            }
        }
    }
}

void Refinement::RefineBeams()
{
    for (std::size_t e = 0; e < coarse.BeamConnectivity.size(); ++e) {
        const auto& [n1, n2] = coarse.BeamConnectivity[e];
        for (int i = 0; i < k; ++i) {
            fine.BeamConnectivity.push_back({EdgeNode(n1, n2, i), EdgeNode(n1, n2, i + 1)});
            fine.BeamProperties.push_back(coarse.BeamProperties[e]);
            fine.BeamSectionRefs.push_back(coarse.BeamSectionRefs[e]);
        }
    }
}

template <int Nodes>
void Refinement::RefinePressures(const std::vector<ShellElement<Nodes>>& parents,
                                 const std::vector<std::array<int, Nodes>>& parentNodes,
                                 const std::vector<std::array<int, Nodes>>& partNodes,
                                 const std::vector<ShellDistributedLoad>& loads,
                                 std::vector<ShellDistributedLoad>& partLoads)
{
    if (loads.empty()) {
        return;
    }
    const int parts = k * k;
    for (const ShellDistributedLoad& load : loads) {
        const ShellElement<Nodes>& parent = parents[std::size_t(load.element)];
        const std::array<int, Nodes>& corners = parentNodes[std::size_t(load.element)];
        double x[Nodes], y[Nodes];
        LocalShellCoordinates(parent, x, y);
        for (int p = 0; p < parts; ++p) {
            ShellDistributedLoad part;
            part.element = load.element * parts + p;
            for (int i = 0; i < 3; ++i) {
                const int node = partNodes[std::size_t(part.element)][std::size_t(i)];
                const auto given = std::find(corners.begin(), corners.begin() + 3, node) - corners.begin();
                if (given < 3) {
                    part.pressure[i] = load.pressure[given];
                } else {
                    const Vector3& X = fine.NodeCoordinates[std::size_t(node)];
                    part.pressure[i] =
                        PressureInPlane(x, y, load.pressure, Dot(parent.axes[0], X), Dot(parent.axes[1], X));
                }
            }
            partLoads.push_back(part);
        }
    }
}

void Refinement::RefineBeamLoads()
{
    for (const BeamDistributedLoad& load : coarse.BeamDistributedLoads) {
        const auto intensity = [&](int i) { return std::lerp(load.q1, load.q2, double(i) / k); };
        for (int i = 0; i < k; ++i) {
            fine.BeamDistributedLoads.push_back({load.element * k + i, intensity(i), intensity(i + 1)});
        }
    }
}

} // namespace

void RefineModel(const ModelStore& coarse, int k, ModelStore& fine)
{
    assert(k >= 1 && &coarse != &fine);
    Refinement(coarse, k, fine).Refine();
}

} // namespace tarnvexo

#include "solver/CoordinateBisection.h"

#include "core/Parallel.h"
#include "solver/LeafOrdering.h"
#include "solver/VertexCover.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numeric>
#include <utility>

namespace tarnvexo {

namespace {

// Parts of at most this many nodes are ordered by minimum degree. Half or double of it changes operations by 1 %.
constexpr int LeafSize = 120;

// What a plane away from the middle costs: a separator counts 1 + weight·(difference of the halves / nodes)² times its
// nodes. Between 1 and 8 operations hardly change on regular meshes; low values are better on others.
constexpr double ImbalanceWeight = 2.0;

// Planes leave about this share of the nodes on either side at least, as some of the nodes tell where that is; never
// fewer than an eighth, so that the depth stays that of a logarithm.
constexpr double LeastShare = 0.3;
constexpr int FewestPart = 8;

constexpr int None = -1;

// Parts of this many nodes and more are halved one after the other by all threads, smaller ones by one thread to the
// end.
constexpr int NodesPerTask = 2048;

constexpr int MostDirections = 8;
constexpr int BinCount = 256;
using Bins = std::array<std::uint8_t, MostDirections>; // where a node lies along each direction

// Bin by bin, in such a way that the compiler takes all directions at once.
void Lower(Bins& least, const Bins& other)
{
    for (std::size_t d = 0; d < least.size(); ++d) { least[d] = other[d] < least[d] ? other[d] : least[d]; }
}
void Raise(Bins& most, const Bins& other)
{
    for (std::size_t d = 0; d < most.size(); ++d) { most[d] = other[d] > most[d] ? other[d] : most[d]; }
}

// Nodes sequence[begin] ... sequence[end - 1].
struct Part {
    int begin = 0, end = 0;
    int Size() const { return end - begin; }
};

// A plane across a direction: the nodes in the bins below `bin` lie on one side of it.
struct Cut {
    int direction = None;
    int bin = 0;
    int separator = 0; // nodes of the smaller boundary along it
};

// Some nodes of a part, evenly spread in the order they come: enough for directions and middles.
std::vector<int> SomeOf(const int* nodes, int count)
{
    constexpr int Fewest = 16, Most = 128, Step = 8;
    const int samples = std::min(count, std::clamp(count / Step, Fewest, Most));
    std::vector<int> some(static_cast<std::size_t>(samples));
    for (int s = 0; s < samples; ++s) { some[s] = nodes[std::int64_t(s) * count / samples]; }
    return some;
}

constexpr std::array<Vector3, 3> ModelAxes = {Vector3{1, 0, 0}, Vector3{0, 1, 0}, Vector3{0, 0, 1}};

// The direction in which the nodes spread most: the eigenvector of their covariance, by power iteration, which need not
// be carried far.
Vector3 LongestAxis(const std::vector<Vector3>& coordinates, const std::vector<int>& nodes)
{
    Vector3 centre = {};
    for (const int node : nodes) { centre = centre + coordinates[node]; }
    centre = centre / static_cast<double>(nodes.size());
    std::array<Vector3, 3> covariance = {};
    for (const int node : nodes) {
        const Vector3 r = coordinates[node] - centre;
        for (int i = 0; i < 3; ++i) { covariance[i] = covariance[i] + r[i] * r; }
    }
    Vector3 axis = *std::max_element(covariance.begin(), covariance.end(),
                                     [](const Vector3& a, const Vector3& b) { return Dot(a, a) < Dot(b, b); });
    for (int step = 0; step < 8 && Length(axis) > 0.0; ++step) {
        axis = Normalised(axis);
        axis = {Dot(covariance[0], axis), Dot(covariance[1], axis), Dot(covariance[2], axis)};
    }
    return Length(axis) > 0.0 ? Normalised(axis) : ModelAxes[0];
}

// Unit vectors, none twice; what coordinates beyond the range of numbers have left without a length is left out.
struct Directions {
    std::array<Vector3, MostDirections> axes;
    int count = 0;

    void Add(const Vector3& axis)
    {
        constexpr double Parallel = 0.9998; // within a degree
        for (int d = 0; d < count; ++d) {
            if (std::fabs(Dot(axes[d], axis)) > Parallel) {
                return;
            }
        }
        if (std::isfinite(Dot(axis, axis))) {
            axes[count++] = axis;
        }
    }
};

class Dissection {
public:
    Dissection(const NodeGraph& graph, const std::vector<Vector3>& coordinates);

    std::vector<int> Run();

private:
    // What is asked of every neighbour, in twelve bytes.
    struct Place {
        Bins bins;
        int part; // begin of the part that the node is in; None once it is in a separator
    };
    struct Span {
        Bins least, most; // of the node and its neighbours in the part
    };

    std::array<Part, 2> Halve(const Part& whole);
    int PlaceByCoordinates(const Part& whole, bool diagonals);
    Directions DirectionsOf(const std::vector<int>& some, bool diagonals) const;
    std::array<Vector3, 3> MeshAxes(const std::vector<int>& some) const;
    int PlaceByNumber(const Part& whole);
    Cut FindCut(const Part& whole, int directions);
    void OrderToTheEnd(const Part& whole);
    void OrderLeafNodes(const Part& leaf);

    // Neighbours of a node of a part are in the same part or in separators found before, so that the entries of other
    // parts are never read and halves may be worked on at the same time.
    const NodeGraph& graph;
    const std::vector<Vector3>& coordinates;
    std::vector<Place> places;
    std::vector<Span> spans;
    std::vector<int> local; // number of a node in a boundary or a leaf
    std::vector<int> sequence;
};

Dissection::Dissection(const NodeGraph& graph, const std::vector<Vector3>& coordinates)
    : graph(graph), coordinates(coordinates), places(coordinates.size(), Place{}), spans(coordinates.size()),
      local(coordinates.size()), sequence(coordinates.size())
{
    std::iota(sequence.begin(), sequence.end(), 0);
}

std::vector<int> Dissection::Run()
{
    std::vector<Part> large = {{0, graph.Size()}}, small;
    while (!large.empty()) {
        std::vector<std::array<Part, 2>> halves(large.size());
        ParallelFor(large.size(), 1, [&](std::size_t i, std::size_t) {
            if (large[i].Size() >= NodesPerTask) {
                halves[i] = Halve(large[i]);
            }
        });
        std::vector<Part> next;
        for (std::size_t i = 0; i < large.size(); ++i) {
            if (large[i].Size() >= NodesPerTask) {
                next.insert(next.end(), halves[i].begin(), halves[i].end());
            } else {
                small.push_back(large[i]);
            }
        }
        large = std::move(next);
    }
    ParallelFor(small.size(), 1, [&](std::size_t i, std::size_t) { OrderToTheEnd(small[i]); });
    return std::move(sequence);
}

void Dissection::OrderToTheEnd(const Part& whole)
{
    std::vector<Part> open = {whole};
    while (!open.empty()) {
        const Part next = open.back();
        open.pop_back();
        if (next.Size() <= LeafSize) {
            OrderLeafNodes(next);
        } else {
            for (const Part& half : Halve(next)) { open.push_back(half); }
        }
    }
}

// The mesh's axes and the length of the part; beside them the model's axes or the diagonals of the mesh's axes.
Directions Dissection::DirectionsOf(const std::vector<int>& some, bool diagonals) const
{
    const std::array<Vector3, 3> mesh = MeshAxes(some);
    Directions directions;
    if (diagonals) {
        for (const double v : {1.0, -1.0}) {
            for (const double w : {1.0, -1.0}) { directions.Add(Normalised(mesh[0] + v * mesh[1] + w * mesh[2])); }
        }
    } else {
        for (const Vector3& axis : ModelAxes) { directions.Add(axis); }
    }
    for (const Vector3& axis : mesh) { directions.Add(axis); }
    directions.Add(LongestAxis(coordinates, some));
    return directions;
}

// Bins of equal width over the middle of the part along each direction, the first and the last for what lies outside.
int Dissection::PlaceByCoordinates(const Part& whole, bool diagonals)
{
    const int n = whole.Size();
    const int* const nodes = &sequence[whole.begin];
    const std::vector<int> some = SomeOf(nodes, n);
    const Directions directions = DirectionsOf(some, diagonals);
    const int lowest = static_cast<int>(LeastShare * static_cast<double>(some.size()));
    const int highest = static_cast<int>(some.size()) - 1 - lowest;
    std::array<double, MostDirections> low, scale;
    std::vector<double> along(some.size());
    for (int d = 0; d < directions.count; ++d) {
        for (std::size_t s = 0; s < some.size(); ++s) { along[s] = Dot(directions.axes[d], coordinates[some[s]]); }
        std::sort(along.begin(), along.end());
        low[d] = along[lowest];
        scale[d] = (BinCount - 2) / (along[highest] - low[d]);
        if (!std::isfinite(scale[d])) {
            scale[d] = 0.0; // all in one bin
        }
    }
    for (int k = 0; k < n; ++k) {
        const Vector3& x = coordinates[nodes[k]];
        Bins& bins = places[nodes[k]].bins;
        for (int d = 0; d < directions.count; ++d) {
            const double bin = (Dot(directions.axes[d], x) - low[d]) * scale[d] + 1.0;
            bins[d] = bin > 0.0 ? static_cast<std::uint8_t>(std::min(bin, BinCount - 1.0)) : 0;
        }
    }
    return directions.count;
}

// Axes along the edges of the mesh, as far as they have common directions: those of the largest Σ w·(e·axis)⁴ over
// some edges e (quartimax), by turning two axes at a time. Short edges count most, diagonals of quadrilaterals least.
std::array<Vector3, 3> Dissection::MeshAxes(const std::vector<int>& some) const
{
    std::vector<Vector3> edges; // along the axes
    for (const int node : some) {
        for (int e = graph.first[node]; e < graph.first[node + 1]; ++e) {
            const Vector3 edge = coordinates[graph.neighbours[e]] - coordinates[node];
            const double length = Length(edge);
            if (length > 0.0) {
                edges.push_back(edge / (length * std::sqrt(length)));
            }
        }
    }
    std::array<Vector3, 3> axes = ModelAxes;
    for (int sweep = 0; sweep < 2; ++sweep) {
        for (int p = 0; p < 2; ++p) {
            for (int q = p + 1; q < 3; ++q) {
                double C = 0.0, S = 0.0; // Σ r⁴·cos 4θ, Σ r⁴·sin 4θ, r and θ: place in the plane of the two axes
                for (const Vector3& e : edges) {
                    const double c = e[p] * e[p] - e[q] * e[q], s = 2.0 * e[p] * e[q];
                    C += c * c - s * s;
                    S += 2.0 * c * s;
                }
                const double phi = std::atan2(S, C) / 4.0, c = std::cos(phi), s = std::sin(phi);
                for (Vector3& e : edges) {
                    const double old = e[p];
                    e[p] = c * old + s * e[q];
                    e[q] = c * e[q] - s * old;
                }
                const Vector3 old = axes[p];
                axes[p] = c * old + s * axes[q];
                axes[q] = c * axes[q] - s * old;
            }
        }
    }
    return axes;
}

// For nodes that all lie at one point.
int Dissection::PlaceByNumber(const Part& whole)
{
    for (int k = whole.begin; k < whole.end; ++k) {
        const std::int64_t rank = k - whole.begin;
        places[sequence[k]].bins = {static_cast<std::uint8_t>(rank * BinCount / whole.Size())};
    }
    return 1;
}

// For all planes of all directions in one pass over the edges: a node is left of plane `bin` when its own bin is below;
// it is on the left boundary when the highest bin of its neighbours is not.
Cut Dissection::FindCut(const Part& whole, int directions)
{
    const int n = whole.Size();
    const int* const nodes = &sequence[whole.begin];
    using Histogram = std::array<std::array<int, BinCount>, MostDirections>;
    Histogram here, leastIn, mostIn; // nodes by their own, the least and the highest bin
    for (int d = 0; d < directions; ++d) {
        here[d].fill(0);
        leastIn[d].fill(0);
        mostIn[d].fill(0);
    }
    for (int k = 0; k < n; ++k) {
        const int node = nodes[k];
        Span span = {places[node].bins, places[node].bins};
        for (int e = graph.first[node]; e < graph.first[node + 1]; ++e) {
            const Place other = places[graph.neighbours[e]];
            if (other.part == whole.begin) {
                Lower(span.least, other.bins);
                Raise(span.most, other.bins);
            }
        }
        spans[node] = span;
        for (int d = 0; d < directions; ++d) {
            ++here[d][places[node].bins[d]];
            ++leastIn[d][span.least[d]];
            ++mostIn[d][span.most[d]];
        }
    }
    Cut best;
    double bestScore = std::numeric_limits<double>::max();
    for (int d = 0; d < directions; ++d) {
        int left = 0, leastLeft = 0, mostLeft = 0; // nodes whose own, least, highest bin is below the plane
        for (int bin = 1; bin < BinCount; ++bin) {
            left += here[d][bin - 1];
            leastLeft += leastIn[d][bin - 1];
            mostLeft += mostIn[d][bin - 1];
            if (std::min(left, n - left) < n / FewestPart) {
                continue;
            }
            const int leftBoundary = left - mostLeft, rightBoundary = leastLeft - left;
            const int separator = std::min(leftBoundary, rightBoundary);
            const int rest = left - (leftBoundary <= rightBoundary ? separator : 0);
            const double imbalance = std::fabs(2.0 * rest + separator - n) / n;
            const double score = (separator + 0.5) * (1.0 + ImbalanceWeight * imbalance * imbalance);
            if (score < bestScore) {
                best = {d, bin, separator};
                bestScore = score;
            }
        }
    }
    return best;
}

std::array<Part, 2> Dissection::Halve(const Part& whole)
{
    constexpr double Solid =
        2.0; // nodes of a separator by the root of those of the part: plates and girders have fewer
    Cut cut = FindCut(whole, PlaceByCoordinates(whole, false));
    if (cut.separator > Solid * std::sqrt(whole.Size())) {
        cut = FindCut(whole, PlaceByCoordinates(whole, true));
    }
    if (cut.direction == None) {
        cut = FindCut(whole, PlaceByNumber(whole));
    }

    // Edges across the plane, from the larger half to the smaller one.
    const std::vector<int> nodes(sequence.begin() + whole.begin, sequence.begin() + whole.end);
    const auto isLeft = [&](const Bins& bins) { return bins[cut.direction] < cut.bin; };
    std::vector<int> leftBoundary, rightBoundary;
    int left = 0;
    for (const int node : nodes) {
        if (isLeft(places[node].bins)) {
            ++left;
            if (!isLeft(spans[node].most)) {
                leftBoundary.push_back(node);
            }
        } else if (isLeft(spans[node].least)) {
            rightBoundary.push_back(node);
        }
    }
    const bool isLeftLarger = 2 * left > whole.Size();
    const std::vector<int>& larger = isLeftLarger ? leftBoundary : rightBoundary;
    const std::vector<int>& smaller = isLeftLarger ? rightBoundary : leftBoundary;
    for (std::size_t b = 0; b < smaller.size(); ++b) { local[smaller[b]] = static_cast<int>(b); }
    BipartiteGraph across;
    across.sizeB = static_cast<int>(smaller.size());
    across.first.push_back(0);
    for (const int node : larger) {
        for (int e = graph.first[node]; e < graph.first[node + 1]; ++e) {
            const int other = graph.neighbours[e];
            if (places[other].part == whole.begin && isLeft(places[other].bins) != isLeftLarger) {
                across.neighbours.push_back(local[other]);
            }
        }
        across.first.push_back(static_cast<int>(across.neighbours.size()));
    }

    // Out of the larger half, as far as there is a choice.
    const VertexCover cover = MaximumMatching(across).Cover();
    std::vector<int> separator;
    for (std::size_t a = 0; a < larger.size(); ++a) {
        if (cover.inA[a] != 0) {
            separator.push_back(larger[a]);
        }
    }
    for (std::size_t b = 0; b < smaller.size(); ++b) {
        if (cover.inB[b] != 0) {
            separator.push_back(smaller[b]);
        }
    }
    for (const int node : separator) { places[node].part = None; }

    // Left half, right half, separator.
    const auto inPart = [&](int node) { return places[node].part == whole.begin; };
    auto to = sequence.begin() + whole.begin;
    to = std::copy_if(nodes.begin(), nodes.end(), to,
                      [&](int node) { return inPart(node) && isLeft(places[node].bins); });
    const int middle = static_cast<int>(to - sequence.begin());
    to = std::copy_if(nodes.begin(), nodes.end(), to,
                      [&](int node) { return inPart(node) && !isLeft(places[node].bins); });
    const int end = static_cast<int>(to - sequence.begin());
    std::copy(separator.begin(), separator.end(), to);
    for (int k = middle; k < end; ++k) { places[sequence[k]].part = middle; }
    return {Part{whole.begin, middle}, Part{middle, end}};
}

void Dissection::OrderLeafNodes(const Part& leaf)
{
    const std::vector<int> nodes(sequence.begin() + leaf.begin, sequence.begin() + leaf.end);
    LeafGraph leafGraph;
    leafGraph.nodes = leaf.Size();
    std::vector<int> halo;
    for (std::size_t k = 0; k < nodes.size(); ++k) {
        local[nodes[k]] = static_cast<int>(k);
        for (int e = graph.first[nodes[k]]; e < graph.first[nodes[k] + 1]; ++e) {
            if (places[graph.neighbours[e]].part != leaf.begin) {
                halo.push_back(graph.neighbours[e]);
            }
        }
    }
    std::sort(halo.begin(), halo.end());
    halo.erase(std::unique(halo.begin(), halo.end()), halo.end());
    leafGraph.halo = static_cast<int>(halo.size());
    leafGraph.first.push_back(0);
    const auto haloNumber = [&](int node) {
        return leafGraph.nodes + static_cast<int>(std::lower_bound(halo.begin(), halo.end(), node) - halo.begin());
    };
    for (const int node : nodes) {
        for (int e = graph.first[node]; e < graph.first[node + 1]; ++e) {
            const int other = graph.neighbours[e];
            const bool inLeaf = places[other].part == leaf.begin;
            leafGraph.neighbours.push_back(inLeaf ? local[other] : haloNumber(other));
        }
        leafGraph.first.push_back(static_cast<int>(leafGraph.neighbours.size()));
    }
    const std::vector<int> order = OrderLeaf(leafGraph);
    for (std::size_t k = 0; k < order.size(); ++k) { sequence[leaf.begin + k] = nodes[order[k]]; }
}

} // namespace

EliminationOrder OrderByBisection(const NodeGraph& graph, const std::vector<Vector3>& coordinates)
{
    return OrderFromSequence(Dissection(graph, coordinates).Run());
}

} // namespace tarnvexo

#include "app/ResultExtremes.h"

#include "core/Parallel.h"
#include "elements/ShellNodeStress.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

namespace tarnvexo {

namespace {

constexpr std::size_t ItemsPerRange = 4096;

// Round-off decides which of two mirror images is larger. So values that differ by less than this part count as equal,
// as in the viewer, which has six digits of them.
constexpr double Tie = 1e-6;

// ---- smallest and largest values

template <int Components> struct Limits {
    std::array<double, Components> smallest, largest;

    Limits()
    {
        smallest.fill(std::numeric_limits<double>::infinity());
        largest.fill(-std::numeric_limits<double>::infinity());
    }
    void Take(const double* values, std::size_t, int)
    {
        for (int c = 0; c < Components; ++c) {
            smallest[c] = std::min(smallest[c], values[c]);
            largest[c] = std::max(largest[c], values[c]);
        }
    }
    void Take(const Limits& behind)
    {
        for (int c = 0; c < Components; ++c) {
            smallest[c] = std::min(smallest[c], behind.smallest[c]);
            largest[c] = std::max(largest[c], behind.largest[c]);
        }
    }
};

// ---- where they are

struct Found {
    double value = 0.0;
    std::ptrdiff_t item = -1; // -1: nowhere
    int corner = 0;
};

// The first items and corners, in the order of taking, at which components reach their limits.
template <int Components> struct FirstPlaces {
    std::array<Found, Components> smallest, largest;

    explicit FirstPlaces(const Limits<Components>& limits)
    {
        for (int c = 0; c < Components; ++c) {
            smallest[c].value = limits.smallest[c];
            largest[c].value = limits.largest[c];
        }
    }
    void Take(const double* values, std::size_t item, int corner)
    {
        for (int c = 0; c < Components; ++c) {
            if (smallest[c].item < 0 && values[c] <= smallest[c].value + Slack(smallest[c])) {
                smallest[c] = {smallest[c].value, static_cast<std::ptrdiff_t>(item), corner};
            }
            if (largest[c].item < 0 && values[c] >= largest[c].value - Slack(largest[c])) {
                largest[c] = {largest[c].value, static_cast<std::ptrdiff_t>(item), corner};
            }
        }
    }
    void Take(const FirstPlaces& behind)
    {
        for (int c = 0; c < Components; ++c) {
            if (smallest[c].item < 0) {
                smallest[c] = behind.smallest[c];
            }
            if (largest[c].item < 0) {
                largest[c] = behind.largest[c];
            }
        }
    }

private:
    static double Slack(const Found& limit) { return std::isfinite(limit.value) ? Tie * std::fabs(limit.value) : 0.0; }
};

// What a copy of `empty` holds after take(i, copy) for every item i; in parallel, with the result of one thread.
template <class Collector, class Take> Collector Collected(std::size_t count, const Collector& empty, Take take)
{
    std::vector<Collector> ranges((count + ItemsPerRange - 1) / ItemsPerRange, empty);
    ParallelFor(count, ItemsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) { take(i, ranges[begin / ItemsPerRange]); }
    });
    Collector all = empty;
    for (const Collector& range : ranges) { all.Take(range); }
    return all;
}

template <int Components, class Take> FirstPlaces<Components> ExtremesOf(std::size_t count, Take take)
{
    const Limits<Components> limits = Collected(count, Limits<Components>(), take);
    return Collected(count, FirstPlaces<Components>(limits), take);
}

// named(found): the extreme value with its node, element and place.
template <int Components, class Named>
std::vector<ComponentExtremes> NamedExtremes(const FirstPlaces<Components>& found,
                                             const char* const (&names)[Components], Named named)
{
    std::vector<ComponentExtremes> extremes;
    for (int c = 0; c < Components && found.smallest[c].item >= 0; ++c) {
        extremes.push_back({names[c], named(found.smallest[c]), named(found.largest[c])});
    }
    return extremes;
}

constexpr const char* StressNames[StressCount] = {"SX", "SY", "SZ", "TXY", "TXZ", "TYZ"};
constexpr const char* DirectionNames[DofsPerNode] = {"dx", "dy", "dz", "rx", "ry", "rz"};

// ---- nodes

ExtremeValue NamedNode(const ModelStore& model, const Found& found)
{
    const std::size_t node = static_cast<std::size_t>(found.item);
    return {found.value, static_cast<int>(node), -1, "", model.NodeCoordinates[node]};
}

// firstDof: DX or RX.
ExtremeValue LargestNodeVector(const ModelStore& model, Dof firstDof)
{
    const Found largest = ExtremesOf<1>(model.NodeCoordinates.size(), [&](std::size_t n, auto& found) {
                              const double* d = &model.GlobalDisplacement[DofsPerNode * n + firstDof];
                              const double length = Length({d[0], d[1], d[2]});
                              found.Take(&length, n, 0);
                          }).largest[0];
    return largest.item < 0 ? ExtremeValue() : NamedNode(model, largest);
}

// ---- shells: quadrilaterals, then triangles

// takeFaces(positive, negative, found, item, corner) for every corner.
template <int Nodes, class TakeFaces>
auto TakeCorners(const std::vector<ShellElement<Nodes>>& shells, TakeFaces takeFaces)
{
    return [&shells, takeFaces](std::size_t e, auto& found) {
        for (int i = 0; i < Nodes; ++i) {
            takeFaces(shells[e].averagedPositiveFace[i], shells[e].averagedNegativeFace[i], found, e, i);
        }
    };
}

template <int Components> struct ShellPlaces {
    FirstPlaces<Components> quads, tris;
};

template <int Components, class TakeFaces>
ShellPlaces<Components> ExtremesOfShells(const ModelStore& model, TakeFaces takeFaces)
{
    const auto takeQuad = TakeCorners(model.QuadElements, takeFaces);
    const auto takeTri = TakeCorners(model.TriElements, takeFaces);
    Limits<Components> limits = Collected(model.QuadElements.size(), Limits<Components>(), takeQuad);
    limits.Take(Collected(model.TriElements.size(), Limits<Components>(), takeTri));
    const FirstPlaces<Components> nowhere(limits);
    return {Collected(model.QuadElements.size(), nowhere, takeQuad),
            Collected(model.TriElements.size(), nowhere, takeTri)};
}

template <int Nodes>
ExtremeValue NamedCorner(const ModelStore& model, const std::vector<std::array<int, Nodes>>& connectivity,
                         const char* kind, const Found& found)
{
    const std::size_t element = static_cast<std::size_t>(found.item);
    const int node = connectivity[element][static_cast<std::size_t>(found.corner)];
    return {found.value, node, static_cast<int>(element), kind, model.NodeCoordinates[static_cast<std::size_t>(node)]};
}

ExtremeValue NamedShell(const ModelStore& model, const Found& quad, const Found& tri)
{
    return quad.item >= 0  ? NamedCorner<QuadNodeCount>(model, model.QuadConnectivity, "quad", quad)
           : tri.item >= 0 ? NamedCorner<TriNodeCount>(model, model.TriConnectivity, "tri", tri)
                           : ExtremeValue();
}

// ---- walls of beams

ExtremeValue NamedWall(const ModelStore& model, const Found& found)
{
    const std::size_t beam = static_cast<std::size_t>(found.item);
    return {found.value, -1, static_cast<int>(beam), "beam",
            model.BeamStressRecords[beam].nodes[static_cast<std::size_t>(found.corner)]};
}

// takeFaces as above, for every node of a wall: the beam's ends have no walls of their own.
template <int Components, class TakeFaces>
FirstPlaces<Components> ExtremesOfWalls(const ModelStore& model, TakeFaces takeFaces)
{
    return ExtremesOf<Components>(model.BeamStressRecords.size(), [&](std::size_t b, auto& found) {
        const std::vector<SectionNodeStress>& averaged = model.BeamStressRecords[b].averaged;
        for (std::size_t n = 1; n + 1 < averaged.size(); ++n) {
            takeFaces(averaged[n].positiveFace, averaged[n].negativeFace, found, b, static_cast<int>(n));
        }
    });
}

// ---- stresses of both faces

constexpr auto TakeComponents = [](const double* positive, const double* negative, auto& found, std::size_t item,
                                   int corner) {
    found.Take(positive, item, corner);
    found.Take(negative, item, corner);
};

constexpr auto TakeEquivalent = [](const double* positive, const double* negative, auto& found, std::size_t item,
                                   int corner) {
    const double stress = std::max(EquivalentStress(positive), EquivalentStress(negative));
    found.Take(&stress, item, corner);
};

} // namespace

std::vector<ComponentExtremes> DisplacementExtremes(const ModelStore& model)
{
    const auto places = ExtremesOf<DofsPerNode>(model.NodeCoordinates.size(), [&](std::size_t n, auto& found) {
        found.Take(&model.GlobalDisplacement[DofsPerNode * n], n, 0);
    });
    return NamedExtremes(places, DirectionNames, [&](const Found& found) { return NamedNode(model, found); });
}

std::vector<ComponentExtremes> ShellStressExtremes(const ModelStore& model)
{
    const auto places = ExtremesOfShells<StressCount>(model, TakeComponents);
    std::vector<ComponentExtremes> extremes;
    for (std::size_t c = 0; c < StressCount && model.QuadElements.size() + model.TriElements.size() > 0; ++c) {
        extremes.push_back({StressNames[c], NamedShell(model, places.quads.smallest[c], places.tris.smallest[c]),
                            NamedShell(model, places.quads.largest[c], places.tris.largest[c])});
    }
    return extremes;
}

std::vector<ComponentExtremes> BeamStressExtremes(const ModelStore& model)
{
    const auto places = ExtremesOfWalls<StressCount>(model, TakeComponents);
    return NamedExtremes(places, StressNames, [&](const Found& found) { return NamedWall(model, found); });
}

ExtremeValue LargestTranslation(const ModelStore& model)
{
    return LargestNodeVector(model, DX);
}

ExtremeValue LargestRotation(const ModelStore& model)
{
    return LargestNodeVector(model, RX);
}

ExtremeValue LargestShellStress(const ModelStore& model)
{
    const auto places = ExtremesOfShells<1>(model, TakeEquivalent);
    return NamedShell(model, places.quads.largest[0], places.tris.largest[0]);
}

ExtremeValue LargestBeamStress(const ModelStore& model)
{
    const Found largest = ExtremesOfWalls<1>(model, TakeEquivalent).largest[0];
    return largest.item < 0 ? ExtremeValue() : NamedWall(model, largest);
}

} // namespace tarnvexo

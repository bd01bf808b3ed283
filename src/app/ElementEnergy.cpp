#include "app/ElementEnergy.h"

#include "core/Parallel.h"
#include "elements/BeamStiffness.h"
#include "elements/ShellStiffnessBatch.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tarnvexo {

namespace {

constexpr std::size_t ElementsPerRange = 256;

// Columns of the displacements of an element: the six motions, then the solution.
constexpr int SolutionColumn = ElementMotionCount;
constexpr int ColumnCount = ElementMotionCount + 1;

// Consecutive elements of one part, added up.
struct RunOfElements {
    int part = 0;
    MotionEnergies motions;
};

struct RangeEnergies {
    std::vector<RunOfElements> runs;
    GroundedElement worst;
    double strainEnergy = 0.0;
};

// True for a share that is not a number, too, unless the other is none either.
bool IsWorse(double share, double other)
{
    return !(share <= other) && !std::isnan(other);
}

template <int Nodes>
void FillColumns(const ModelStore& model, const std::array<int, Nodes>& nodes, const std::vector<double>& displacements,
                 double d[Nodes * DofsPerNode][ColumnCount])
{
    Vector3 middle = {};
    for (int node : nodes) { middle = middle + model.NodeCoordinates[node] / double(Nodes); }
    const double* first = &displacements[std::size_t(DofsPerNode) * nodes[0]];
    for (int i = 0; i < Nodes; ++i) {
        double(*const rows)[ColumnCount] = d + DofsPerNode * i;
        const Vector3 arm = model.NodeCoordinates[nodes[i]] - middle;
        const double* u = &displacements[std::size_t(DofsPerNode) * nodes[i]];
        for (int k = 0; k < 3; ++k) {
            Vector3 axis = {};
            axis[k] = 1.0;
            const Vector3 turned = Cross(axis, arm);
            for (int row = 0; row < 3; ++row) {
                rows[DX + row][k] = axis[row];
                rows[RX + row][k] = 0.0;
                rows[DX + row][3 + k] = turned[row];
                rows[RX + row][3 + k] = axis[row];
            }
            // Relative to the first node: a translation has no energy, but digits would be lost with it.
            rows[DX + k][SolutionColumn] = u[DX + k] - first[DX + k];
            rows[RX + k][SolutionColumn] = u[RX + k];
        }
    }
}

template <int Nodes>
void AddElement(const ModelStore& model, const ConnectedParts& parts, const std::vector<double>& displacements,
                const char* kind, int element, const std::array<int, Nodes>& nodes,
                const double (&K)[Nodes * DofsPerNode][Nodes * DofsPerNode], RangeEnergies& range)
{
    constexpr int order = Nodes * DofsPerNode;
    double d[order][ColumnCount], Kd[order][ColumnCount] = {};
    FillColumns<Nodes>(model, nodes, displacements, d);
    for (int i = 0; i < order; ++i) {
        for (int j = 0; j < order; ++j) {
            for (int c = 0; c < ColumnCount; ++c) { Kd[i][c] += K[i][j] * d[j][c]; }
        }
    }
    double energy[ColumnCount] = {}, scale[ColumnCount] = {};
    for (int i = 0; i < order; ++i) {
        const int first = i - i % 3; // of the block of forces or of moments
        const double trace = K[first][first] + K[first + 1][first + 1] + K[first + 2][first + 2];
        for (int c = 0; c < ColumnCount; ++c) {
            energy[c] += 0.5 * d[i][c] * Kd[i][c];
            scale[c] += 0.5 * trace * d[i][c] * d[i][c];
        }
    }

    range.strainEnergy += energy[SolutionColumn];
    const int part = parts.partOfNode[nodes[0]];
    if (range.runs.empty() || range.runs.back().part != part) {
        range.runs.push_back({part, {}});
    }
    for (int m = 0; m < ElementMotionCount; ++m) {
        MotionEnergy& sum = range.runs.back().motions[m];
        sum.energy += std::fabs(energy[m]);
        sum.scale += std::fabs(scale[m]);
        const double share = MotionEnergy{std::fabs(energy[m]), std::fabs(scale[m])}.Share();
        if (range.worst.element >= 0 && !IsWorse(share, range.worst.share)) {
            continue;
        }
        int node = 0;
        double largest = -1.0;
        for (int i = 0; i < Nodes; ++i) {
            const double force =
                Length({Kd[DofsPerNode * i + DX][m], Kd[DofsPerNode * i + DY][m], Kd[DofsPerNode * i + DZ][m]});
            if (force > largest) {
                largest = force;
                node = i;
            }
        }
        range.worst = {kind, element, nodes[node], m, share};
    }
}

// Ranges of one kind of element; addRange(begin, end, range).
template <class AddRange> std::vector<RangeEnergies> MeasureRanges(std::size_t count, AddRange addRange)
{
    std::vector<RangeEnergies> ranges((count + ElementsPerRange - 1) / ElementsPerRange);
    ParallelFor(count, ElementsPerRange,
                [&](std::size_t begin, std::size_t end) { addRange(begin, end, ranges[begin / ElementsPerRange]); });
    return ranges;
}

template <int Nodes, class Stiffness>
std::vector<RangeEnergies> MeasureShells(const ModelStore& model, const ConnectedParts& parts,
                                         const std::vector<double>& displacements, const char* kind,
                                         const std::vector<ShellElement<Nodes>>& shells,
                                         const std::vector<std::array<int, Nodes>>& connectivity, Stiffness stiffness)
{
    constexpr int order = Nodes * DofsPerNode;
    return MeasureRanges(shells.size(), [&](std::size_t begin, std::size_t end, RangeEnergies& range) {
        double K[ShellBatch][order][order];
        const ShellElement<Nodes>* batch[ShellBatch];
        for (std::size_t e = begin; e < end; e += ShellBatch) {
            const int count = static_cast<int>(std::min<std::size_t>(ShellBatch, end - e));
            for (int i = 0; i < count; ++i) { batch[i] = &shells[e + i]; }
            stiffness(batch, count, K);
            for (int i = 0; i < count; ++i) {
                AddElement<Nodes>(model, parts, displacements, kind, static_cast<int>(e) + i, connectivity[e + i], K[i],
                                  range);
            }
        }
    });
}

void AddRanges(const std::vector<RangeEnergies>& ranges, ElementEnergies& sum)
{
    for (const RangeEnergies& range : ranges) {
        sum.strainEnergy += range.strainEnergy;
        for (const RunOfElements& run : range.runs) {
            for (int m = 0; m < ElementMotionCount; ++m) {
                sum.ofParts[run.part][m].energy += run.motions[m].energy;
                sum.ofParts[run.part][m].scale += run.motions[m].scale;
            }
        }
        if (sum.worst.element < 0 || IsWorse(range.worst.share, sum.worst.share)) {
            sum.worst = range.worst;
        }
    }
}

} // namespace

ElementEnergies MeasureElementEnergies(const ModelStore& model, const ConnectedParts& parts,
                                       const std::vector<double>& displacements)
{
    ElementEnergies sum;
    sum.ofParts.resize(static_cast<std::size_t>(parts.count));
    AddRanges(MeasureShells<QuadNodeCount>(model, parts, displacements, "quad", model.QuadElements,
                                           model.QuadConnectivity, QuadShellStiffnessBatch),
              sum);
    AddRanges(MeasureShells<TriNodeCount>(model, parts, displacements, "tri", model.TriElements, model.TriConnectivity,
                                          TriShellStiffnessBatch),
              sum);
    AddRanges(MeasureRanges(model.BeamElements.size(),
                            [&](std::size_t begin, std::size_t end, RangeEnergies& range) {
                                for (std::size_t e = begin; e < end; ++e) {
                                    double K[BeamDofCount][BeamDofCount];
                                    BeamStiffness(model.BeamElements[e], K);
                                    AddElement<BeamNodeCount>(model, parts, displacements, "beam", static_cast<int>(e),
                                                              model.BeamConnectivity[e], K, range);
                                }
                            }),
              sum);
    return sum;
}

} // namespace tarnvexo

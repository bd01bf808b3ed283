#include "solver/MultifrontalEngine.h"

#include <algorithm>
#include <cmath>

namespace tarnvexo {

namespace {

constexpr int None = -1;

// Block columns of a large front that one thread assembles at a time.
constexpr int AssembledColumns = 16;

} // namespace

// What one factorisation needs beside the factor.
struct MultifrontalEngine::Workspace {
    const BlockMatrix* matrix;
    double* ofItsOwn; // what subtrees leave
    double* stacks;   // of the threads one behind the other, or of all together
};

std::string MultifrontalEngine::Name() const
{
    return "multifrontal LLᵀ";
}

std::string MultifrontalEngine::Kernels() const
{
    return "Highway " + FrontVectorUnit();
}

FactorSize MultifrontalEngine::Analyse(const BlockPattern& pattern)
{
    factor = LargeArray();
    tree = BuildFrontTree(pattern);
    schedule = ScheduleFronts(tree, threads);
    std::vector<std::size_t> updateSizes(tree.fronts.size()), heights(tree.fronts.size());
    panelAt.assign(tree.fronts.size() + 1, 0);
    FactorSize size;
    for (std::size_t f = 0; f < tree.fronts.size(); ++f) {
        const FrontSize front = tree.fronts[f].Size();
        updateSizes[f] = UpdateEntries(front);
        heights[f] = static_cast<std::size_t>(front.height);
        panelAt[f + 1] = panelAt[f] + PanelEntries(front);
        size.operations += OperationsOf(front);
    }
    updatePlaces = PlaceUpdates(tree, schedule, updateSizes);
    vectorPlaces = PlaceUpdates(tree, schedule, heights);
    size.entries = static_cast<std::int64_t>(panelAt.back());
    size.bytes = static_cast<double>(panelAt.back() + updatePlaces.Entries(threads)) * sizeof(double);
    return size;
}

FrontArray MultifrontalEngine::PanelOf(int front) const
{
    return PanelAt(factor.Data() + panelAt[front], tree.fronts[front].Size());
}

FrontArray MultifrontalEngine::UpdateOf(int front, int stack, const Workspace& work) const
{
    double* base = work.ofItsOwn;
    if (updatePlaces.side[front] != UpdatePlaces::OfItsOwn) {
        const bool isOdd = updatePlaces.side[front] == UpdatePlaces::Odd;
        base = stack == None
                   ? work.stacks + (isOdd ? updatePlaces.sharedStack[0] : 0)
                   : work.stacks +
                         static_cast<std::size_t>(stack) * (updatePlaces.ownStack[0] + updatePlaces.ownStack[1]) +
                         (isOdd ? updatePlaces.ownStack[0] : 0);
    }
    return UpdateAt(base + updatePlaces.at[front], tree.fronts[front].Size());
}

// Block columns of a front are cleared, take up the matrix and what is left of the children, in this order.
void MultifrontalEngine::AssembleColumns(int number, IndexRange blockColumns, int stack, const Workspace& work) const
{
    const Front& front = tree.fronts[number];
    const FrontArray L = PanelOf(number), U = UpdateOf(number, stack, work);
    for (int k = blockColumns.begin; k < blockColumns.end; ++k) {
        const FrontArray& to = k < front.columns ? L : U;
        const int firstRow = std::max(DofsPerNode * k / RowAlignment * RowAlignment, to.firstRow);
        for (int v = 0; v < DofsPerNode; ++v) {
            double* const column = to.At(firstRow, DofsPerNode * k + v);
            std::fill(column, column + (to.stride + to.firstRow - firstRow), 0.0);
        }
    }
    const BlockPattern& pattern = work.matrix->pattern;
    for (int k = blockColumns.begin; k < std::min(blockColumns.end, front.columns); ++k) {
        const int column = tree.columnAt[front.firstColumn + k];
        const int* const blockRows = &tree.blockInFront[pattern.first[column]];
        const int blocks = pattern.BlocksOf(column);
        const double* from = work.matrix->Column(column);
        for (int v = 0; v < DofsPerNode; ++v) {
            for (int b = 0; b < blocks; ++b, from += DofsPerNode) {
                std::copy(from, from + DofsPerNode, L.At(DofsPerNode * blockRows[b], DofsPerNode * k + v));
            }
        }
    }
    for (const int childNumber : tree.ChildrenOf(front)) {
        const Front& child = tree.fronts[childNumber];
        const std::span<const int> blockInParent = tree.RowsInParent(child);
        const FrontArray from = UpdateOf(childNumber, stack, work);
        const auto firstFrom = [&](int blockColumn) {
            return static_cast<int>(std::lower_bound(blockInParent.begin(), blockInParent.end(), blockColumn) -
                                    blockInParent.begin());
        };
        const int begin = firstFrom(blockColumns.begin), end = firstFrom(blockColumns.end);
        const int split = std::clamp(firstFrom(front.columns), begin, end);
        AddUpdate(from, blockInParent.data(), child.rows, {begin, split}, L);
        AddUpdate(from, blockInParent.data(), child.rows, {split, end}, U);
    }
}

void MultifrontalEngine::ComputeFront(int number, CrewMember& member, int stack, const Workspace& work)
{
    const Front& front = tree.fronts[number];
    const std::size_t pieces = static_cast<std::size_t>((front.Blocks() + AssembledColumns - 1) / AssembledColumns);
    member.Each(pieces, [&](std::size_t piece) {
        const int begin = AssembledColumns * static_cast<int>(piece);
        AssembleColumns(number, {begin, std::min(begin + AssembledColumns, front.Blocks())}, stack, work);
    });
    const std::size_t equation = static_cast<std::size_t>(DofsPerNode) * front.firstColumn;
    EliminateFront(member, front.Size(), PanelOf(number), UpdateOf(number, stack, work), &signs[equation],
                   &pivots[equation], isPositive[number]);
}

PivotReport MultifrontalEngine::Factorise(const BlockMatrix& matrix)
{
    const std::size_t equations = static_cast<std::size_t>(DofsPerNode) * tree.columnAt.size();
    if (factor.Size() != panelAt.back()) {
        factor = LargeArray(panelAt.back());
    }
    LargeArray workspace(updatePlaces.Entries(threads));
    signs.assign(equations, 1.0);
    pivots.assign(equations, 0.0);
    isPositive.assign(tree.fronts.size(), 1);
    const Workspace work = {&matrix, workspace.Data(), workspace.Data() + updatePlaces.ofItsOwn};
    RunCrew(threads, [&](CrewMember& member) {
        member.Each(schedule.subtrees.size(), [&](std::size_t k) {
            CrewMember alone = CrewMember::Alone();
            const int root = schedule.subtrees[k];
            for (int f = schedule.firstFront[root]; f <= root; ++f) { ComputeFront(f, alone, member.Number(), work); }
        });
        for (const int f : schedule.shared) { ComputeFront(f, member, None, work); }
    });

    PivotReport report;
    report.pivots.resize(equations);
    for (std::size_t k = 0; k < tree.columnAt.size(); ++k) {
        const std::size_t column = static_cast<std::size_t>(tree.columnAt[k]);
        std::copy_n(&pivots[DofsPerNode * k], DofsPerNode, &report.pivots[DofsPerNode * column]);
    }
    for (std::size_t i = 0; i < equations && report.Complete(); ++i) {
        if (!(report.pivots[i] > 0.0) || std::isinf(report.pivots[i])) {
            report.failedAt = static_cast<std::int64_t>(i);
        }
    }
    return report;
}

} // namespace tarnvexo

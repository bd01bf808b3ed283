#include "solver/MultifrontalEngine.h"

#include <algorithm>
#include <cmath>

namespace tarnvexo {

namespace {

// Blocks of a strip of a front's update, and those that one thread assembles at a time.
constexpr int StripBlocks = StripColumns / DofsPerNode;
constexpr int PieceBlocks = StripBlocks / 2;

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
    tree = BuildFrontTree(pattern);
    schedule = ScheduleFronts(tree, threads);
    std::vector<std::size_t> updateSizes(tree.fronts.size()), heights(tree.fronts.size());
    std::vector<std::size_t> panelAt(tree.fronts.size() + 1, 0);
    std::vector<unsigned char> isShared(tree.fronts.size(), 0);
    for (const int f : schedule.shared) { isShared[f] = 1; }
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
    store.Plan(std::move(panelAt), isShared, schedule.members);
    size.entries = static_cast<std::int64_t>(store.Entries());
    const std::size_t workspace = updatePlaces.Entries(schedule.members);
    size.bytes = static_cast<double>(workspace + store.Entries()) * sizeof(double);
    size.bytesWithScratchFile = static_cast<double>(workspace + store.BufferEntries()) * sizeof(double);
    return size;
}

bool MultifrontalEngine::KeepFactorIn(const std::string& directory)
{
    store.KeepIn(directory);
    return true;
}

FrontArray MultifrontalEngine::PanelOf(int front, int stack)
{
    return PanelAt(store.Panel(front, stack), tree.fronts[front].Size());
}

FrontUpdate MultifrontalEngine::UpdateOf(int front, int stack, const Workspace& work) const
{
    double* const base = updatePlaces.side[front] == UpdatePlaces::OfItsOwn ? work.ofItsOwn : work.stacks;
    return {base + updatePlaces.Begin(front, stack), tree.fronts[front].Size()};
}

// Block columns of a front, all in `to`, are cleared, take up the matrix and what is left of the children, in this
// order.
void MultifrontalEngine::AssembleColumns(int number, IndexRange blockColumns, const FrontArray& to, int stack,
                                         const Workspace& work) const
{
    const Front& front = tree.fronts[number];
    for (int k = blockColumns.begin; k < blockColumns.end; ++k) {
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
                std::copy(from, from + DofsPerNode, to.At(DofsPerNode * blockRows[b], DofsPerNode * k + v));
            }
        }
    }
    for (const int childNumber : tree.ChildrenOf(front)) {
        const Front& child = tree.fronts[childNumber];
        const std::span<const int> blockInParent = tree.RowsInParent(child);
        const FrontUpdate from = UpdateOf(childNumber, stack, work);
        const auto firstFrom = [&](int blockColumn) {
            return static_cast<int>(std::lower_bound(blockInParent.begin(), blockInParent.end(), blockColumn) -
                                    blockInParent.begin());
        };
        const int end = firstFrom(blockColumns.end);
        for (int begin = firstFrom(blockColumns.begin), strip = begin / StripBlocks; begin < end; ++strip) {
            const int stripEnd = std::min(end, StripBlocks * (strip + 1));
            AddUpdate(from.Strip(strip), child.Size().width, blockInParent.data(), child.rows, {begin, stripEnd}, to);
            begin = stripEnd;
        }
    }
}

void MultifrontalEngine::ComputeFront(int number, CrewMember& member, int stack, const Workspace& work)
{
    const Front& front = tree.fronts[number];
    const FrontArray L = PanelOf(number, stack);
    const FrontUpdate U = UpdateOf(number, stack, work);
    const IndexRange panel = {0, front.columns}, below = {front.columns, front.Blocks()};
    const std::size_t panelPieces = PiecesOf(panel, PieceBlocks);
    member.Each(panelPieces + PiecesOf(below, PieceBlocks), [&](std::size_t piece) {
        if (piece < panelPieces) {
            AssembleColumns(number, PieceOf(panel, PieceBlocks, piece), L, stack, work);
            return;
        }
        const IndexRange columns = PieceOf(below, PieceBlocks, piece - panelPieces);
        AssembleColumns(number, columns, U.Strip((columns.begin - front.columns) / StripBlocks), stack, work);
    });
    const std::size_t equation = static_cast<std::size_t>(DofsPerNode) * front.firstColumn;
    EliminateFront(member, front.Size(), L, U, &signs[equation], &pivots[equation], isPositive[number]);
    store.Write(member, number, stack);
}

PivotReport MultifrontalEngine::Factorise(const BlockMatrix& matrix)
{
    const std::size_t equations = static_cast<std::size_t>(DofsPerNode) * tree.columnAt.size();
    store.Open();
    LargeArray workspace(updatePlaces.Entries(schedule.members));
    signs.assign(equations, 1.0);
    pivots.assign(equations, 0.0);
    isPositive.assign(tree.fronts.size(), 1);
    const Workspace work = {&matrix, workspace.Data(), workspace.Data() + updatePlaces.ofItsOwn};
    RunCrew(schedule.members, [&](CrewMember& member) {
        member.Each(schedule.subtrees.size(), [&](std::size_t k) {
            CrewMember alone = CrewMember::Alone();
            const int root = schedule.subtrees[k];
            for (int f = schedule.firstFront[root]; f <= root; ++f) { ComputeFront(f, alone, member.Number(), work); }
        });
        for (const int f : schedule.shared) { ComputeFront(f, member, UpdatePlaces::SharedStack, work); }
    });
    store.ThrowFailure();

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

// Solution with the factor of the multifrontal engine: L·y = f from the leaves to the roots, y := S·y, Lᵀ·u = y back to
// the leaves. Every front works on a vector of its height. Downwards, what a front leaves for the rows below its
// columns is added to the parent's vector as its update matrix was to the parent's matrix: no two threads write one
// number, and the order of additions is fixed.
#include "solver/MultifrontalEngine.h"

#include <algorithm>

namespace tarnvexo {

namespace {

// Several right-hand sides go through the factor together: it is read once.
constexpr int VectorsAtOnce = 8;

// Rows that a thread takes at a time: a block of columns of this height stays in the second-level cache while all
// vectors go through it.
constexpr int PieceRows = 512;
constexpr int PieceColumns = 24;

// L11·y = y for a block of columns; y counted as the rows of L.
void SolveBlockDown(const FrontArray& L, IndexRange columns, double* y)
{
    for (int c = columns.begin; c < columns.end; c += DofsPerNode) {
        for (int j = c; j < c + DofsPerNode; ++j) {
            y[j] /= *L.At(j, j);
            for (int i = j + 1; i < c + DofsPerNode; ++i) { y[i] -= *L.At(i, j) * y[j]; }
        }
        SubtractColumns(L, {c, c + DofsPerNode}, y + c, {c + DofsPerNode, columns.end}, y);
    }
}

// L11ᵀ·y = y for a block of columns.
void SolveBlockUp(const FrontArray& L, IndexRange columns, double* y)
{
    for (int c = columns.end - DofsPerNode; c >= columns.begin; c -= DofsPerNode) {
        SubtractColumnProducts(L, {c, c + DofsPerNode}, {c + DofsPerNode, columns.end}, y, y + c);
        for (int j = c + DofsPerNode - 1; j >= c; --j) {
            for (int i = j + 1; i < c + DofsPerNode; ++i) { y[j] -= *L.At(i, j) * y[i]; }
            y[j] /= *L.At(j, j);
        }
    }
}

} // namespace

struct MultifrontalEngine::Vectors {
    double* y; // [count][equations] in the order of the fronts: right-hand sides, then solutions
    std::size_t equations;
    int count;
    double* ofItsOwn; // workspace, as for the update matrices
    double* stacks;

    double* Of(int front, int stack, const UpdatePlaces& places) const
    {
        const std::size_t times = static_cast<std::size_t>(count);
        double* const base = places.side[front] == UpdatePlaces::OfItsOwn ? ofItsOwn : stacks;
        return base + times * places.Begin(front, stack);
    }

    // Of vector r, the equations of a block column in the order of the fronts.
    double* At(std::size_t r, int column) const
    {
        return y + r * equations + static_cast<std::size_t>(DofsPerNode) * static_cast<std::size_t>(column);
    }
};

void MultifrontalEngine::SolveDown(int number, CrewMember& member, int stack, const Vectors& vectors)
{
    const Front& front = tree.fronts[number];
    const FrontSize size = front.Size();
    const FrontArray L = PanelOf(number, stack);
    store.Read(member, number, stack);
    double* const work = vectors.Of(number, stack, vectorPlaces);
    const std::size_t height = static_cast<std::size_t>(size.height), width = static_cast<std::size_t>(size.width);
    member.Each(static_cast<std::size_t>(vectors.count), [&](std::size_t r) {
        double* const y = work + height * r;
        std::copy_n(vectors.At(r, front.firstColumn), width, y);
        std::fill(y + width, y + height, 0.0);
        for (const int childNumber : tree.ChildrenOf(front)) {
            const Front& child = tree.fronts[childNumber];
            const FrontSize childSize = child.Size();
            const double* from = vectors.Of(childNumber, stack, vectorPlaces) +
                                 static_cast<std::size_t>(childSize.height) * r + childSize.width;
            for (const int block : tree.RowsInParent(child)) {
                for (int u = 0; u < DofsPerNode; ++u) { y[DofsPerNode * block + u] += *from++; }
            }
        }
    });
    for (int begin = 0; begin < size.width; begin += BlockColumns) {
        const IndexRange columns = {begin, std::min(begin + BlockColumns, size.width)};
        member.Each(static_cast<std::size_t>(vectors.count),
                    [&](std::size_t r) { SolveBlockDown(L, columns, work + height * r); });
        const IndexRange below = {columns.end, size.height};
        member.Each(PiecesOf(below, PieceRows), [&](std::size_t piece) {
            const IndexRange rows = PieceOf(below, PieceRows, piece);
            for (int r = 0; r < vectors.count; ++r) {
                double* const y = work + height * static_cast<std::size_t>(r);
                SubtractColumns(L, columns, y + begin, rows, y);
            }
        });
    }
    member.Each(static_cast<std::size_t>(vectors.count), [&](std::size_t r) {
        const double* const y = work + height * r;
        const double* const sign = &signs[static_cast<std::size_t>(DofsPerNode) * front.firstColumn];
        double* const to = vectors.At(r, front.firstColumn);
        for (std::size_t i = 0; i < width; ++i) { to[i] = sign[i] * y[i]; }
    });
}

void MultifrontalEngine::SolveUp(int number, CrewMember& member, int stack, const Vectors& vectors)
{
    const Front& front = tree.fronts[number];
    const FrontSize size = front.Size();
    const FrontArray L = PanelOf(number, stack);
    store.Read(member, number, stack);
    double* const work = vectors.Of(number, stack, vectorPlaces);
    const std::size_t height = static_cast<std::size_t>(size.height), width = static_cast<std::size_t>(size.width);
    member.Each(static_cast<std::size_t>(vectors.count), [&](std::size_t r) {
        double* y = work + height * r;
        y = std::copy_n(vectors.At(r, front.firstColumn), width, y);
        for (const int row : tree.RowsOf(front)) { y = std::copy_n(vectors.At(r, row), DofsPerNode, y); }
    });
    const int blocks = (size.width + BlockColumns - 1) / BlockColumns;
    for (int block = blocks - 1; block >= 0; --block) {
        const IndexRange columns = {BlockColumns * block, std::min(BlockColumns * (block + 1), size.width)};
        member.Each(PiecesOf(columns, PieceColumns), [&](std::size_t piece) {
            const IndexRange part = PieceOf(columns, PieceColumns, piece);
            for (int r = 0; r < vectors.count; ++r) {
                double* const y = work + height * static_cast<std::size_t>(r);
                SubtractColumnProducts(L, part, {columns.end, size.height}, y, y + part.begin);
            }
        });
        member.Each(static_cast<std::size_t>(vectors.count),
                    [&](std::size_t r) { SolveBlockUp(L, columns, work + height * r); });
    }
    member.Each(static_cast<std::size_t>(vectors.count),
                [&](std::size_t r) { std::copy_n(work + height * r, width, vectors.At(r, front.firstColumn)); });
}

void MultifrontalEngine::Solve(double* vectors, int count)
{
    const std::size_t equations = signs.size();
    const int most = std::min(count, VectorsAtOnce);
    std::vector<double> y(equations * static_cast<std::size_t>(most));
    std::vector<double> workspace(vectorPlaces.Entries(schedule.members) * static_cast<std::size_t>(most));
    const auto permute = [&](int first, int together, const auto& copy) {
        for (int r = 0; r < together; ++r) {
            double* const outside = vectors + equations * static_cast<std::size_t>(first + r);
            double* const inside = y.data() + equations * static_cast<std::size_t>(r);
            for (std::size_t k = 0; k < tree.columnAt.size(); ++k) {
                copy(outside + static_cast<std::size_t>(DofsPerNode) * tree.columnAt[k], inside + DofsPerNode * k);
            }
        }
    };
    for (int first = 0; first < count; first += most) {
        const int together = std::min(most, count - first);
        permute(first, together,
                [](const double* outside, double* inside) { std::copy_n(outside, DofsPerNode, inside); });
        const Vectors group = {y.data(), equations, together, workspace.data(),
                               workspace.data() + vectorPlaces.ofItsOwn * static_cast<std::size_t>(together)};
        RunCrew(schedule.members, [&](CrewMember& member) {
            CrewMember alone = CrewMember::Alone();
            const auto eachSubtree = [&](const auto& visit) {
                member.Each(schedule.subtrees.size(), [&](std::size_t k) { visit(schedule.subtrees[k]); });
            };
            eachSubtree([&](int root) {
                for (int f = schedule.firstFront[root]; f <= root; ++f) { SolveDown(f, alone, member.Number(), group); }
            });
            for (const int f : schedule.shared) { SolveDown(f, member, UpdatePlaces::SharedStack, group); }
            for (auto f = schedule.shared.rbegin(); f != schedule.shared.rend(); ++f) {
                SolveUp(*f, member, UpdatePlaces::SharedStack, group);
            }
            eachSubtree([&](int root) {
                for (int f = root; f >= schedule.firstFront[root]; --f) { SolveUp(f, alone, member.Number(), group); }
            });
        });
        store.ThrowFailure();
        permute(first, together,
                [](double* outside, const double* inside) { std::copy_n(inside, DofsPerNode, outside); });
    }
}

} // namespace tarnvexo

#include "solver/FrontElimination.h"

#include <algorithm>

namespace tarnvexo {

namespace {

// A piece of work for one thread: an array of this size stays in its second-level cache.
constexpr int PieceRows = 192;
constexpr int PieceColumns = 192;

constexpr int LargeStride = 256;

int AlignedUp(int row)
{
    return (row + RowAlignment - 1) / RowAlignment * RowAlignment;
}

int AlignedDown(int row)
{
    return row / RowAlignment * RowAlignment;
}

std::ptrdiff_t SpreadStride(int rows)
{
    const int stride = AlignedUp(rows);
    return stride >= LargeStride && stride % (2 * RowAlignment) == 0 ? stride + RowAlignment : stride;
}

int PiecesOf(int count, int piece)
{
    return (count + piece - 1) / piece;
}

IndexRange Piece(IndexRange range, int piece, std::size_t index)
{
    const int begin = range.begin + piece * static_cast<int>(index);
    return {begin, std::min(begin + piece, range.end)};
}

} // namespace

std::ptrdiff_t PanelStride(const FrontSize& size)
{
    return SpreadStride(size.height);
}

std::ptrdiff_t UpdateStride(const FrontSize& size)
{
    return SpreadStride(size.height - AlignedDown(size.width));
}

std::size_t PanelEntries(const FrontSize& size)
{
    return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(PanelStride(size));
}

std::size_t UpdateEntries(const FrontSize& size)
{
    return static_cast<std::size_t>(size.Below()) * static_cast<std::size_t>(UpdateStride(size));
}

FrontArray PanelAt(double* values, const FrontSize& size)
{
    return {values, PanelStride(size), 0, 0};
}

FrontArray UpdateAt(double* values, const FrontSize& size)
{
    return {values, UpdateStride(size), AlignedDown(size.width), size.width};
}

void EliminateFront(CrewMember& member, const FrontSize& size, const FrontArray& L, const FrontArray& U, double* signs,
                    double* pivots, unsigned char& isPositive)
{
    const int rowEnd = AlignedUp(size.height);
    const double* signsInUse = nullptr; // while all are +1
    // Columns, a block at a time: everything before them is taken off, then they are factorised.
    for (int begin = 0; begin < size.width; begin += BlockColumns) {
        const IndexRange columns = {begin, std::min(begin + BlockColumns, size.width)};
        const IndexRange diagonal = {begin, AlignedUp(columns.end)};
        const IndexRange below = {diagonal.end, rowEnd};
        const std::size_t pieces = static_cast<std::size_t>(PiecesOf(below.Size(), PieceRows));
        const auto takeOffBefore = [&](IndexRange rows) {
            SubtractProduct(L, {0, begin}, signsInUse, rows, columns, L);
        };
        member.Each(begin == 0 ? 1 : 1 + pieces, [&](std::size_t piece) {
            if (piece > 0) {
                takeOffBefore(Piece(below, PieceRows, piece - 1));
                return;
            }
            takeOffBefore(diagonal);
            const bool isBlockPositive = FactoriseDiagonal(L, columns, signs, pivots);
            isPositive = isBlockPositive && (begin == 0 || isPositive != 0) ? 1 : 0;
        });
        signsInUse = isPositive != 0 ? nullptr : signs;
        member.Each(pieces,
                    [&](std::size_t piece) { SolveRows(L, columns, signsInUse, Piece(below, PieceRows, piece)); });
    }
    // What is left, square by square, each with all columns at once.
    const IndexRange rows = {AlignedDown(size.width), rowEnd};
    const IndexRange columns = {size.width, size.height};
    const int rowPieces = PiecesOf(rows.Size(), PieceRows);
    const int columnPieces = PiecesOf(columns.Size(), PieceColumns);
    member.Each(static_cast<std::size_t>(rowPieces) * columnPieces, [&](std::size_t square) {
        const IndexRange squareRows = Piece(rows, PieceRows, square % rowPieces);
        const IndexRange squareColumns = Piece(columns, PieceColumns, square / rowPieces);
        SubtractProduct(L, {0, size.width}, signsInUse, squareRows, squareColumns, U);
    });
}

} // namespace tarnvexo

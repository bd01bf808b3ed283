#include "solver/FrontElimination.h"

#include <algorithm>

namespace tarnvexo {

namespace {

// Rows of a piece of work for one thread: a strip of that height stays in its second-level cache.
constexpr int PieceRows = 192;

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

// Of the strip of U that begins with a column.
std::ptrdiff_t StripStride(const FrontSize& size, int column)
{
    return SpreadStride(size.height - AlignedDown(column));
}

} // namespace

std::size_t PanelEntries(const FrontSize& size)
{
    return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(SpreadStride(size.height));
}

FrontArray PanelAt(double* values, const FrontSize& size)
{
    return {values, SpreadStride(size.height), 0, 0};
}

std::size_t UpdateEntries(const FrontSize& size)
{
    std::size_t entries = 0;
    for (int column = size.width; column < size.height; column += StripColumns) {
        const int columns = std::min(StripColumns, size.height - column);
        entries += static_cast<std::size_t>(columns) * static_cast<std::size_t>(StripStride(size, column));
    }
    return entries;
}

FrontArray FrontUpdate::Strip(int number) const
{
    double* begin = values;
    int column = size.width;
    for (int strip = 0; strip < number; ++strip, column += StripColumns) {
        begin += StripColumns * StripStride(size, column);
    }
    return {begin, StripStride(size, column), AlignedDown(column), column};
}

void EliminateFront(CrewMember& member, const FrontSize& size, const FrontArray& L, const FrontUpdate& U, double* signs,
                    double* pivots, unsigned char& isPositive)
{
    const int rowEnd = AlignedUp(size.height);
    const double* signsInUse = nullptr; // while all are +1
    // Columns, a block at a time: everything before them is taken off, then they are factorised.
    for (int begin = 0; begin < size.width; begin += BlockColumns) {
        const IndexRange columns = {begin, std::min(begin + BlockColumns, size.width)};
        const IndexRange diagonal = {begin, AlignedUp(columns.end)};
        const IndexRange below = {diagonal.end, rowEnd};
        const std::size_t pieces = PiecesOf(below, PieceRows);
        const auto takeOffBefore = [&](IndexRange rows) {
            SubtractProduct(L, {0, begin}, signsInUse, rows, columns, L);
        };
        member.Each(begin == 0 ? 1 : 1 + pieces, [&](std::size_t piece) {
            if (piece > 0) {
                takeOffBefore(PieceOf(below, PieceRows, piece - 1));
                return;
            }
            takeOffBefore(diagonal);
            const bool isBlockPositive = FactoriseDiagonal(L, columns, signs, pivots);
            isPositive = isBlockPositive && (begin == 0 || isPositive != 0) ? 1 : 0;
        });
        signsInUse = isPositive != 0 ? nullptr : signs;
        member.Each(pieces,
                    [&](std::size_t piece) { SolveRows(L, columns, signsInUse, PieceOf(below, PieceRows, piece)); });
    }
    // What is left, square by square, each with all columns at once.
    const IndexRange rows = {AlignedDown(size.width), rowEnd};
    const IndexRange columns = {size.width, size.height};
    const std::size_t strips = static_cast<std::size_t>(U.Strips());
    const std::size_t rowPieces = PiecesOf(rows, PieceRows);
    member.Each(rowPieces * strips, [&](std::size_t square) {
        const std::size_t strip = square / rowPieces;
        SubtractProduct(L, {0, size.width}, signsInUse, PieceOf(rows, PieceRows, square % rowPieces),
                        PieceOf(columns, StripColumns, strip), U.Strip(static_cast<int>(strip)));
    });
}

} // namespace tarnvexo

#include "LoneFront.h"

#include <algorithm>

namespace tarnvexo {

namespace {

constexpr double OffDiagonal = 0.25;
constexpr std::size_t BeyondCaches = std::size_t(1) << 25; // 256 MB

void FillColumns(const FrontArray& to, IndexRange columns)
{
    for (int column = columns.begin; column < columns.end; ++column) {
        const int firstRow = std::max(column / RowAlignment * RowAlignment, to.firstRow);
        double* const values = to.At(firstRow, column);
        std::fill(values, values + (to.stride + to.firstRow - firstRow), OffDiagonal);
        *to.At(column, column) = 1.0;
    }
}

} // namespace

LoneFront::LoneFront(std::size_t panelEntries, std::size_t updateEntries)
    : panels(std::max(panelEntries, BeyondCaches)), update(updateEntries)
{
    std::fill_n(panels.Data(), panels.Size(), 0.0);
    std::fill_n(update.Data(), update.Size(), 0.0);
}

void LoneFront::Eliminate(const FrontSize& size)
{
    if (next + PanelEntries(size) > panels.Size()) {
        next = 0;
    }
    const FrontArray L = PanelAt(panels.Data() + next, size);
    const FrontUpdate U = {update.Data(), size};
    next += PanelEntries(size);
    FillColumns(L, {0, size.width});
    for (int strip = 0; strip < U.Strips(); ++strip) {
        const int begin = size.width + StripColumns * strip;
        FillColumns(U.Strip(strip), {begin, std::min(begin + StripColumns, size.height)});
    }
    CrewMember alone = CrewMember::Alone();
    signs.resize(static_cast<std::size_t>(size.width));
    pivots.resize(static_cast<std::size_t>(size.width));
    unsigned char isPositive = 0;
    EliminateFront(alone, size, L, U, signs.data(), pivots.data(), isPositive);
}

} // namespace tarnvexo

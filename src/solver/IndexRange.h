// solver/IndexRange.h
// Rows or columns begin ... end - 1, and how they are cut into pieces of work: of one length but for the last.
#pragma once

#include <algorithm>
#include <cstddef>

namespace tarnvexo {

struct IndexRange {
    int begin;
    int end;

    int Size() const { return end - begin; }
};

inline std::size_t PiecesOf(IndexRange range, int length)
{
    return static_cast<std::size_t>((range.Size() + length - 1) / length);
}

inline IndexRange PieceOf(IndexRange range, int length, std::size_t piece)
{
    const int begin = range.begin + length * static_cast<int>(piece);
    return {begin, std::min(begin + length, range.end)};
}

} // namespace tarnvexo

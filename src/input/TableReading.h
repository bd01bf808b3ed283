// input/TableReading.h
// How far a strict reading has come with a table of the model file, and what can be believed of it.
#pragma once

#include "input/ModelTables.h"

#include <climits>

namespace tarnvexo {

struct TableReading : Table {
    explicit TableReading(const Table& table = {}) : Table(table) {}

    bool isThere = false;
    bool isCounted = false; // the count can be believed
    bool isSound = false;   // every record fitted, as many as counted
    int recordCount = 0;    // found
    int damages = 0;        // places that do not fit: each may be a record, or part of one, or none
    int limit = INT_MAX;    // indices below it are accepted
    // The first record whose written number is not its position, -1: none, and that number with its place.
    int oddRecord = -1;
    int oddLabel = 0;
    std::size_t oddLabelPosition = 0;

    bool CountsFromOne() const { return oddRecord == 0 && oddLabel == 1; }
    // The records go on behind a number that is left out, or the number before stands again.
    bool HasGap() const { return oddRecord > 0 && oddLabel == oddRecord + 1; }
    bool HasRepeat() const { return oddRecord > 0 && oddLabel == oddRecord - 1; }
};

} // namespace tarnvexo

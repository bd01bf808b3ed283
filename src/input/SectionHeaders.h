// input/SectionHeaders.h
// Finds the section headers of a model file without reading what stands between them: where a reader can go on after
// text that it does not understand. A header is known by its key and the "=" behind it, "NPOIN=".
#pragma once

#include "input/ModelTables.h"

#include <cstddef>
#include <string_view>

namespace tarnvexo {

struct SectionHeader {
    TableId table = TableCount; // TableCount: there is none
    std::size_t begin = 0;      // of "Number of ...", or of the line where that is not written; end of text: none
    std::size_t count = 0;      // position behind "="

    bool IsThere() const { return table != TableCount; }
};

// The first header that begins at a position or behind it.
SectionHeader NextHeader(std::string_view text, std::size_t position);

// True when nothing but a header stands at a position, white space in front of it included.
bool IsAtHeader(std::string_view text, std::size_t position);

// True when the line that begins at a position looks like the first one of a record.
bool BeginsRecord(std::string_view text, std::size_t lineBegin, TableId table);

// Records of a table that a piece of text seems to hold, in whatever lines.
long long CountRecords(std::string_view text, TableId table);

} // namespace tarnvexo

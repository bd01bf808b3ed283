// input/SourceExcerpt.h
// The line of a text under a message, with a mark under the fault.
//
// UTF-8 is shown as it is, and the mark stands below the fault in a terminal: East Asian characters take two columns,
// combining ones none. A tab shows as a blank. In a line that is not UTF-8 every byte beyond ASCII shows as "?"; so do
// control characters and those that turn the direction of writing. Of a long line only the part around the fault.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnvexo {

struct SourceExcerpt {
    std::string line;
    std::string mark; // blanks, "^", then "~" under the rest of a number
};

SourceExcerpt ExcerptAround(std::string_view text, std::size_t position);

} // namespace tarnvexo

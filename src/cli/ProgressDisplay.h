// cli/ProgressDisplay.h
// Shows the stages of a run on standard error. On a terminal every stage has a line that is rewritten in place:
//
//     [4/11]  factorise    …                                                while it goes on
//     [4/11]  factorise       2.31 s   1.20 GB   about 3 s left              when it has ended
//
// Elsewhere only the second line is written.
#pragma once

#include "app/SolveDriver.h"

#include <functional>
#include <string>
#include <string_view>

namespace tarnvexo {

enum class ProgressStyle { Silent, Lines, InPlace };

// Silent when the user wants quiet, in place on a terminal that can do so, else line by line.
ProgressStyle StyleOfStandardError(bool quiet);

// Lines without their ends.
std::string StageBeginText(const Progress& progress);
std::string StageEndText(const Progress& progress);

class ProgressDisplay {
public:
    using Destination = std::function<void(std::string_view)>;

    ProgressDisplay(ProgressStyle style, Destination destination);
    explicit ProgressDisplay(ProgressStyle style); // on standard error
    ~ProgressDisplay();                            // ends a line that a stage has left open, so that messages follow it

    ProgressDisplay(const ProgressDisplay&) = delete;
    ProgressDisplay& operator=(const ProgressDisplay&) = delete;

    void Show(const Progress& progress);

private:
    ProgressStyle style;
    Destination destination;
    bool lineIsOpen = false;
};

} // namespace tarnvexo

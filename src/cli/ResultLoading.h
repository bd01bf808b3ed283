// cli/ResultLoading.h
// The results of a run, read for `tarnvexo view` and `tarnvexo picture`: the contour file, and what stands beside it
// and belongs to it.
#pragma once

#include "app/StageClock.h"
#include "view/ResultPacket.h"

#include <string>
#include <vector>

namespace tarnvexo {

struct ResultSource {
    std::string result;    // directory of the results, or the contour file itself
    std::string modelFile; // empty: fem_solving.txt beside the contour file, if it is there
};

struct ShownResult {
    std::string packet;             // compressed (view/ResultPacket)
    std::vector<std::string> notes; // complete lines: what stands beside the result and is not shown, and why
};

// The stages of the loading, in order.
constexpr const char* LoadingStages[] = {"read", "model", "pack"};

// Reads and packs, through the stages of a clock that begins with these. The model and the shells' own stresses are
// taken only where they are those of the result: the same counts, the same nodes of every element, the same coordinates
// to the digits of the file. Errors: RunFailure (file error) for a contour file that is not there, cannot be read or is
// damaged, and for a model that was named and cannot be read.
ShownResult LoadShownResult(const ResultSource& source, const std::string& view, StageClock& clock);

// What the result is called: its directory, or the file when it bears a name of its own.
std::string TitleOf(const std::string& contourFile);

} // namespace tarnvexo

#include "cli/ProgressDisplay.h"

#include "cli/Quantities.h"
#include "platform/Platform.h"

#include <cstdio>
#include <utility>

namespace tarnvexo {

namespace {

constexpr const char* ToLineBegin = "\r\x1b[K"; // and erase the line

std::string StageLabel(const Progress& progress)
{
    const std::string position = "[" + std::to_string(progress.number) + "/" + std::to_string(progress.stages) + "]";
    char label[64];
    std::snprintf(label, sizeof label, "%-8s%-12s", position.c_str(), progress.stage);
    return label;
}

std::string LeftText(const Progress& progress)
{
    return progress.secondsLeft > 0.0 ? "   " + EstimateText(progress.secondsLeft) + " left" : "";
}

} // namespace

ProgressStyle StyleOfStandardError(bool quiet)
{
    return quiet                                  ? ProgressStyle::Silent
           : platform::ErrorLinesCanBeRewritten() ? ProgressStyle::InPlace
                                                  : ProgressStyle::Lines;
}

std::string StageBeginText(const Progress& progress)
{
    return StageLabel(progress) + " …" + LeftText(progress);
}

std::string StageEndText(const Progress& progress)
{
    char figures[64];
    std::snprintf(figures, sizeof figures, "%10s%10s", DurationText(progress.stageSeconds).c_str(),
                  MemoryText(progress.memoryGigabytes).c_str());
    return StageLabel(progress) + figures + LeftText(progress);
}

ProgressDisplay::ProgressDisplay(ProgressStyle style, Destination destination)
    : style(style), destination(std::move(destination))
{
}

ProgressDisplay::ProgressDisplay(ProgressStyle style) : ProgressDisplay(style, platform::WriteErrorOutput) {}

ProgressDisplay::~ProgressDisplay()
{
    if (lineIsOpen) {
        destination("\n");
    }
}

void ProgressDisplay::Show(const Progress& progress)
{
    if (style == ProgressStyle::Silent) {
        return;
    }
    if (style == ProgressStyle::Lines) {
        if (progress.ended) {
            destination(StageEndText(progress) + "\n");
        }
        return;
    }
    if (progress.ended) {
        destination(ToLineBegin + StageEndText(progress) + "\n");
    } else {
        destination(ToLineBegin + StageBeginText(progress));
    }
    lineIsOpen = !progress.ended;
}

} // namespace tarnvexo

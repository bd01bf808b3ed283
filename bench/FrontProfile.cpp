#include "FrontProfile.h"

#include "LoneFront.h"
#include "Stopwatch.h"
#include "solver/FrontTree.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>

namespace tarnvexo {

namespace {

struct FrontClass {
    int fronts = 0;
    double operations = 0.0;
    double expectedToEliminate = 0.0; // seconds, as the next ones
    double expectedToAdd = 0.0;
    double measured = 0.0;
};

int LeastHeightOfClass(int height)
{
    int least = 24;
    while (2 * least <= height) { least *= 2; }
    return height < least ? 0 : least;
}

void PrintLine(const char* name, const FrontClass& some, const FrontClass& all)
{
    const double expected = some.expectedToEliminate + some.expectedToAdd;
    std::printf("%12s %9d %11.3f %6.1f %9.4f %9.4f %6.1f %9.4f %6.1f %7.1f\n", name, some.fronts,
                1e-9 * some.operations, 100.0 * some.operations / all.operations, some.expectedToEliminate,
                some.expectedToAdd, 100.0 * expected / (all.expectedToEliminate + all.expectedToAdd), some.measured,
                100.0 * some.measured / all.measured, 1e-9 * some.operations / some.measured);
}

} // namespace

void PrintFrontProfile(const BlockPattern& pattern)
{
    const FrontTree tree = BuildFrontTree(pattern);
    std::size_t panelEntries = 0, updateEntries = 0;
    for (const Front& front : tree.fronts) {
        panelEntries = std::max(panelEntries, PanelEntries(front.Size()));
        updateEntries = std::max(updateEntries, UpdateEntries(front.Size()));
    }
    LoneFront lone(panelEntries, updateEntries);
    std::map<int, FrontClass> classes;
    FrontClass all;
    for (const Front& front : tree.fronts) {
        const FrontSize size = front.Size();
        const double toAdd = front.parent < 0 ? 0.0 : SecondsToAdd(size);
        Stopwatch watch;
        lone.Eliminate(size);
        const double measured = watch.Lap();
        for (FrontClass* sum : {&classes[LeastHeightOfClass(size.height)], &all}) {
            sum->fronts += 1;
            sum->operations += OperationsOf(size);
            sum->expectedToEliminate += SecondsOf(size);
            sum->expectedToAdd += toAdd;
            sum->measured += measured;
        }
    }
    std::printf("%12s %9s %11s %6s %9s %9s %6s %9s %6s %7s\n", "height from", "fronts", "Gop", "%", "expected",
                "to add", "%", "measured", "%", "Gop/s");
    for (const auto& [height, some] : classes) { PrintLine(std::to_string(height).c_str(), some, all); }
    PrintLine("all", all, all);
}

} // namespace tarnvexo

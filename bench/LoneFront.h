// One dense front without a tree around it, to measure what it costs on one thread.
#pragma once

#include "core/LargeArray.h"
#include "solver/FrontElimination.h"

#include <cstddef>
#include <vector>

namespace tarnvexo {

// Memory is used as in the factorisation: the columns of every front go to a place that has left the caches since it
// was used last, what is left of it to a place that is used again and again.
class LoneFront {
public:
    // For fronts up to these sizes: PanelEntries and UpdateEntries (solver/FrontElimination.h).
    LoneFront(std::size_t panelEntries, std::size_t updateEntries);

    // Fills a front with (1 - c)·I + c·1·1ᵀ, c = 1/4, which costs as much as to clear it, and eliminates it.
    void Eliminate(const FrontSize& size);

private:
    LargeArray panels, update;
    std::size_t next = 0; // place in panels
    std::vector<double> signs, pivots;
};

} // namespace tarnvexo

#include "elements/ShellStiffnessBatch.h"

#include "elements/ShellStiffness.h"

namespace tarnvexo {

void QuadShellStiffnessBatch(const QuadShellElement* const* elements, int count,
                             double (*K)[QuadDofCount][QuadDofCount])
{
    for (int e = 0; e < count; ++e) { QuadShellStiffness(*elements[e], K[e]); }
}

void TriShellStiffnessBatch(const TriShellElement* const* elements, int count, double (*K)[TriDofCount][TriDofCount])
{
    for (int e = 0; e < count; ++e) { TriShellStiffness(*elements[e], K[e]); }
}

} // namespace tarnvexo

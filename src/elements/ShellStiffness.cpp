#include "elements/ShellStiffness.h"

#include "elements/ShellStiffness-inl.h"
#include "solver/DenseMatrix.h"

namespace tarnvexo {

void QuadShellStiffness(const QuadShellElement& element, double K[QuadDofCount][QuadDofCount])
{
    HWY_NAMESPACE::QuadShellStiffness<double>(LocalShellOf(element), K);
    MirrorUpperTriangle(K);
}

void TriShellStiffness(const TriShellElement& element, double K[TriDofCount][TriDofCount])
{
    HWY_NAMESPACE::TriShellStiffness<double>(LocalShellOf(element), K);
    MirrorUpperTriangle(K);
}

} // namespace tarnvexo

#include "solver/FrontCost.h"

namespace tarnvexo {

namespace {

constexpr double PerFront = 4e-7;
constexpr double PerPanelEntry = 4e-10;
constexpr double PerUpdateEntry = 4e-10; // cleared, then read and written by every product
constexpr double PerAddedEntry = 6e-10;
constexpr double PerOperation = 1.25e-11;

} // namespace

double OperationsOf(const FrontSize& front)
{
    // Σ h² for h = height − width + 1 ... height.
    const auto squares = [](double n) { return n * (n + 1.0) * (2.0 * n + 1.0) / 6.0; };
    return squares(front.height) - squares(front.Below());
}

double SecondsOf(const FrontSize& front)
{
    const double below = front.Below();
    return PerFront + PerPanelEntry * front.width * front.height + PerUpdateEntry * 0.5 * below * below +
           PerOperation * OperationsOf(front);
}

double SecondsToAdd(const FrontSize& front)
{
    const double below = front.Below();
    return PerAddedEntry * 0.5 * below * below;
}

} // namespace tarnvexo

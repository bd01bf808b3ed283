#include "cli/ReportPhrases.h"

#include "checks/FindingText.h"
#include "cli/ReportFigures.h"

#include <cmath>
#include <cstdio>

namespace tarnvexo {

std::string WithUnit(double value, const char* unit)
{
    return *unit == '\0' ? NumberText(value) : NumberText(value) + " " + unit;
}

std::string ShareText(double share)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2g", share);
    return text;
}

std::string DigitsText(double error)
{
    return std::to_string(error > 0.0 && error < 1.0 ? std::lround(-std::log10(error)) : 0);
}

std::string FreeMotionText(int count)
{
    return count == 0 ? "no free rigid motion" : CountText(count, "free rigid motion");
}

std::string PartText(const PartReport& part)
{
    std::string text = CountText(part.nodes, "node") + ", " + CountText(part.elements, "element") + ", from node " +
                       std::to_string(part.firstNode) + " on; " + CountText(part.restrainedDofs, "direction") +
                       " restrained; " + FreeMotionText(part.freeMotions);
    for (const std::string& motion : part.freeMotionTexts) { text += "; " + motion; }
    if (part.freeMotions > 0) {
        text += "; around " + PlaceText(part.middle);
    }
    return text;
}

std::string BalanceSummary(const BalanceSheet& balance)
{
    return std::string(IsBalanced(balance) ? "closed" : "NOT CLOSED") + " (" + BalanceName(balance.kind) +
           "): " + ShareText(balance.relativeForce) + " of force, " + ShareText(balance.relativeMoment) +
           " of moment left";
}

std::string AccelerationSummary(const BalanceSheet& balance, const UnitTexts& unit)
{
    const double a = Length(balance.applied.a);
    std::string text = WithUnit(a, unit.acceleration);
    if (unit.standardGravity > 0.0) {
        text += " (" + NumberText(a / unit.standardGravity) + " g)";
    }
    return text + ", " + WithUnit(Length(balance.applied.alpha), unit.angularAcceleration) + ", not by supports";
}

} // namespace tarnvexo

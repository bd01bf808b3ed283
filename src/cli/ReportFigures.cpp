#include "cli/ReportFigures.h"

#include "inertia/BalanceCheck.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tarnvexo {

const char* DofName(Dof dof)
{
    static constexpr const char* names[DofsPerNode] = {"dx", "dy", "dz", "rx", "ry", "rz"};
    return names[dof];
}

const char* BalanceName(BalanceKind kind)
{
    return kind == BalanceKind::Exact ? "exact" : "classic";
}

const char* VerdictName(Verdict verdict)
{
    static constexpr const char* names[] = {"pass", "warn", "fail"};
    return names[static_cast<std::size_t>(verdict)];
}

Vector3 SumOfReactionForces(const std::vector<SupportReaction>& reactions)
{
    Vector3 sum = {};
    for (const SupportReaction& reaction : reactions) {
        if (reaction.at.dof <= DZ) {
            sum[reaction.at.dof] += reaction.value;
        }
    }
    return sum;
}

double ShareOfLoads(const SupportReaction& reaction, const BalanceSheet& balance)
{
    return RelativeTo(reaction.at.dof <= DZ ? balance.forceSize : balance.momentSize, std::fabs(reaction.value));
}

double RelativeTo(double loads, double size)
{
    return loads == 0.0 ? 0.0 : size / loads; // loads that are not numbers must show
}

double EnergyDifference(const SolveReport& report)
{
    const double larger = std::max(std::fabs(report.strainEnergy), std::fabs(report.externalWork));
    return RelativeTo(larger, std::fabs(report.strainEnergy - report.externalWork));
}

double FactoriseRate(const SolveReport& report)
{
    for (const StageTime& stage : report.stages) {
        if (stage.name == "factorise" && stage.seconds > 0.0) {
            return report.solver.factorOperations / stage.seconds;
        }
    }
    return 0.0;
}

bool IsBalanced(const BalanceSheet& balance)
{
    return balance.relativeForce <= BalanceTolerance && balance.relativeMoment <= BalanceTolerance;
}

} // namespace tarnvexo

#include "support/SolveSteps.h"

#include "app/AssemblyDriver.h"
#include "app/StiffnessSystem.h"
#include "inertia/BalanceSheet.h"
#include "inertia/MassOrthogonal.h"
#include "output/ShellStressRecovery.h"
#include "support/ElementTools.h"
#include "support/MixedStructure.h"
#include "support/SmallModels.h"

#include <utility>

namespace tarnvexo::test {

SolveSteps RunSolveSteps(const ModelText& text, SolverKind kind, const std::vector<int>& holdNodes)
{
    return RunSolveSteps(StoreOf(text), kind, BalanceKind::Exact, holdNodes);
}

SolveSteps RunSolveSteps(ModelStore read, SolverKind kind, BalanceKind balance, const std::vector<int>& holdNodes)
{
    SolveSteps run;
    ModelStore& model = run.model = std::move(read);
    model.EquationCount = DofsPerNode * model.NPOIN;
    MoveOriginToCentroid(model);
    AssembleLoads(model);
    run.applied = model.GLOAD;
    run.inertia = ShellInertia(model);
    run.balance = tarnvexo::BalanceLoads(model, run.inertia, balance);
    run.free = FindFreeParts(model, holdNodes);

    StiffnessSystem system(model, kind);
    system.Order();
    system.Analyse("model");
    system.Assemble();
    system.Factorise(run.free.isHeld, "model");
    run.held = system.Solve(model.GLOAD);
    run.solver = system.Report();
    run.strainEnergy = system.StrainEnergy();

    model.GlobalDisplacement = run.held;
    MakeMassOrthogonal(model, run.inertia, run.free.parts, run.free.motions, model.GlobalDisplacement);
    RecoverShellStresses(model);
    return run;
}

std::vector<double> ShellStresses(const ModelStore& model)
{
    std::vector<double> stresses;
    const auto add = [&](const auto& shell) {
        for (int i = 0; i < shell.NodeCount; ++i) {
            stresses.insert(stresses.end(), shell.positiveFace[i], shell.positiveFace[i] + StressCount);
            stresses.insert(stresses.end(), shell.negativeFace[i], shell.negativeFace[i] + StressCount);
        }
    };
    for (const QuadShellElement& quad : model.QuadElements) { add(quad); }
    for (const TriShellElement& tri : model.TriElements) { add(tri); }
    return stresses;
}

double RelativeDifference(const std::vector<double>& a, const std::vector<double>& b)
{
    return a.empty() ? 0.0 : LargestDifference(a.data(), b.data(), static_cast<int>(a.size()));
}

} // namespace tarnvexo::test

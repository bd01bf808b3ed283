#include "app/InertiaLoads.h"

#include "app/LoadBalance.h"
#include "app/ModelCheck.h"
#include "inertia/StructureCentroid.h"

namespace tarnvexo {

std::vector<double> BalancingInertiaLoads(ModelStore& model, const std::string& modelFile, std::string& fault)
{
    fault = ElementFault(model, modelFile);
    if (!fault.empty()) {
        return {};
    }
    model.EquationCount = DofsPerNode * model.NPOIN;
    model.StructureCentroid = StructureCentroid(model);
    ShiftOrigin(model, -model.StructureCentroid);
    const BalancedLoads loads = BalanceModelLoads(model, modelFile, BalanceKind::Exact);
    fault = loads.fault;
    std::vector<double> inertia;
    if (fault.empty()) {
        inertia.assign(static_cast<std::size_t>(model.EquationCount), 0.0);
        AddInertialLoads(model, loads.shellInertia, loads.sheet.applied, inertia);
    }
    ShiftOrigin(model, model.StructureCentroid);
    return inertia;
}

} // namespace tarnvexo

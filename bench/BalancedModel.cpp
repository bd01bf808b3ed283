#include "BalancedModel.h"

#include "app/AssemblyDriver.h"
#include "app/ModelLoading.h"
#include "inertia/BalanceSheet.h"
#include "inertia/InertialLoads.h"
#include "inertia/StructureCentroid.h"

namespace tarnvexo {

ModelStore BalancedModel(const char* modelFile)
{
    ModelStore model;
    LoadModel(model, modelFile);
    model.EquationCount = DofsPerNode * model.NPOIN;
    model.StructureCentroid = StructureCentroid(model);
    ShiftOrigin(model, -model.StructureCentroid);
    AssembleLoads(model);
    BalanceLoads(model, ShellInertia(model), BalanceKind::Exact);
    return model;
}

} // namespace tarnvexo

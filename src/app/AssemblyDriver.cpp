#include "app/AssemblyDriver.h"

#include "core/Console.h"
#include "core/Failure.h"
#include "core/Messages.h"
#include "elements/BeamLoadVector.h"
#include "elements/BeamStiffness.h"
#include "elements/ShellPressureLoad.h"
#include "elements/ShellStiffness.h"
#include "inertia/BalanceCheck.h"
#include "inertia/InertiaRelief.h"
#include "inertia/StructureCentroid.h"
#include "input/ModelFileReader.h"
#include "output/DxfDrawing.h"
#include "solver/SkylineMemory.h"
#include "solver/SkylineProfile.h"

#include <cstdint>

namespace tarnvexo {

namespace {

void PrintCentroid(const Vector3& centroid)
{
    Console().Text(messages::CentroidBegin).Number(centroid[0]).Text(",").Number(centroid[1]).Text(",");
    Console().Number(centroid[2]).Text(messages::CentroidEnd);
    EndConsoleLine();
}

// Adds f at the equations of an element's nodes.
template <int NodeCount> void AddElementLoad(const int* nodes, const double* f, std::vector<double>& loads)
{
    int map[NodeCount * DofsPerNode];
    ElementDofMap<NodeCount>(nodes, map);
    for (int i = 0; i < NodeCount * DofsPerNode; ++i) { loads[map[i]] += f[i]; }
}

} // namespace

void LayOutSkyline(ModelStore& model)
{
    // One equation per node and DOF; so many must fit 32 bits, as the skyline has at least one entry each.
    const std::int64_t equations = std::int64_t(DofsPerNode) * model.NPOIN;
    if (equations > SkylineLimit) {
        AllocateSkyline(model, equations, ModelFileName);
    }
    model.EquationCount = static_cast<int>(equations);
    BuildSkylineProfile(model);
    const std::int64_t entries = SkylineEntries(model.ColumnHeight);
    Console().Text(messages::MemoryBegin).Number(static_cast<double>(entries) * GigabytesPerEntry);
    Console().Text(messages::MemoryEnd);
    EndConsoleLine();
    AllocateSkyline(model, entries, ModelFileName);
    model.DiagonalAddress = DiagonalAddresses(model.ColumnHeight);
}

void AssembleStiffness(ModelStore& model)
{
    for (int e = 0; e < model.NELEM_S_4ND; ++e) {
        double K[QuadDofCount][QuadDofCount];
        int map[QuadDofCount];
        QuadShellStiffness(model.QuadElements[e], K);
        ElementDofMap<QuadNodeCount>(model.QuadConnectivity[e].data(), map);
        AddElementMatrix(&K[0][0], map, QuadDofCount, model.DiagonalAddress, model.GlobalStiffness);
    }
    for (int e = 0; e < model.NELEM_S_3ND; ++e) {
        double K[TriDofCount][TriDofCount];
        int map[TriDofCount];
        TriShellStiffness(model.TriElements[e], K);
        ElementDofMap<TriNodeCount>(model.TriConnectivity[e].data(), map);
        AddElementMatrix(&K[0][0], map, TriDofCount, model.DiagonalAddress, model.GlobalStiffness);
    }
    for (int e = 0; e < model.NELEM_B; ++e) {
        double K[BeamDofCount][BeamDofCount];
        int map[BeamDofCount];
        BeamStiffness(model.BeamElements[e], K);
        ElementDofMap<BeamNodeCount>(model.BeamConnectivity[e].data(), map);
        AddElementMatrix(&K[0][0], map, BeamDofCount, model.DiagonalAddress, model.GlobalStiffness);
    }
}

void AssembleLoads(ModelStore& model)
{
    model.GLOAD.assign(model.EquationCount, 0.0);
    for (const NodalForce& force : model.NodalForces) {
        for (int k = 0; k < DofsPerNode; ++k) { model.GLOAD[DofsPerNode * force.node + k] += force.components[k]; }
    }
    for (const ShellDistributedLoad& load : model.QuadDistributedLoads) {
        double f[QuadDofCount];
        QuadShellPressureLoad(model.QuadElements[load.element], load, f);
        AddElementLoad<QuadNodeCount>(model.QuadConnectivity[load.element].data(), f, model.GLOAD);
    }
    for (const ShellDistributedLoad& load : model.TriDistributedLoads) {
        double f[TriDofCount];
        TriShellPressureLoad(model.TriElements[load.element], load, f);
        AddElementLoad<TriNodeCount>(model.TriConnectivity[load.element].data(), f, model.GLOAD);
    }
    for (const BeamDistributedLoad& load : model.BeamDistributedLoads) {
        double f[BeamDofCount];
        BeamLoadVector(model.BeamElements[load.element], load, f);
        AddElementLoad<BeamNodeCount>(model.BeamConnectivity[load.element].data(), f, model.GLOAD);
    }
}

void ApplyRestraints(ModelStore& model)
{
    for (const Restraint& restraint : model.Restraints) {
        for (int k = 0; k < DofsPerNode; ++k) {
            if (restraint.flags[k] == 1) {
                model.GlobalStiffness[model.DiagonalAddress[DofsPerNode * restraint.node + k]] = RestraintPenalty;
            }
        }
    }
}

void AssembleGlobalSystem(ModelStore& model)
{
    ReadModelFile(model, ModelFileName);

    // Moments and rotational mass are taken about the centroid of the material volume.
    model.StructureCentroid = StructureCentroid(model);
    PrintCentroid(model.StructureCentroid);
    ShiftOrigin(model, -model.StructureCentroid);

    LayOutSkyline(model);
    RequireCreated(WriteStructureDrawing(model, StructureDrawingFileName), messages::DxfFileError);

    PrintConsoleLine(messages::Assembling);
    AssembleStiffness(model);
    AssembleLoads(model);
    ApplyRestraints(model);
    const LoadSizes applied = SizesOfLoads(model);
    BalanceByInertiaRelief(model);
    Warn(BalanceWarning(model, applied, ModelFileName));
    Warn(SupportWarning(model, applied, ModelFileName));
}

} // namespace tarnvexo

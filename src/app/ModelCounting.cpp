#include "app/ModelCounting.h"

#include "inertia/RigidMotions.h"

#include <algorithm>

namespace tarnvexo {

ModelCounts CountsOf(const ModelStore& model)
{
    ModelCounts counts;
    counts.nodes = model.NPOIN;
    counts.quads = model.NELEM_S_4ND;
    counts.tris = model.NELEM_S_3ND;
    counts.beams = model.NELEM_B;
    counts.materials = model.NMT;
    counts.thicknesses = model.NTK;
    counts.beamSections = model.NTBS + model.NLBS + model.NCBS;
    const std::vector<unsigned char> restrained = RestrainedEquations(model);
    counts.restrainedDofs = static_cast<int>(std::count(restrained.begin(), restrained.end(), 1));
    counts.nodalForces = model.NFOR;
    counts.distributedLoads = model.NDL_S_4ND + model.NDL_S_3ND + model.NDL_B;
    counts.equations = model.EquationCount;
    Vector3 low = model.NodeCoordinates.front(), high = low;
    for (const Vector3& node : model.NodeCoordinates) {
        for (int k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], node[k]);
            high[k] = std::max(high[k], node[k]);
        }
    }
    counts.boxMin = low + model.StructureCentroid;
    counts.boxMax = high + model.StructureCentroid;
    return counts;
}

} // namespace tarnvexo

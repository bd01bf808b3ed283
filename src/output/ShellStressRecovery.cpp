#include "output/ShellStressRecovery.h"

#include "elements/QuadGeometry.h"
#include "elements/ShellNodeStress.h"

namespace tarnvexo {

void RecoverShellStresses(ModelStore& model)
{
    for (int e = 0; e < model.NELEM_S_4ND; ++e) {
        QuadShellElement& element = model.QuadElements[e];
        double d[QuadDofCount];
        GatherDisplacements<QuadNodeCount>(model.QuadConnectivity[e].data(), model.GlobalDisplacement, d);
        for (int i = 0; i < QuadNodeCount; ++i) {
            QuadNodeStress(element, element.positiveFace[i], element.negativeFace[i], d, QuadNodeXi[i], QuadNodeEta[i]);
        }
    }
    for (int e = 0; e < model.NELEM_S_3ND; ++e) {
        TriShellElement& element = model.TriElements[e];
        double d[TriDofCount];
        GatherDisplacements<TriNodeCount>(model.TriConnectivity[e].data(), model.GlobalDisplacement, d);
        for (int i = 0; i < TriNodeCount; ++i) {
            double corner[TriNodeCount] = {};
            corner[i] = 1.0;
            TriNodeStress(element, element.positiveFace[i], element.negativeFace[i], d, corner);
        }
    }
}

} // namespace tarnvexo

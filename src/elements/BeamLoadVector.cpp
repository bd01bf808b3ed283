#include "elements/BeamLoadVector.h"

#include "elements/BeamSection.h"
#include "elements/LocalAxes.h"

#include <initializer_list>

namespace tarnvexo {

void BeamLinearLoad(double length, const double q1[3], const double q2[3], double f[BeamDofCount])
{
    const double L = length;
    double* end1 = f;
    double* end2 = f + DofsPerNode;
    end1[DX] = L * (20.0 * q1[0] + 10.0 * q2[0]) / 60.0;
    end2[DX] = L * (10.0 * q1[0] + 20.0 * q2[0]) / 60.0;
    for (int k : {DY, DZ}) {
        end1[k] = L * (21.0 * q1[k] + 9.0 * q2[k]) / 60.0;
        end2[k] = L * (9.0 * q1[k] + 21.0 * q2[k]) / 60.0;
    }
    end1[RX] = end2[RX] = 0.0;
    // A load along y' turns the ends about z', one along z' about −y'.
    end1[RZ] = L * L * (3.0 * q1[DY] + 2.0 * q2[DY]) / 60.0;
    end2[RZ] = -L * L * (2.0 * q1[DY] + 3.0 * q2[DY]) / 60.0;
    end1[RY] = -L * L * (3.0 * q1[DZ] + 2.0 * q2[DZ]) / 60.0;
    end2[RY] = L * L * (2.0 * q1[DZ] + 3.0 * q2[DZ]) / 60.0;
}

void BeamLoadVector(const BeamElement& beam, const BeamDistributedLoad& load, double f[BeamDofCount])
{
    const double q1[3] = {0.0, 0.0, load.q1};
    const double q2[3] = {0.0, 0.0, load.q2};
    double local[BeamDofCount];
    BeamLinearLoad(BeamLength(beam), q1, q2, local);

    Vector3 frame[3];
    BeamFrame(beam, frame);
    VectorToGlobal<BeamNodeCount>(frame, local, f);
}

} // namespace tarnvexo

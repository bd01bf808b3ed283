#include "support/SameModel.h"

#include <cstddef>
#include <cstring>

namespace tarnvexo::test {

namespace {

bool Same(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0; // nan equals itself, 0 is not -0
}
bool Same(const double* a, const double* b, std::size_t count)
{
    return std::memcmp(a, b, count * sizeof *a) == 0;
}
bool Same(const Vector3& a, const Vector3& b)
{
    return Same(a.data(), b.data(), a.size());
}
template <std::size_t Count> bool Same(const std::array<int, Count>& a, const std::array<int, Count>& b)
{
    return a == b;
}
bool Same(const Material& a, const Material& b)
{
    return Same(a.E, b.E) && Same(a.Mu, b.Mu) && Same(a.Density, b.Density);
}
bool Same(const WebFlangeSection& a, const WebFlangeSection& b)
{
    return Same(a.Hw, b.Hw) && Same(a.Tw, b.Tw) && Same(a.Bf, b.Bf) && Same(a.Tf, b.Tf);
}
bool Same(const CBeamSection& a, const CBeamSection& b)
{
    return Same(a.R, b.R) && Same(a.T, b.T);
}
bool Same(const ShellPropertyRef& a, const ShellPropertyRef& b)
{
    return a.material == b.material && a.thickness == b.thickness;
}
bool Same(const BeamPropertyRef& a, const BeamPropertyRef& b)
{
    return a.material == b.material && Same(a.orientation, b.orientation);
}
bool Same(const BeamSectionRef& a, const BeamSectionRef& b)
{
    return a.BeamSecType == b.BeamSecType && a.BeamSecIndex == b.BeamSecIndex && Same(a.BeamSecOz, b.BeamSecOz) &&
           a.BeamSecMirrored == b.BeamSecMirrored;
}
bool Same(const Restraint& a, const Restraint& b)
{
    return a.node == b.node && std::memcmp(a.flags, b.flags, sizeof a.flags) == 0;
}
bool Same(const NodalForce& a, const NodalForce& b)
{
    return a.node == b.node && Same(a.components, b.components, DofsPerNode);
}
bool Same(const ShellDistributedLoad& a, const ShellDistributedLoad& b)
{
    return a.element == b.element && Same(a.pressure, b.pressure, 3);
}
bool Same(const BeamDistributedLoad& a, const BeamDistributedLoad& b)
{
    return a.element == b.element && Same(a.q1, b.q1) && Same(a.q2, b.q2);
}
template <int Nodes> bool Same(const ShellElement<Nodes>& a, const ShellElement<Nodes>& b)
{
    for (int i = 0; i < Nodes; ++i) {
        if (!Same(a.coordinates[i], b.coordinates[i])) {
            return false;
        }
    }
    return Same(a.axes[0], b.axes[0]) && Same(a.axes[1], b.axes[1]) && Same(a.axes[2], b.axes[2]) && Same(a.E, b.E) &&
           Same(a.Mu, b.Mu) && Same(a.thickness, b.thickness) && Same(a.Density, b.Density);
}
bool Same(const BeamElement& a, const BeamElement& b)
{
    const BeamSectionConstants &s = a.section, &t = b.section;
    return Same(a.node1, b.node1) && Same(a.node2, b.node2) && Same(a.reference, b.reference) && Same(a.E, b.E) &&
           Same(a.Mu, b.Mu) && Same(a.Density, b.Density) && Same(a.sectionOffset, b.sectionOffset) &&
           a.mirrored == b.mirrored && Same(s.A, t.A) && Same(s.I1, t.I1) && Same(s.I2, t.I2) && Same(s.J, t.J) &&
           Same(s.phi1, t.phi1) && Same(s.phi2, t.phi2) && Same(s.c1, t.c1) && Same(s.c2, t.c2) && Same(s.c3, t.c3) &&
           Same(s.c4, t.c4) && Same(s.ex, t.ex) && Same(s.ey, t.ey) && Same(s.ez, t.ez);
}

// A table and the count beside it.
template <class Record> bool Same(int countA, const std::vector<Record>& a, int countB, const std::vector<Record>& b)
{
    if (countA != countB || a.size() != std::size_t(countA) || b.size() != std::size_t(countB)) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!Same(a[i], b[i])) {
            return false;
        }
    }
    return true;
}

} // namespace

std::string DifferentTable(const ModelStore& a, const ModelStore& b)
{
    struct Comparison {
        const char* table;
        bool same;
    };
    const Comparison comparisons[] = {
        {"materials", Same(a.NMT, a.Materials, b.NMT, b.Materials)},
        {"thicknesses", Same(a.NTK, a.Thicknesses, b.NTK, b.Thicknesses)},
        {"T sections", Same(a.NTBS, a.TBeamSections, b.NTBS, b.TBeamSections)},
        {"L sections", Same(a.NLBS, a.LBeamSections, b.NLBS, b.LBeamSections)},
        {"tubes", Same(a.NCBS, a.CBeamSections, b.NCBS, b.CBeamSections)},
        {"nodes", Same(a.NPOIN, a.NodeCoordinates, b.NPOIN, b.NodeCoordinates)},
        {"four-node shells", Same(a.NELEM_S_4ND, a.QuadConnectivity, b.NELEM_S_4ND, b.QuadConnectivity) &&
                                 Same(a.NELEM_S_4ND, a.QuadProperties, b.NELEM_S_4ND, b.QuadProperties)},
        {"three-node shells", Same(a.NELEM_S_3ND, a.TriConnectivity, b.NELEM_S_3ND, b.TriConnectivity) &&
                                  Same(a.NELEM_S_3ND, a.TriProperties, b.NELEM_S_3ND, b.TriProperties)},
        {"beams", Same(a.NELEM_B, a.BeamConnectivity, b.NELEM_B, b.BeamConnectivity) &&
                      Same(a.NELEM_B, a.BeamProperties, b.NELEM_B, b.BeamProperties) &&
                      Same(a.NELEM_B, a.BeamSectionRefs, b.NELEM_B, b.BeamSectionRefs)},
        {"restraints", Same(a.NRN, a.Restraints, b.NRN, b.Restraints)},
        {"forces", Same(a.NFOR, a.NodalForces, b.NFOR, b.NodalForces)},
        {"four-node shell loads", Same(a.NDL_S_4ND, a.QuadDistributedLoads, b.NDL_S_4ND, b.QuadDistributedLoads)},
        {"three-node shell loads", Same(a.NDL_S_3ND, a.TriDistributedLoads, b.NDL_S_3ND, b.TriDistributedLoads)},
        {"beam loads", Same(a.NDL_B, a.BeamDistributedLoads, b.NDL_B, b.BeamDistributedLoads)},
        {"elements", Same(a.NELEM_S_4ND, a.QuadElements, b.NELEM_S_4ND, b.QuadElements) &&
                         Same(a.NELEM_S_3ND, a.TriElements, b.NELEM_S_3ND, b.TriElements) &&
                         Same(a.NELEM_B, a.BeamElements, b.NELEM_B, b.BeamElements)},
    };
    for (const Comparison& comparison : comparisons) {
        if (!comparison.same) {
            return comparison.table;
        }
    }
    return {};
}

} // namespace tarnvexo::test

#include "elements/ModelSetUp.h"

#include "elements/BeamSection.h"
#include "elements/ShellSetUp.h"

#include <cstddef>

namespace tarnvexo {

namespace {

template <std::size_t Nodes>
std::array<Vector3, Nodes> CornerPoints(const ModelStore& model, const std::array<int, Nodes>& nodes)
{
    std::array<Vector3, Nodes> points;
    for (std::size_t i = 0; i < Nodes; ++i) { points[i] = model.NodeCoordinates[std::size_t(nodes[i])]; }
    return points;
}

template <class Record> int Count(const std::vector<Record>& table)
{
    return static_cast<int>(table.size());
}

} // namespace

void SetUpQuad(ModelStore& model, std::size_t e)
{
    const auto corners = CornerPoints(model, model.QuadConnectivity[e]);
    const Material& material = model.Materials[std::size_t(model.QuadProperties[e].material)];
    const double thickness = model.Thicknesses[std::size_t(model.QuadProperties[e].thickness)];
    QuadShellSetUp(model.QuadElements[e], corners.data(), QuadNodeCount, material.E, material.Mu, material.Density,
                   thickness);
}

void SetUpTri(ModelStore& model, std::size_t e)
{
    const auto corners = CornerPoints(model, model.TriConnectivity[e]);
    const Material& material = model.Materials[std::size_t(model.TriProperties[e].material)];
    const double thickness = model.Thicknesses[std::size_t(model.TriProperties[e].thickness)];
    TriShellSetUp(model.TriElements[e], corners.data(), TriNodeCount, material.E, material.Mu, thickness,
                  material.Density);
}

void SetUpBeam(ModelStore& model, std::size_t e)
{
    BeamElement& beam = model.BeamElements[e];
    const BeamPropertyRef& property = model.BeamProperties[e];
    const BeamSectionRef& section = model.BeamSectionRefs[e];
    const int type = section.BeamSecType;
    if (type != TSection && type != LSection && type != CSection) {
        return; // its material and section numbers mean nothing
    }
    const auto [node1, node2] = CornerPoints(model, model.BeamConnectivity[e]);
    const Vector3 reference = node1 + property.orientation;
    const Material& material = model.Materials[std::size_t(property.material)];
    const std::size_t index = std::size_t(section.BeamSecIndex);
    if (type == TSection) {
        TBeamSetUp(beam, node1, node2, reference, material, model.TBeamSections[index], section.BeamSecOz);
    } else if (type == LSection) {
        LBeamSetUp(beam, node1, node2, reference, material, model.LBeamSections[index], section.BeamSecOz,
                   section.BeamSecMirrored);
    } else {
        TubeBeamSetUp(beam, node1, node2, reference, material, model.CBeamSections[index], section.BeamSecOz);
    }
}

void SetUpModel(ModelStore& model)
{
    model.NMT = Count(model.Materials);
    model.NTK = Count(model.Thicknesses);
    model.NTBS = Count(model.TBeamSections);
    model.NLBS = Count(model.LBeamSections);
    model.NCBS = Count(model.CBeamSections);
    model.NPOIN = Count(model.NodeCoordinates);
    model.NELEM_S_4ND = Count(model.QuadConnectivity);
    model.NELEM_S_3ND = Count(model.TriConnectivity);
    model.NELEM_B = Count(model.BeamConnectivity);
    model.NRN = Count(model.Restraints);
    model.NFOR = Count(model.NodalForces);
    model.NDL_S_4ND = Count(model.QuadDistributedLoads);
    model.NDL_S_3ND = Count(model.TriDistributedLoads);
    model.NDL_B = Count(model.BeamDistributedLoads);
    model.QuadElements.assign(model.QuadConnectivity.size(), {});
    for (std::size_t e = 0; e < model.QuadElements.size(); ++e) { SetUpQuad(model, e); }
    model.TriElements.assign(model.TriConnectivity.size(), {});
    for (std::size_t e = 0; e < model.TriElements.size(); ++e) { SetUpTri(model, e); }
    model.BeamElements.assign(model.BeamConnectivity.size(), {});
    for (std::size_t e = 0; e < model.BeamElements.size(); ++e) { SetUpBeam(model, e); }
}

} // namespace tarnvexo

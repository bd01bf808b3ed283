#include "refine/LatticeMesh.h"

#include "elements/ModelSetUp.h"
#include "refine/NodeRenumbering.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <numeric>
#include <utility>

namespace tarnvexo {

namespace {

constexpr int IndexBits = 21;

std::uint64_t KeyOf(const LatticePoint& point)
{
    std::uint64_t key = 0;
    for (const int index : point) {
        assert(index >= 0 && index < (1 << IndexBits));
        key = (key << IndexBits) | std::uint64_t(index);
    }
    return key;
}

template <int Nodes>
void AddPressure(const ModelStore& model, const std::vector<std::array<int, Nodes>>& connectivity,
                 const ElementRange& elements, const LatticeMesh::Field& pressure,
                 std::vector<ShellDistributedLoad>& loads)
{
    for (int e = elements.begin; e < elements.end; ++e) {
        ShellDistributedLoad load;
        load.element = e;
        for (std::size_t i = 0; i < 3; ++i) {
            load.pressure[i] = pressure(model.NodeCoordinates[std::size_t(connectivity[std::size_t(e)][i])]);
        }
        if (load.pressure[0] != 0.0 || load.pressure[1] != 0.0 || load.pressure[2] != 0.0) {
            loads.push_back(load);
        }
    }
}

} // namespace

LatticeMesh::LatticeMesh(const Material& material, Placement where) : placement(std::move(where))
{
    model.Materials.push_back(material);
}

int LatticeMesh::AddThickness(double thickness)
{
    model.Thicknesses.push_back(thickness);
    return static_cast<int>(model.Thicknesses.size()) - 1;
}

BeamSectionRef LatticeMesh::AddTSection(const TBeamSection& section, double height)
{
    model.TBeamSections.push_back(section);
    return {TSection, static_cast<int>(model.TBeamSections.size()) - 1, height, false};
}

BeamSectionRef LatticeMesh::AddLSection(const LBeamSection& section, double height)
{
    model.LBeamSections.push_back(section);
    return {LSection, static_cast<int>(model.LBeamSections.size()) - 1, height, false};
}

BeamSectionRef LatticeMesh::AddTubeSection(const CBeamSection& section, double height)
{
    model.CBeamSections.push_back(section);
    return {CSection, static_cast<int>(model.CBeamSections.size()) - 1, height, false};
}

int LatticeMesh::NodeAt(const LatticePoint& point)
{
    const std::uint64_t key = KeyOf(point);
    const auto [entry, added] = nodeAtPoint.try_emplace(key, static_cast<int>(pointOfNode.size()));
    if (added) {
        pointOfNode.push_back(key);
        model.NodeCoordinates.push_back(placement(point));
    }
    return entry->second;
}

void LatticeMesh::AddQuad(const std::array<LatticePoint, QuadNodeCount>& corners, int thickness)
{
    model.QuadConnectivity.push_back({NodeAt(corners[0]), NodeAt(corners[1]), NodeAt(corners[2]), NodeAt(corners[3])});
    model.QuadProperties.push_back({0, thickness});
}

void LatticeMesh::AddTri(const std::array<LatticePoint, TriNodeCount>& corners, int thickness)
{
    model.TriConnectivity.push_back({NodeAt(corners[0]), NodeAt(corners[1]), NodeAt(corners[2])});
    model.TriProperties.push_back({0, thickness});
}

void LatticeMesh::AddBeam(const LatticePoint& from, const LatticePoint& to, const Vector3& orientation,
                          const BeamSectionRef& section)
{
    model.BeamConnectivity.push_back({NodeAt(from), NodeAt(to)});
    model.BeamProperties.push_back({0, orientation});
    model.BeamSectionRefs.push_back(section);
}

ElementRange LatticeMesh::AddPanel(const LatticePoint& corner, const LatticePoint& u, const LatticePoint& v, int countU,
                                   int countV, int thickness)
{
    const int begin = QuadCount();
    for (int j = 0; j < countV; ++j) {
        for (int i = 0; i < countU; ++i) {
            const LatticePoint p = Advanced(Advanced(corner, u, i), v, j);
            AddQuad({p, Advanced(p, u, 1), Advanced(Advanced(p, u, 1), v, 1), Advanced(p, v, 1)}, thickness);
        }
    }
    return {begin, QuadCount()};
}

ElementRange LatticeMesh::AddBeamLine(const LatticePoint& start, const LatticePoint& step, int count,
                                      const Vector3& orientation, const BeamSectionRef& section)
{
    const int begin = BeamCount();
    for (int i = 0; i < count; ++i) {
        AddBeam(Advanced(start, step, i), Advanced(start, step, i + 1), orientation, section);
    }
    return {begin, BeamCount()};
}

void LatticeMesh::Restrain(const LatticePoint& point, std::initializer_list<Dof> dofs)
{
    Restraint restraint;
    restraint.node = NodeAt(point);
    for (const Dof dof : dofs) { restraint.flags[dof] = 1; }
    model.Restraints.push_back(restraint);
}

void LatticeMesh::Support(const LatticePoint& a, const LatticePoint& b, const LatticePoint& c)
{
    Restrain(a, {DX, DY, DZ});
    Restrain(b, {DY, DZ});
    Restrain(c, {DZ});
}

void LatticeMesh::AddQuadPressure(const ElementRange& quads, const Field& pressure)
{
    AddPressure<QuadNodeCount>(model, model.QuadConnectivity, quads, pressure, model.QuadDistributedLoads);
}

void LatticeMesh::AddTriPressure(const ElementRange& tris, const Field& pressure)
{
    AddPressure<TriNodeCount>(model, model.TriConnectivity, tris, pressure, model.TriDistributedLoads);
}

void LatticeMesh::AddLineLoad(const ElementRange& beams, const Field& intensity)
{
    for (int e = beams.begin; e < beams.end; ++e) {
        const auto [node1, node2] = model.BeamConnectivity[std::size_t(e)];
        const double q1 = intensity(Position(node1)), q2 = intensity(Position(node2));
        if (q1 != 0.0 || q2 != 0.0) {
            model.BeamDistributedLoads.push_back({e, q1, q2});
        }
    }
}

ModelStore LatticeMesh::Finish()
{
    std::vector<int> inOrder(pointOfNode.size());
    std::iota(inOrder.begin(), inOrder.end(), 0);
    std::sort(inOrder.begin(), inOrder.end(),
              [&](int a, int b) { return pointOfNode[std::size_t(a)] < pointOfNode[std::size_t(b)]; });
    std::vector<int> newNumber(inOrder.size());
    for (std::size_t n = 0; n < inOrder.size(); ++n) { newNumber[std::size_t(inOrder[n])] = static_cast<int>(n); }
    PermuteNodes(model, newNumber);
    SetUpModel(model);
    return std::move(model);
}

} // namespace tarnvexo

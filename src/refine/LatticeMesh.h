// refine/LatticeMesh.h
// A model under construction whose nodes are addressed by integer triples: elements name lattice points, a point that
// several elements name is one node, and no tolerance decides what meets. Where a lattice point lies in space is the
// maker's formula. Nodes are numbered in order of their triples, first index first: a body that is long on its first
// index gets the narrow band that a pre-processor gives it.
//
// Errors: none reported; a support at a point without element makes a node of it. Indices are 0 ... 2²¹ − 1.
#pragma once

#include "core/ModelStore.h"

#include <array>
#include <cstdint>
#include <functional>
#include <unordered_map>
#include <vector>

namespace tarnvexo {

using LatticePoint = std::array<int, 3>;

// Elements of one kind that were added one after the other: begin ... end − 1.
struct ElementRange {
    int begin = 0;
    int end = 0;
};

class LatticeMesh {
public:
    using Placement = std::function<Vector3(const LatticePoint&)>;
    using Field = std::function<double(const Vector3&)>; // value at a point of space

    // One material for the whole model.
    LatticeMesh(const Material& material, Placement placement);

    int AddThickness(double thickness);
    // Height: BeamSecOz, the section's base (tube: its centre) above the node line.
    BeamSectionRef AddTSection(const TBeamSection& section, double height = 0.0);
    BeamSectionRef AddLSection(const LBeamSection& section, double height = 0.0);
    BeamSectionRef AddTubeSection(const CBeamSection& section, double height = 0.0);

    void AddQuad(const std::array<LatticePoint, QuadNodeCount>& corners, int thickness);
    void AddTri(const std::array<LatticePoint, TriNodeCount>& corners, int thickness);
    void AddBeam(const LatticePoint& from, const LatticePoint& to, const Vector3& orientation,
                 const BeamSectionRef& section);

    // countU × countV quadrilaterals from `corner` in steps u and v; e1 is along u, e3 along u × v.
    ElementRange AddPanel(const LatticePoint& corner, const LatticePoint& u, const LatticePoint& v, int countU,
                          int countV, int thickness);
    // count beams from `start`, one a step.
    ElementRange AddBeamLine(const LatticePoint& start, const LatticePoint& step, int count, const Vector3& orientation,
                             const BeamSectionRef& section);

    // Adds 3-2-1 supports: `a` is held in x, y, z; `b`, away from it along x, in y and z; `c`, away along y, in z.
    void Support(const LatticePoint& a, const LatticePoint& b, const LatticePoint& c);

    // Loads on elements by position: pressure along e3, line load along z' (force/length). Elements on which the field
    // vanishes get no load.
    void AddQuadPressure(const ElementRange& quads, const Field& pressure);
    void AddTriPressure(const ElementRange& tris, const Field& pressure);
    void AddLineLoad(const ElementRange& beams, const Field& intensity);

    int QuadCount() const { return static_cast<int>(model.QuadConnectivity.size()); }
    int TriCount() const { return static_cast<int>(model.TriConnectivity.size()); }
    int BeamCount() const { return static_cast<int>(model.BeamConnectivity.size()); }

    // Numbers the nodes and sets the model up. The last call.
    ModelStore Finish();

private:
    int NodeAt(const LatticePoint& point);
    void Restrain(const LatticePoint& point, std::initializer_list<Dof> dofs);
    const Vector3& Position(int node) const { return model.NodeCoordinates[std::size_t(node)]; }

    Placement placement;
    ModelStore model;
    std::vector<std::uint64_t> pointOfNode; // lattice points as keys that sort like the triples
    std::unordered_map<std::uint64_t, int> nodeAtPoint;
};

// point + count·step
constexpr LatticePoint Advanced(const LatticePoint& point, const LatticePoint& step, int count)
{
    return {point[0] + count * step[0], point[1] + count * step[1], point[2] + count * step[2]};
}

} // namespace tarnvexo

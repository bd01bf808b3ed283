// ExampleModel.h
// A model under construction: elements are given by the points of their corners, nodes follow from the points. Points
// closer than PointGrid are one node, so plates and beams that meet in a line are joined when their points agree.
// Sums of mass and loads let an example choose its loads such that they balance.
//
// Units: any consistent set. Numbers returned are positions in the tables, as in the model file.
// Errors: a load or support at a point that is no node ends the program with a message.
#pragma once

#include "core/ModelStore.h"
#include "elements/BeamSection.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tarnvexo::examples {

constexpr double PointGrid = 1e-6; // two points are one node when they round to the same multiple, per coordinate

struct NamedWebFlangeSection {
    std::string name;
    WebFlangeSection size;
};
struct NamedTubeSection {
    std::string name;
    CBeamSection size;
};

template <int Nodes> struct PlateRecord {
    std::array<int, Nodes> nodes;
    int thickness;
};

struct BeamRecord {
    std::array<int, BeamNodeCount> nodes;
    Vector3 orientation; // from the node line towards the flange
    BeamSectionRef section;
    double area;
    Vector3 centroidOffset; // section centroid relative to the node line, global axes
};

struct Resultant {
    Vector3 force = {};
    Vector3 moment = {}; // about the origin of the coordinates
};

// One pressure over an area, by position; positive presses against the plate's normal e3.
using PressureField = std::function<double(const Vector3&)>;

struct ExampleModel {
    Material material; // one for the whole model: volume and mass centroid are then the same point
    std::vector<double> thicknesses;
    std::vector<NamedWebFlangeSection> tSections;
    std::vector<NamedWebFlangeSection> lSections;
    std::vector<NamedTubeSection> tubeSections;
    std::vector<Vector3> nodes;
    std::vector<PlateRecord<QuadNodeCount>> quads;
    std::vector<PlateRecord<TriNodeCount>> tris;
    std::vector<BeamRecord> beams;
    std::vector<Restraint> restraints;
    std::vector<NodalForce> forces;
    std::vector<ShellDistributedLoad> quadLoads;
    std::vector<ShellDistributedLoad> triLoads;
    std::vector<BeamDistributedLoad> beamLoads;

    std::map<std::array<long long, 3>, int> nodeAtPoint;
};

// ---- tables -------------------------------------------------------------------------------------------------------

inline int AddThickness(ExampleModel& model, double thickness)
{
    model.thicknesses.push_back(thickness);
    return static_cast<int>(model.thicknesses.size()) - 1;
}

inline BeamSectionRef AddTSection(ExampleModel& model, const std::string& name, const TBeamSection& size)
{
    model.tSections.push_back({name, size});
    return {TSection, static_cast<int>(model.tSections.size()) - 1, 0.0, false};
}

inline BeamSectionRef AddLSection(ExampleModel& model, const std::string& name, const LBeamSection& size)
{
    model.lSections.push_back({name, size});
    return {LSection, static_cast<int>(model.lSections.size()) - 1, 0.0, false};
}

inline BeamSectionRef AddTubeSection(ExampleModel& model, const std::string& name, const CBeamSection& size)
{
    model.tubeSections.push_back({name, size});
    return {CSection, static_cast<int>(model.tubeSections.size()) - 1, 0.0, false};
}

// ---- nodes --------------------------------------------------------------------------------------------------------

inline std::array<long long, 3> GridKey(const Vector3& point)
{
    return {std::llround(point[0] / PointGrid), std::llround(point[1] / PointGrid), std::llround(point[2] / PointGrid)};
}

inline int AddNode(ExampleModel& model, const Vector3& point)
{
    const auto [entry, added] = model.nodeAtPoint.try_emplace(GridKey(point), static_cast<int>(model.nodes.size()));
    if (added) {
        model.nodes.push_back(point);
    }
    return entry->second;
}

inline int NodeAt(const ExampleModel& model, const Vector3& point)
{
    const auto entry = model.nodeAtPoint.find(GridKey(point));
    if (entry == model.nodeAtPoint.end()) {
        std::fprintf(stderr, "a load or support at (%g, %g, %g), but no element has a node there\n", point[0], point[1],
                     point[2]);
        std::exit(1);
    }
    return entry->second;
}

// ---- elements -----------------------------------------------------------------------------------------------------

// Corners in order around the plate; they are taken the other way round when e3 would not point towards `normal`. p4
// stays the fourth node, the one whose pressure follows from the others: a mirrored plate gets a mirrored load.
inline int AddQuad(ExampleModel& model, const Vector3& p1, const Vector3& p2, const Vector3& p3, const Vector3& p4,
                   const Vector3& normal, int thickness)
{
    const bool reversed = Dot(Cross(p2 - p1, p3 - p1), normal) < 0.0;
    const int n1 = AddNode(model, p1), n2 = AddNode(model, p2), n3 = AddNode(model, p3), n4 = AddNode(model, p4);
    model.quads.push_back({{reversed ? n3 : n1, n2, reversed ? n1 : n3, n4}, thickness});
    return static_cast<int>(model.quads.size()) - 1;
}

inline int AddTri(ExampleModel& model, const Vector3& p1, const Vector3& p2, const Vector3& p3, const Vector3& normal,
                  int thickness)
{
    const bool reversed = Dot(Cross(p2 - p1, p3 - p1), normal) < 0.0;
    const int n1 = AddNode(model, p1), n2 = AddNode(model, p2), n3 = AddNode(model, p3);
    model.tris.push_back({{reversed ? n3 : n1, n2, reversed ? n1 : n3}, thickness});
    return static_cast<int>(model.tris.size()) - 1;
}

// section.BeamSecOz is the height of the web's base above the node line: half the thickness of the plate below it.
inline int AddBeam(ExampleModel& model, const Vector3& p1, const Vector3& p2, const Vector3& orientation,
                   const BeamSectionRef& section)
{
    BeamElement beam;
    const auto row = static_cast<std::size_t>(section.BeamSecIndex);
    if (section.BeamSecType == TSection) {
        TBeamSetUp(beam, p1, p2, p1 + orientation, model.material, model.tSections[row].size, section.BeamSecOz);
    } else if (section.BeamSecType == LSection) {
        LBeamSetUp(beam, p1, p2, p1 + orientation, model.material, model.lSections[row].size, section.BeamSecOz,
                   section.BeamSecMirrored);
    } else {
        TubeBeamSetUp(beam, p1, p2, p1 + orientation, model.material, model.tubeSections[row].size, section.BeamSecOz);
    }
    Vector3 frame[3];
    BeamFrame(beam, frame);
    model.beams.push_back({{AddNode(model, p1), AddNode(model, p2)},
                           orientation,
                           section,
                           beam.section.A,
                           BeamCentroidOffset(beam, frame)});
    return static_cast<int>(model.beams.size()) - 1;
}

// The L whose flange points towards `flange`: it lies on the +y' = z' × x' side of the web unless it is mirrored.
inline BeamSectionRef WithFlangeTowards(BeamSectionRef section, const Vector3& p1, const Vector3& p2,
                                        const Vector3& orientation, const Vector3& flange)
{
    section.BeamSecMirrored = Dot(Cross(orientation, p2 - p1), flange) < 0.0;
    return section;
}

inline BeamSectionRef OnPlate(BeamSectionRef section, double plateThickness)
{
    section.BeamSecOz = 0.5 * plateThickness;
    return section;
}

// ---- supports and loads -------------------------------------------------------------------------------------------

inline void AddRestraint(ExampleModel& model, const Vector3& point, const std::array<int, DofsPerNode>& flags)
{
    Restraint restraint;
    restraint.node = NodeAt(model, point);
    for (int k = 0; k < DofsPerNode; ++k) { restraint.flags[k] = flags[static_cast<std::size_t>(k)]; }
    model.restraints.push_back(restraint);
}

// Forces on one node are one record.
inline void AddForce(ExampleModel& model, const Vector3& point, const Vector3& force, const Vector3& moment = {})
{
    const int node = NodeAt(model, point);
    auto record = std::find_if(model.forces.begin(), model.forces.end(),
                               [node](const NodalForce& one) { return one.node == node; });
    if (record == model.forces.end()) {
        record = model.forces.insert(record, {node, {}});
    }
    for (int k = 0; k < 3; ++k) {
        record->components[DX + k] += force[k];
        record->components[RX + k] += moment[k];
    }
}

inline void AddQuadPressure(ExampleModel& model, int quad, const PressureField& pressure)
{
    const auto& corners = model.quads[static_cast<std::size_t>(quad)].nodes;
    ShellDistributedLoad load;
    load.element = quad;
    for (std::size_t i = 0; i < 3; ++i) {
        load.pressure[i] = -pressure(model.nodes[static_cast<std::size_t>(corners[i])]);
    }
    model.quadLoads.push_back(load);
}

// ---- sums ---------------------------------------------------------------------------------------------------------

inline Vector3 Point(const ExampleModel& model, int node)
{
    return model.nodes[static_cast<std::size_t>(node)];
}

inline double BeamLength(const ExampleModel& model, const BeamRecord& beam)
{
    return Length(Point(model, beam.nodes[1]) - Point(model, beam.nodes[0]));
}

struct MassSum {
    double mass = 0.0;
    Vector3 centroid = {};
};

inline MassSum MassAndCentroid(const ExampleModel& model)
{
    double volume = 0.0;
    Vector3 first = {}; // ∫ r dV
    const auto add = [&](double part, const Vector3& centre) {
        volume += part;
        first = first + part * centre;
    };
    const auto addTriangle = [&](int n1, int n2, int n3, double thickness) {
        const Vector3 p1 = Point(model, n1), p2 = Point(model, n2), p3 = Point(model, n3);
        add(0.5 * Length(Cross(p2 - p1, p3 - p1)) * thickness, (p1 + p2 + p3) / 3.0);
    };
    for (const auto& quad : model.quads) {
        const double thickness = model.thicknesses[static_cast<std::size_t>(quad.thickness)];
        addTriangle(quad.nodes[0], quad.nodes[1], quad.nodes[2], thickness);
        addTriangle(quad.nodes[0], quad.nodes[2], quad.nodes[3], thickness);
    }
    for (const auto& tri : model.tris) {
        addTriangle(tri.nodes[0], tri.nodes[1], tri.nodes[2],
                    model.thicknesses[static_cast<std::size_t>(tri.thickness)]);
    }
    for (const auto& beam : model.beams) {
        add(BeamLength(model, beam) * beam.area,
            0.5 * (Point(model, beam.nodes[0]) + Point(model, beam.nodes[1])) + beam.centroidOffset);
    }
    return {model.material.Density * volume, first / volume};
}

// Resultant of all loads; quads must be convex and flat. The pressure of a quad is linear over its plane.
inline Resultant LoadResultant(const ExampleModel& model)
{
    Resultant sum;
    const auto add = [&](const Vector3& point, const Vector3& force) {
        sum.force = sum.force + force;
        sum.moment = sum.moment + Cross(point, force);
    };
    // ∫ q·r dA over a triangle with q and r linear: A/12·(Σq·Σr + Σ q·r); all of it acts along the unit normal.
    const auto addPressure = [&](const Vector3(&p)[3], const double(&q)[3]) {
        const Vector3 twiceArea = Cross(p[1] - p[0], p[2] - p[0]);
        const double total = q[0] + q[1] + q[2];
        const Vector3 arm = total * (p[0] + p[1] + p[2]) + q[0] * p[0] + q[1] * p[1] + q[2] * p[2];
        sum.force = sum.force + (total / 6.0) * twiceArea;
        sum.moment = sum.moment + Cross(arm / 24.0, twiceArea);
    };

    for (const NodalForce& load : model.forces) {
        const double* f = load.components;
        add(Point(model, load.node), {f[DX], f[DY], f[DZ]});
        sum.moment = sum.moment + Vector3{f[RX], f[RY], f[RZ]};
    }
    for (const ShellDistributedLoad& load : model.quadLoads) {
        const auto& corners = model.quads[static_cast<std::size_t>(load.element)].nodes;
        const Vector3 p1 = Point(model, corners[0]), p2 = Point(model, corners[1]), p3 = Point(model, corners[2]),
                      p4 = Point(model, corners[3]);
        // p4 − p1 = α·(p2 − p1) + β·(p3 − p1) gives the pressure at the fourth corner.
        const Vector3 normal = Cross(p2 - p1, p3 - p1);
        const double alpha = Dot(Cross(p4 - p1, p3 - p1), normal) / Dot(normal, normal);
        const double beta = Dot(Cross(p2 - p1, p4 - p1), normal) / Dot(normal, normal);
        const double* q = load.pressure;
        const double q4 = q[0] + alpha * (q[1] - q[0]) + beta * (q[2] - q[0]);
        addPressure({p1, p2, p3}, {q[0], q[1], q[2]});
        addPressure({p1, p3, p4}, {q[0], q[2], q4});
    }
    for (const ShellDistributedLoad& load : model.triLoads) {
        const auto& corners = model.tris[static_cast<std::size_t>(load.element)].nodes;
        const double* q = load.pressure;
        addPressure({Point(model, corners[0]), Point(model, corners[1]), Point(model, corners[2])}, {q[0], q[1], q[2]});
    }
    for (const BeamDistributedLoad& load : model.beamLoads) {
        const BeamRecord& beam = model.beams[static_cast<std::size_t>(load.element)];
        const Vector3 p1 = Point(model, beam.nodes[0]), p2 = Point(model, beam.nodes[1]);
        const Vector3 axis = p2 - p1;
        const Vector3 up = Normalised(Cross(axis, Cross(beam.orientation, axis))); // z'
        add(p1, (BeamLength(model, beam) * (2.0 * load.q1 + load.q2) / 6.0) * up);
        add(p2, (BeamLength(model, beam) * (load.q1 + 2.0 * load.q2) / 6.0) * up);
    }
    return sum;
}

// ---- order --------------------------------------------------------------------------------------------------------

// Numbers the nodes plane by plane along one axis (0 = x, 1 = y, 2 = z), by the other two coordinates within a plane.
// A column of the stiffness matrix then reaches back over one plane only: short for a body that is long on this axis.
inline void NumberNodesAlong(ExampleModel& model, std::size_t axis)
{
    std::map<std::array<long long, 3>, int> order; // sorted by key
    for (std::size_t n = 0; n < model.nodes.size(); ++n) {
        const std::array<long long, 3> key = GridKey(model.nodes[n]);
        order[{key[axis], key[(axis + 1) % 3], key[(axis + 2) % 3]}] = static_cast<int>(n);
    }
    std::vector<int> newNumber(model.nodes.size());
    std::vector<Vector3> sorted;
    for (const auto& [key, node] : order) {
        newNumber[static_cast<std::size_t>(node)] = static_cast<int>(sorted.size());
        sorted.push_back(Point(model, node));
    }
    model.nodes = sorted;

    const auto renumber = [&](int& node) { node = newNumber[static_cast<std::size_t>(node)]; };
    for (auto& quad : model.quads) {
        for (int& node : quad.nodes) { renumber(node); }
    }
    for (auto& tri : model.tris) {
        for (int& node : tri.nodes) { renumber(node); }
    }
    for (auto& beam : model.beams) {
        for (int& node : beam.nodes) { renumber(node); }
    }
    for (auto& restraint : model.restraints) { renumber(restraint.node); }
    for (auto& force : model.forces) { renumber(force.node); }
    for (auto& [key, node] : model.nodeAtPoint) { renumber(node); }
}

} // namespace tarnvexo::examples

// JibExample.h
// Jib of a quay crane: a lattice of tubes with a triangular cross-section, two lower chords, one upper chord, two
// braces from every lower node to each upper neighbour, battens and diagonals between the lower chords. x along the jib
// from the heel, y across, z up; origin midway between the two heel pins. Units m, N, kg.
//
// Loads: the hook load at the two tip nodes, 5 % of it sideways (a swinging load), the jib's own weight, the pull of
// the tie that holds it up, and the forces of the two heel pins. Tie and pins follow from equilibrium, so nothing
// accelerates: inertia relief finds zeros, and the supports at pins and tie carry nothing.
#pragma once

#include "ExampleModel.h"

#include <vector>

namespace tarnvexo::examples {

namespace jib {

constexpr double Gravity = 9.81;      // m/s²
constexpr double HookLoad = 60e3;     // N, about 6.1 t
constexpr double SideFraction = 0.05; // of the hook load, along +y
constexpr int BayCount = 8;
constexpr double Bay = 1.8;                     // m
constexpr double HalfWidth = 0.6;               // m: lower chords at y = ±0.6
constexpr double Height = 1.2;                  // m: upper chord above the lower ones
constexpr int TieBay = 5;                       // the tie holds the upper node of this bay
constexpr Vector3 TowerHead = {-1.2, 0.0, 6.0}; // upper end of the tie

inline Vector3 LowerNode(int k, double side)
{
    return {Bay * k, side * HalfWidth, 0.0};
}
inline Vector3 UpperNode(int bay)
{
    return {Bay * (bay + 0.5), 0.0, Height};
}

// Half the weight of every beam at each of its ends.
inline void AddOwnWeight(ExampleModel& model)
{
    std::vector<double> weight(model.nodes.size(), 0.0);
    for (const BeamRecord& beam : model.beams) {
        for (const int node : beam.nodes) {
            weight[static_cast<std::size_t>(node)] +=
                0.5 * BeamLength(model, beam) * beam.area * model.material.Density * Gravity;
        }
    }
    for (std::size_t n = 0; n < weight.size(); ++n) { AddForce(model, model.nodes[n], {0.0, 0.0, -weight[n]}); }
}

// Tie force from the moments about the heel pins, pin forces from the rest of the equilibrium.
inline void AddTieAndPins(ExampleModel& model)
{
    const Vector3 tieNode = UpperNode(TieBay), tieDirection = Normalised(TowerHead - tieNode);
    const double tieForce = -LoadResultant(model).moment[1] / Cross(tieNode, tieDirection)[1];
    AddForce(model, tieNode, tieForce * tieDirection);

    // Pins at (0, ±b, 0): half of each force, and couples of ±Mx/(2b) along z and ∓Mz/(2b) along x.
    const Resultant rest = LoadResultant(model);
    for (const double side : {1.0, -1.0}) {
        Vector3 pin = -0.5 * rest.force;
        pin[0] += side * 0.5 * rest.moment[2] / HalfWidth;
        pin[2] -= side * 0.5 * rest.moment[0] / HalfWidth;
        AddForce(model, LowerNode(0, side), pin);
    }
}

} // namespace jib

inline ExampleModel JibExample()
{
    using namespace jib;
    ExampleModel model;
    model.material = {2.06e11, 0.3, 7850.0}; // steel
    const BeamSectionRef lowerChord = AddTubeSection(model, "lower chord", {0.070, 0.008});
    const BeamSectionRef upperChord = AddTubeSection(model, "upper chord", {0.080, 0.010});
    const BeamSectionRef brace = AddTubeSection(model, "brace", {0.045, 0.005});
    const BeamSectionRef lacing = AddTubeSection(model, "batten, lower diagonal", {0.040, 0.004});
    const Vector3 up = {0.0, 0.0, 1.0};

    for (int k = 0; k <= BayCount; ++k) { AddBeam(model, LowerNode(k, 1.0), LowerNode(k, -1.0), up, lacing); }
    for (int bay = 0; bay < BayCount; ++bay) {
        for (const double side : {1.0, -1.0}) {
            AddBeam(model, LowerNode(bay, side), LowerNode(bay + 1, side), up, lowerChord);
            AddBeam(model, LowerNode(bay, side), UpperNode(bay), up, brace);
            AddBeam(model, UpperNode(bay), LowerNode(bay + 1, side), up, brace);
        }
        const double from = bay % 2 == 0 ? 1.0 : -1.0; // the diagonals zigzag
        AddBeam(model, LowerNode(bay, from), LowerNode(bay + 1, -from), up, lacing);
        if (bay > 0) {
            AddBeam(model, UpperNode(bay - 1), UpperNode(bay), up, upperChord);
        }
    }

    for (const double side : {1.0, -1.0}) {
        AddForce(model, LowerNode(BayCount, side), {0.0, 0.5 * SideFraction * HookLoad, -0.5 * HookLoad});
    }
    AddOwnWeight(model);
    AddTieAndPins(model);

    // Pins and tie hold the jib without redundancy: three directions, two, one.
    AddRestraint(model, LowerNode(0, 1.0), {1, 1, 1, 0, 0, 0});
    AddRestraint(model, LowerNode(0, -1.0), {1, 0, 1, 0, 0, 0});
    AddRestraint(model, UpperNode(TieBay), {0, 0, 1, 0, 0, 0});
    NumberNodesAlong(model, 0);
    return model;
}

} // namespace tarnvexo::examples

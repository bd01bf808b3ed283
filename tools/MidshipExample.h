// MidshipExample.h
// Midship part of a cargo ship, one hold length from mid-hold to mid-hold with the transverse bulkhead in the middle:
// double bottom with floors and girders, bilge, sides, deck with the cross deck between two hatches, hatch coamings.
// Longitudinals are L beams (mirrored on one side, so that the ship is symmetric), frames and deck beams are T beams,
// pillars are tubes. x forward, y to port, z up from the keel; origin on the keel below the bulkhead. Units m, N, kg.
//
// Loads: crest of a long wave (water level constant over the hold), a heap of cargo on the inner bottom, hatch covers
// on the deck girders, and at both cut ends the normal forces by which the rest of the ship bends this part (hogging).
// The cargo is chosen such that the water carries exactly cargo, hatch covers and steel. Inertia relief then finds an
// upward acceleration of 9.81 m/s², and the inertial loads are the weight of the steel.
#pragma once

#include "ExampleModel.h"

#include <cmath>
#include <cstdlib>
#include <map>
#include <utility>
#include <vector>

namespace tarnvexo::examples {

namespace midship {

constexpr double Gravity = 9.81;         // m/s²
constexpr double SeaDensity = 1025.0;    // kg/m³
constexpr double WaterLevel = 6.8;       // m above the keel: draught 6.0 and a crest of 0.8
constexpr double HullMoment = 200e6;     // N·m; positive: hogging, tension in the deck
constexpr double HatchCoverLoad = 60e3;  // N per metre of deck girder beside a hatch
constexpr double HeapHalfBreadth = 10.0; // m: cargo pressure falls linearly from the centre line to 0 at this |y|

constexpr double Bay = 1.2; // m: distance of stations; floors and frames stand on every second one
constexpr int StationCount = 21;
constexpr int BulkheadStation = 10;
constexpr int AftHatchEnd = 8, FwdHatchEnd = 12; // between them the deck goes from side to side

constexpr double HalfBreadth = 8.0;
constexpr double BilgeRadius = 1.2;
constexpr double Spacing = 0.85; // m: distance of the longitudinals of the bottom
constexpr int FlatSpacings = 8;  // 8·0.85 = 6.8 m of flat bottom, then the bilge
constexpr int HatchSpacings = 6; // half breadth of the hatches 5.1 m
constexpr double InnerBottomZ = 1.2;
constexpr double LevelHeight = 0.8; // m: distance of the longitudinals of the side
constexpr int DeckLevel = 10;       // deck at 1.2 + 10·0.8 = 9.2 m
constexpr int WaterLine = 7;        // 1.2 + 7·0.8 = 6.8 m
constexpr double CoamingHeight = 1.0;

// A point of the half section, port side. A line of them, swept along the ship, is a strake of plating.
struct SectionPoint {
    double y, z;
};
using SectionLine = std::vector<SectionPoint>;

inline double LevelZ(int level)
{
    return InnerBottomZ + LevelHeight * level;
}

// side: +1 port, −1 starboard
inline Vector3 At(int station, const SectionPoint& p, double side)
{
    return {Bay * (station - BulkheadStation), side * p.y, p.z};
}

// Points at multiples of the spacing, from first to last in either direction.
inline SectionLine HorizontalLine(int first, int last, double z)
{
    SectionLine line;
    const int step = first <= last ? 1 : -1;
    for (int k = first; k != last + step; k += step) { line.push_back({Spacing * k, z}); }
    return line;
}

inline SectionLine SideLine(int firstLevel, int lastLevel)
{
    SectionLine line;
    for (int level = firstLevel; level <= lastLevel; ++level) { line.push_back({HalfBreadth, LevelZ(level)}); }
    return line;
}

inline SectionLine BilgeLine() // a quarter circle in three facets
{
    const double sin60 = std::sqrt(0.75), centre = HalfBreadth - BilgeRadius;
    return {{centre, 0.0},
            {centre + 0.5 * BilgeRadius, BilgeRadius - sin60 * BilgeRadius},
            {centre + sin60 * BilgeRadius, 0.5 * BilgeRadius},
            {HalfBreadth, BilgeRadius}};
}

inline SectionLine InnerBottomLine()
{
    SectionLine line = HorizontalLine(0, FlatSpacings, InnerBottomZ);
    line.push_back({BilgeLine()[1].y, InnerBottomZ});
    line.push_back({HalfBreadth, InnerBottomZ});
    return line;
}

inline SectionLine SideDeckLine()
{
    SectionLine line = {{HalfBreadth, LevelZ(DeckLevel)}, {BilgeLine()[1].y, LevelZ(DeckLevel)}};
    for (const SectionPoint& p : HorizontalLine(FlatSpacings, HatchSpacings, LevelZ(DeckLevel))) { line.push_back(p); }
    return line;
}

inline SectionLine CrossDeckLine()
{
    return HorizontalLine(HatchSpacings, 0, LevelZ(DeckLevel));
}

inline SectionLine GirderLine(int spacings)
{
    return {{Spacing * spacings, 0.0}, {Spacing * spacings, 0.5 * InnerBottomZ}, {Spacing * spacings, InnerBottomZ}};
}

inline SectionLine CoamingLine()
{
    return {{Spacing * HatchSpacings, LevelZ(DeckLevel)}, {Spacing * HatchSpacings, LevelZ(DeckLevel) + CoamingHeight}};
}

struct Plate {
    int index;
    double thickness;
};

inline Plate AddPlate(ExampleModel& model, double thickness)
{
    return {AddThickness(model, thickness), thickness};
}

// Stations first to last, one strake of quads on every segment of the line, e3 towards `outside` (given for port).
// Returns the quads.
inline std::vector<int> Sweep(ExampleModel& model, const SectionLine& line, double side, int first, int last,
                              const Vector3& outside, const Plate& plate)
{
    const Vector3 normal = {outside[0], side * outside[1], outside[2]};
    std::vector<int> quads;
    for (int s = first; s < last; ++s) {
        for (std::size_t i = 0; i + 1 < line.size(); ++i) {
            quads.push_back(AddQuad(model, At(s, line[i], side), At(s + 1, line[i], side), At(s + 1, line[i + 1], side),
                                    At(s, line[i + 1], side), normal, plate.index));
        }
    }
    return quads;
}

// A longitudinal from station to station on the inside of a plate; the flange of an L points towards `flange`.
inline std::vector<int> AddLongitudinal(ExampleModel& model, const SectionPoint& p, double side, int first, int last,
                                        const Vector3& inside, const Vector3& flange, const BeamSectionRef& section)
{
    const Vector3 orientation = {inside[0], side * inside[1], inside[2]};
    const Vector3 flangeSide = {flange[0], side * flange[1], flange[2]};
    std::vector<int> beams;
    for (int s = first; s < last; ++s) {
        const Vector3 p1 = At(s, p, side), p2 = At(s + 1, p, side);
        BeamSectionRef placed = section;
        if (section.BeamSecType == LSection) {
            placed = WithFlangeTowards(section, p1, p2, orientation, flangeSide);
        }
        beams.push_back(AddBeam(model, p1, p2, orientation, placed));
    }
    return beams;
}

// A frame in the plane of a station, along a line of the section.
inline void AddFrame(ExampleModel& model, const SectionLine& line, double side, int station, const Vector3& inside,
                     const BeamSectionRef& section)
{
    const Vector3 orientation = {inside[0], side * inside[1], inside[2]};
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        AddBeam(model, At(station, line[i], side), At(station, line[i + 1], side), orientation, section);
    }
}

// One half of a floor: quads between bottom and inner bottom, and the piece above the bilge with its triangle.
inline void AddFloor(ExampleModel& model, double side, int station, const Plate& plate)
{
    const Vector3 forward = {1.0, 0.0, 0.0};
    const auto quad = [&](const SectionPoint& a, const SectionPoint& b, const SectionPoint& c, const SectionPoint& d) {
        AddQuad(model, At(station, a, side), At(station, b, side), At(station, c, side), At(station, d, side), forward,
                plate.index);
    };
    for (int k = 0; k < FlatSpacings; ++k) {
        const SectionLine left = GirderLine(k), right = GirderLine(k + 1);
        quad(left[0], right[0], right[1], left[1]);
        quad(left[1], right[1], right[2], left[2]);
    }
    const SectionLine end = GirderLine(FlatSpacings), bilge = BilgeLine();
    const SectionPoint middle = {bilge[1].y, 0.5 * InnerBottomZ}, top = {bilge[1].y, InnerBottomZ};
    quad(end[0], bilge[1], middle, end[1]);
    quad(end[1], middle, top, end[2]);
    quad(middle, bilge[2], bilge[3], top);
    AddTri(model, At(station, bilge[1], side), At(station, bilge[2], side), At(station, middle, side), forward,
           plate.index);
}

// Triangular brackets at the foot and at the head of a side frame.
inline void AddKnees(ExampleModel& model, double side, int station, const Plate& plate)
{
    const double inboard = BilgeLine()[1].y;
    for (const auto& [corner, neighbour] : {std::pair{0, 1}, std::pair{DeckLevel, DeckLevel - 1}}) {
        AddTri(model, At(station, {HalfBreadth, LevelZ(corner)}, side),
               At(station, {HalfBreadth, LevelZ(neighbour)}, side), At(station, {inboard, LevelZ(corner)}, side),
               {1.0, 0.0, 0.0}, plate.index);
    }
}

// Triangular stay of the coaming on the deck beside the hatch.
inline void AddCoamingStay(ExampleModel& model, double side, int station, const Plate& plate)
{
    const SectionPoint foot = CoamingLine()[0], top = CoamingLine()[1];
    AddTri(model, At(station, foot, side), At(station, {foot.y + Spacing, foot.z}, side), At(station, top, side),
           {1.0, 0.0, 0.0}, plate.index);
}

// Half of the transverse bulkhead, from the inner bottom to the deck, with vertical T stiffeners on its forward side.
inline void AddBulkhead(ExampleModel& model, double side, const Plate& plate, const BeamSectionRef& stiffener)
{
    const Vector3 forward = {1.0, 0.0, 0.0};
    const SectionLine foot = InnerBottomLine();
    for (int level = 0; level < DeckLevel; ++level) {
        const auto at = [&](std::size_t i, int up) {
            return At(BulkheadStation, {foot[i].y, LevelZ(level + up)}, side);
        };
        for (std::size_t i = 0; i + 1 < foot.size(); ++i) {
            AddQuad(model, at(i, 0), at(i + 1, 0), at(i + 1, 1), at(i, 1), forward, plate.index);
        }
        for (std::size_t i = 0; i <= FlatSpacings; i += 2) {
            const bool onCentreLine = i == 0;
            if (onCentreLine && side < 0.0) {
                continue;
            }
            AddBeam(model, at(i, 0), at(i, 1), forward, OnPlate(stiffener, plate.thickness));
        }
    }
}

// Coaming across the end of a hatch with the flat bar on its upper edge; `outside` looks away from the hatch.
inline void AddHatchEndCoaming(ExampleModel& model, double side, int station, const Vector3& outside,
                               const Plate& plate, const BeamSectionRef& flatBar)
{
    const SectionLine foot = CrossDeckLine();
    for (std::size_t i = 0; i + 1 < foot.size(); ++i) {
        const Vector3 up = {0.0, 0.0, CoamingHeight};
        const Vector3 p1 = At(station, foot[i], side), p2 = At(station, foot[i + 1], side);
        AddQuad(model, p1, p2, p2 + up, p1 + up, outside, plate.index);
        AddBeam(model, p1 + up, p2 + up, outside, OnPlate(flatBar, plate.thickness));
    }
}

// A piece of the material that is cut through at an end of the model: it pulls at `point` and is held by `node`.
struct CutArea {
    int node;
    Vector3 point;
    double area;
};

// Half of a strake's cut belongs to each of its two nodes; a longitudinal's lies in its section centroid.
inline std::vector<CutArea> CutAreas(const ExampleModel& model, double x)
{
    std::vector<CutArea> cuts;
    const auto isCut = [&](int node) { return std::fabs(Point(model, node)[0] - x) < PointGrid; };
    for (const auto& quad : model.quads) {
        std::vector<int> edge;
        for (const int node : quad.nodes) {
            if (isCut(node)) {
                edge.push_back(node);
            }
        }
        if (edge.size() != 2) {
            continue;
        } // away from this end, or a floor that lies in it
        const double width = Length(Point(model, edge[1]) - Point(model, edge[0]));
        const double thickness = model.thicknesses[static_cast<std::size_t>(quad.thickness)];
        for (const int node : edge) { cuts.push_back({node, Point(model, node), 0.5 * width * thickness}); }
    }
    for (const auto& beam : model.beams) {
        if (isCut(beam.nodes[0]) != isCut(beam.nodes[1])) {
            const int node = isCut(beam.nodes[0]) ? beam.nodes[0] : beam.nodes[1];
            cuts.push_back({node, Point(model, node) + beam.centroidOffset, beam.area});
        }
    }
    return cuts;
}

// The rest of the ship bends this part: normal stress M·(z − zN)/I on a cut end, as a force and a moment on every node
// there. With neutral axis zN and I of just these areas the forces have no resultant but the moment.
inline void AddHullMoment(ExampleModel& model, int station)
{
    const double x = Bay * (station - BulkheadStation);
    const std::vector<CutArea> cuts = CutAreas(model, x);
    double A = 0.0, Az = 0.0, Azz = 0.0;
    for (const CutArea& cut : cuts) {
        A += cut.area;
        Az += cut.area * cut.point[2];
        Azz += cut.area * cut.point[2] * cut.point[2];
    }
    const double zN = Az / A, I = Azz - Az * zN;

    std::map<int, Resultant> atNode; // moment about the node
    for (const CutArea& cut : cuts) {
        const double stress = HullMoment * (cut.point[2] - zN) / I;
        const Vector3 force = {(x > 0.0 ? 1.0 : -1.0) * stress * cut.area, 0.0, 0.0};
        Resultant& sum = atNode[cut.node];
        sum.force = sum.force + force;
        sum.moment = sum.moment + Cross(cut.point - Point(model, cut.node), force);
    }
    for (const auto& [node, sum] : atNode) { AddForce(model, Point(model, node), sum.force, sum.moment); }
}

} // namespace midship

inline ExampleModel MidshipExample()
{
    using namespace midship;
    ExampleModel model;
    model.material = {2.06e11, 0.3, 7850.0}; // steel

    const Plate outer = AddPlate(model, 0.016), side = AddPlate(model, 0.014), innerBottom = AddPlate(model, 0.015),
                deck = AddPlate(model, 0.020), floor = AddPlate(model, 0.011), bulkhead = AddPlate(model, 0.012);
    const BeamSectionRef frame = AddTSection(model, "side frame, deck beam", {0.60, 0.012, 0.20, 0.020});
    const BeamSectionRef deckGirder = AddTSection(model, "deck girder, hatch end beam", {0.60, 0.014, 0.25, 0.025});
    const BeamSectionRef bulkheadStiffener = AddTSection(model, "bulkhead stiffener", {0.30, 0.010, 0.12, 0.014});
    const BeamSectionRef flatBar = AddTSection(model, "flat bar on the coaming", {0.25, 0.020, 0.0, 0.0});
    const BeamSectionRef bottomLong = AddLSection(model, "bottom longitudinal", {0.30, 0.011, 0.09, 0.016});
    const BeamSectionRef sideLong = AddLSection(model, "side and deck longitudinal", {0.25, 0.010, 0.09, 0.015});
    const BeamSectionRef pillar = AddTubeSection(model, "pillar", {0.16, 0.012});

    const Vector3 down = {0.0, 0.0, -1.0}, up = {0.0, 0.0, 1.0}, outboard = {0.0, 1.0, 0.0}, inboard = {0.0, -1.0, 0.0};
    const int aft = 0, fwd = StationCount - 1;

    std::vector<int> wetQuads, cargoQuads, hatchGirders;
    const auto append = [](std::vector<int>& list, const std::vector<int>& more) {
        list.insert(list.end(), more.begin(), more.end());
    };

    for (const double s : {1.0, -1.0}) { // port, starboard
        const bool port = s > 0.0;       // what stands on the centre line is made once, with the port side

        // Plating, e3 outwards: from the water, from the double bottom into the hold, from the hold upwards.
        append(wetQuads, Sweep(model, HorizontalLine(0, FlatSpacings, 0.0), s, aft, fwd, down, outer));
        append(wetQuads, Sweep(model, BilgeLine(), s, aft, fwd, outboard + down, outer));
        append(wetQuads, Sweep(model, SideLine(0, WaterLine), s, aft, fwd, outboard, side));
        Sweep(model, SideLine(WaterLine, DeckLevel), s, aft, fwd, outboard, side);
        append(cargoQuads, Sweep(model, InnerBottomLine(), s, aft, fwd, up, innerBottom));
        Sweep(model, SideDeckLine(), s, aft, fwd, up, deck);
        Sweep(model, CrossDeckLine(), s, AftHatchEnd, FwdHatchEnd, up, deck);
        Sweep(model, CoamingLine(), s, aft, AftHatchEnd, outboard, deck);
        Sweep(model, CoamingLine(), s, FwdHatchEnd, fwd, outboard, deck);
        for (const int girder : {0, 3, HatchSpacings}) {
            if (girder > 0 || port) {
                Sweep(model, GirderLine(girder), s, aft, fwd, outboard, floor);
            }
        }

        // Longitudinals on the inside of the plating; flanges towards the centre line, those of the side downwards.
        for (const int k : {1, 2, 4, 5, 7, 8}) {
            AddLongitudinal(model, {Spacing * k, 0.0}, s, aft, fwd, up, inboard, OnPlate(bottomLong, outer.thickness));
            AddLongitudinal(model, {Spacing * k, InnerBottomZ}, s, aft, fwd, down, inboard,
                            OnPlate(bottomLong, innerBottom.thickness));
        }
        for (int level = 1; level < DeckLevel; ++level) {
            AddLongitudinal(model, {HalfBreadth, LevelZ(level)}, s, aft, fwd, inboard, down,
                            OnPlate(sideLong, side.thickness));
        }
        for (const int k : {7, 8}) {
            AddLongitudinal(model, {Spacing * k, LevelZ(DeckLevel)}, s, aft, fwd, down, inboard,
                            OnPlate(sideLong, deck.thickness));
        }
        const SectionPoint hatchSide = CoamingLine()[0], coamingTop = CoamingLine()[1];
        const BeamSectionRef girder = OnPlate(deckGirder, deck.thickness);
        append(hatchGirders, AddLongitudinal(model, hatchSide, s, aft, AftHatchEnd, down, inboard, girder));
        AddLongitudinal(model, hatchSide, s, AftHatchEnd, FwdHatchEnd, down, inboard, girder);
        append(hatchGirders, AddLongitudinal(model, hatchSide, s, FwdHatchEnd, fwd, down, inboard, girder));
        const BeamSectionRef edge = OnPlate(flatBar, deck.thickness);
        AddLongitudinal(model, coamingTop, s, aft, AftHatchEnd, outboard, up, edge);
        AddLongitudinal(model, coamingTop, s, FwdHatchEnd, fwd, outboard, up, edge);

        // Transverse members: floors everywhere, frames and deck beams except where the bulkhead stands.
        for (int station = aft; station <= fwd; station += 2) {
            AddFloor(model, s, station, floor);
            if (station == BulkheadStation) {
                continue;
            }
            const bool hatchEnd = station == AftHatchEnd || station == FwdHatchEnd;
            AddFrame(model, SideLine(0, DeckLevel), s, station, inboard, OnPlate(frame, side.thickness));
            AddFrame(model, SideDeckLine(), s, station, down, OnPlate(hatchEnd ? deckGirder : frame, deck.thickness));
            AddKnees(model, s, station, floor);
            AddCoamingStay(model, s, station, floor);
        }
        for (const int station : {AftHatchEnd, FwdHatchEnd}) {
            const Vector3 fromHatch = {station < BulkheadStation ? 1.0 : -1.0, 0.0, 0.0};
            AddFrame(model, CrossDeckLine(), s, station, down, OnPlate(deckGirder, deck.thickness));
            AddHatchEndCoaming(model, s, station, fromHatch, deck, flatBar);
        }
        AddBulkhead(model, s, bulkhead, bulkheadStiffener);

        // Pillars below the corners and the middle of the hatch sides, on the crossing of a girder and a floor.
        for (const int station : {4, AftHatchEnd, FwdHatchEnd, 16}) {
            AddBeam(model, At(station, {hatchSide.y, InnerBottomZ}, s), At(station, hatchSide, s), {1.0, 0.0, 0.0},
                    pillar);
        }
    }

    // Nominal supports on the centre line, two on the stiff bulkhead: no rigid motion is left, no reaction arises, and
    // the displacements stay symmetric.
    AddRestraint(model, At(BulkheadStation, {0.0, 0.0}, 1.0), {1, 1, 1, 0, 0, 0});
    AddRestraint(model, At(BulkheadStation, {0.0, LevelZ(DeckLevel)}, 1.0), {1, 1, 0, 0, 0, 0});
    AddRestraint(model, At(fwd, {0.0, 0.0}, 1.0), {0, 1, 0, 0, 0, 0});

    for (const int quad : wetQuads) {
        AddQuadPressure(model, quad, [](const Vector3& p) { return SeaDensity * Gravity * (WaterLevel - p[2]); });
    }
    for (const int beam : hatchGirders) { model.beamLoads.push_back({beam, HatchCoverLoad, HatchCoverLoad}); }

    // Cargo: p = p0·(1 − |y|/c), so ∫p dA = p0·L·(2B − B²/c) with B the half breadth, c that of the heap.
    const double cargoWeight = LoadResultant(model).force[2] - MassAndCentroid(model).mass * Gravity;
    const double length = Bay * (StationCount - 1);
    const double p0 = cargoWeight / length / (2.0 * HalfBreadth - HalfBreadth * HalfBreadth / HeapHalfBreadth);
    for (const int quad : cargoQuads) {
        AddQuadPressure(model, quad, [p0](const Vector3& p) { return p0 * (1.0 - std::fabs(p[1]) / HeapHalfBreadth); });
    }

    AddHullMoment(model, aft);
    AddHullMoment(model, fwd);
    NumberNodesAlong(model, 0);
    return model;
}

} // namespace tarnvexo::examples

// WingExample.h
// Wing box of a twin-engined aircraft from tip to tip, flying free: skins, two spars and ribs of plates, three
// stringers (T beams) on the inside of each skin. Sweep, taper and dihedral are linear from the root, so all generators
// of a half wing meet in one point and every quad is flat. x aft, y to starboard, z up; origin at the root, front spar.
// Units mm, N, t (stresses in MPa).
//
// Loads: a pull-up at 2.5 g. Lift as suction on the upper and pressure on the lower skin, weight and thrust of two
// engines on the front spar, and the fuselage at four fittings: it holds the thrust, and pulls down such that the wing
// is accelerated at 2.5 g without pitching. Inertia relief then finds (0, 0, 2.5 g) and no angular acceleration, and
// its inertial loads relieve the wing's bending.
#pragma once

#include "ExampleModel.h"

#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

namespace tarnvexo::examples {

namespace wing {

constexpr double Acceleration = 2.5 * 9810.0;        // mm/s²
constexpr double RootPressure = 0.010;               // MPa: mean over the chord at the root, both skins together
constexpr double UpperShare = 0.6;                   // of the lift is suction on the upper skin
constexpr double EngineForce = 8.6e3;                // N: 350 kg at 2.5 g, downwards
constexpr double Thrust = 6.0e3;                     // N per engine, forwards
constexpr Vector3 EngineArm = {-700.0, 0.0, -450.0}; // mm: engine relative to the middle of the front spar

constexpr double HalfSpan = 8000.0; // mm
constexpr int HalfBays = 40;        // stations 200 mm apart, a rib on every second one
constexpr double Bay = HalfSpan / HalfBays;
constexpr double RootChord = 1400.0, TipRatio = 0.5; // chord of the box, front to rear spar
constexpr int ChordCells = 8;
constexpr double Sweep = 0.20, Dihedral = 0.05; // front spar aft and up, per unit of span
constexpr int FuselageStation = 4, EngineStation = 16;

enum Layer { Lower, Middle, Upper };

// Half height of the root box above and below the chord line at chord fraction xi: parabolas over the spars.
inline double UpperHeight(double xi)
{
    return 120.0 + 40.0 * 4.0 * xi * (1.0 - xi);
}
inline double LowerHeight(double xi)
{
    return 90.0 + 30.0 * 4.0 * xi * (1.0 - xi);
}

inline double Scale(double y) // of the section at y against that of the root
{
    return 1.0 - (1.0 - TipRatio) * std::fabs(y) / HalfSpan;
}
inline double FrontSparX(double y)
{
    return Sweep * std::fabs(y);
}

inline Vector3 At(int station, int cell, Layer layer)
{
    const double y = Bay * station, xi = static_cast<double>(cell) / ChordCells;
    const double upper = UpperHeight(xi), lower = -LowerHeight(xi);
    const double height = layer == Upper ? upper : layer == Lower ? lower : 0.5 * (upper + lower);
    return {FrontSparX(y) + Scale(y) * RootChord * xi, y, Dihedral * std::fabs(y) + Scale(y) * height};
}

// Elliptical over the span, falling from the front spar (1.4) to the rear spar (0.6).
inline double LiftPressure(const Vector3& p)
{
    const double eta = p[1] / HalfSpan, xi = (p[0] - FrontSparX(p[1])) / (Scale(p[1]) * RootChord);
    return RootPressure * std::sqrt(std::fmax(0.0, 1.0 - eta * eta)) * (1.4 - 0.8 * xi);
}

inline void AddRib(ExampleModel& model, int station, int thickness)
{
    for (int c = 0; c < ChordCells; ++c) {
        for (const auto& [below, above] : {std::pair{Lower, Middle}, std::pair{Middle, Upper}}) {
            AddQuad(model, At(station, c, below), At(station, c + 1, below), At(station, c + 1, above),
                    At(station, c, above), {0.0, 1.0, 0.0}, thickness);
        }
    }
}

// Vertical forces on the front and rear fittings such that forces and pitching moment of all loads are those of the
// wing's mass accelerated upwards; the thrust is taken at the same fittings.
inline void AddFuselage(ExampleModel& model)
{
    const Resultant loads = LoadResultant(model);
    const MassSum wing = MassAndCentroid(model);
    const Vector3 front = At(FuselageStation, 0, Lower), rear = At(FuselageStation, ChordCells, Lower);

    const double sumX = -loads.force[0]; // shared equally by the four fittings
    const double sumZ = wing.mass * Acceleration - loads.force[2];
    // About the origin: My = z·Fx − x·Fz, and the wing's inertia needs My = zc·0 − xc·m·a.
    const double needed = -wing.centroid[0] * wing.mass * Acceleration - loads.moment[1];
    const double fromX = 0.5 * sumX * (front[2] + rear[2]);
    const double rearZ = (fromX - needed - front[0] * sumZ) / (rear[0] - front[0]);
    const double frontZ = sumZ - rearZ;
    for (const int station : {-FuselageStation, FuselageStation}) {
        AddForce(model, At(station, 0, Lower), {0.25 * sumX, 0.0, 0.5 * frontZ});
        AddForce(model, At(station, ChordCells, Lower), {0.25 * sumX, 0.0, 0.5 * rearZ});
    }
}

} // namespace wing

inline ExampleModel WingExample()
{
    using namespace wing;
    ExampleModel model;
    model.material = {72000.0, 0.33, 2.8e-9}; // aluminium

    // Inner, middle and outer third of the half span.
    const std::vector<double> skinThickness = {4.0, 3.0, 2.0}, sparThickness = {5.0, 4.0, 3.0};
    std::vector<int> skin, spar;
    for (const double t : skinThickness) { skin.push_back(AddThickness(model, t)); }
    for (const double t : sparThickness) { spar.push_back(AddThickness(model, t)); }
    const int rib = AddThickness(model, 1.6);
    const BeamSectionRef stringer = AddTSection(model, "stringer", {45.0, 3.0, 30.0, 3.0});

    const Vector3 up = {0.0, 0.0, 1.0}, aft = {1.0, 0.0, 0.0};
    std::vector<int> upperSkin, lowerSkin;
    for (int s = -HalfBays; s < HalfBays; ++s) {
        const int in = s < 0 ? s + 1 : s, out = s < 0 ? s : s + 1; // the station nearer to the root, the other one
        const std::size_t zone = static_cast<std::size_t>(3 * std::abs(in) / HalfBays);
        for (int c = 0; c < ChordCells; ++c) {
            upperSkin.push_back(AddQuad(model, At(in, c, Upper), At(in, c + 1, Upper), At(out, c + 1, Upper),
                                        At(out, c, Upper), up, skin[zone]));
            lowerSkin.push_back(AddQuad(model, At(in, c, Lower), At(in, c + 1, Lower), At(out, c + 1, Lower),
                                        At(out, c, Lower), -up, skin[zone]));
        }
        for (const auto& [cell, outside] : {std::pair{0, -aft}, std::pair{ChordCells, aft}}) {
            for (const auto& [below, above] : {std::pair{Lower, Middle}, std::pair{Middle, Upper}}) {
                AddQuad(model, At(in, cell, below), At(out, cell, below), At(out, cell, above), At(in, cell, above),
                        outside, spar[zone]);
            }
        }
        const BeamSectionRef onSkin = OnPlate(stringer, skinThickness[zone]);
        for (int c = 2; c < ChordCells; c += 2) {
            AddBeam(model, At(in, c, Upper), At(out, c, Upper), -up, onSkin);
            AddBeam(model, At(in, c, Lower), At(out, c, Lower), up, onSkin);
        }
    }
    for (int s = -HalfBays; s <= HalfBays; s += 2) { AddRib(model, s, rib); }

    for (const int quad : upperSkin) {
        AddQuadPressure(model, quad, [](const Vector3& p) { return -UpperShare * LiftPressure(p); });
    }
    for (const int quad : lowerSkin) {
        AddQuadPressure(model, quad, [](const Vector3& p) { return (1.0 - UpperShare) * LiftPressure(p); });
    }
    // Each engine hangs on the upper and the lower edge of the front spar: half its force and half its moment on each.
    for (const int station : {-EngineStation, EngineStation}) {
        const Vector3 half = {-0.5 * Thrust, 0.0, -0.5 * EngineForce};
        const Vector3 engine = 0.5 * (At(station, 0, Upper) + At(station, 0, Lower)) + EngineArm;
        for (const Layer layer : {Lower, Upper}) {
            const Vector3 edge = At(station, 0, layer);
            AddForce(model, edge, half, Cross(engine - edge, half));
        }
    }
    AddFuselage(model);

    // Nominal supports at three of the four fittings.
    AddRestraint(model, At(-FuselageStation, 0, Lower), {1, 1, 1, 0, 0, 0});
    AddRestraint(model, At(FuselageStation, 0, Lower), {1, 0, 1, 0, 0, 0});
    AddRestraint(model, At(-FuselageStation, ChordCells, Lower), {0, 0, 1, 0, 0, 0});
    NumberNodesAlong(model, 1);
    return model;
}

} // namespace tarnvexo::examples

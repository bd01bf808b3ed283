// support/VerificationModels.h
// Published benchmark problems of plates and shells, each as one procedure: builds the mesh, solves it and returns the
// published quantity. Shared by the tests, on coarse meshes, and by the tables of docs/verification.md, on fine ones.
// n counts the elements along a side of the meshed part; all meshes are uniform unless told otherwise.
#pragma once

#include "support/MeshBuilder.h"

namespace tarnvexo::test {

// --- square plates -----------------------------------------------------------------------------------------------

enum class PlateEdge {
    HardSupport, // deflection and the rotation about the edge's normal are zero: what the double sine series solves
    SoftSupport, // deflection alone is zero
    Clamped,
};
enum class PlateLoad { Uniform, Central };

struct SquarePlate {
    double thickness = 0.001; // side length 1
    PlateEdge edge = PlateEdge::HardSupport;
    PlateLoad load = PlateLoad::Uniform;
    Cell cell = Cell::Quad;
    double distortion = 0.0; // interior nodes move by up to this share of an element's side
};

constexpr double PlateMu = 0.3;

// Deflection of the centre times D/(q·a⁴), or times D/(P·a²); one quarter is meshed with n x n cells.
double PlateCentre(const SquarePlate& plate, int n);

// The same by the double sine series for hard supports; shear-deformable (shear factor 5/6), or thin.
// A central load on a shear-deformable plate has no finite deflection: thin plates only.
double NavierCentre(double thickness, PlateLoad load, bool shearDeformable);

// --- curved shells -----------------------------------------------------------------------------------------------

// Scordelis–Lo roof under its weight: vertical deflection of the free edge's middle, downwards. One quarter.
// Published: 0.3024 (MacNeal, Harder, Finite Elem. Anal. Des. 1 (1985) 3–20).
double ScordelisLoRoof(int n, Cell cell);

// Cylinder with end diaphragms under two opposite unit forces: deflection under the force. One eighth.
// Published: 1.8248e-5 (Flügge's series; Belytschko et al., Comput. Methods Appl. Mech. Eng. 51 (1985) 221–258).
double PinchedCylinder(int n, Cell cell);

// Hemisphere under alternating radial unit forces on its equator: radial displacement under a force. One quarter.
// With a hole of 18° about the pole, cells along parallels and meridians, flat quadrilaterals. Published: 0.0940.
double HemisphereWithHole(int n, Cell cell);
// Without a hole. Published: 0.0924 (both MacNeal, Harder 1985).
// Of parallels and meridians: flat quadrilaterals, a ring of triangles about the pole.
double HemisphereOfMeridians(int n, Cell cell);
// Of three blocks of n x n cells that meet in the middle of the quarter, a cube's faces thrown onto the sphere: warped
// quadrilaterals.
double HemisphereOfBlocks(int n, Cell cell);

// Cantilever twisted by 90° between its ends, thickness 0.32, under a unit force at the tip, along the tip's width (in
// plane) or its normal (out of plane): tip displacement along the force. 6·n x n cells.
// Published: 5.424e-3 and 1.754e-3 (MacNeal, Harder 1985).
enum class TwistedBeamLoad { InPlane, OutOfPlane };
double TwistedBeam(int n, Cell cell, TwistedBeamLoad load);

// Raasch's hook: curved strip, two arcs of opposite curvature, clamped at one end, unit force across the strip's plane
// of curvature at the other: mean displacement of the tip along it. 9·n along, `width` cells across.
// Published: 5.02 (N. F. Knight, AIAA J. 35 (1997) 375–381).
double RaaschHook(int n, int width, Cell cell);

} // namespace tarnvexo::test

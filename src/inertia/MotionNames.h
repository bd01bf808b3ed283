// inertia/MotionNames.h
// What an engineer calls the free motions of a part: "free to rotate about the axis through (12.1, 0, 3.4) along x".
//
// The free motions come as any orthonormal basis of screws. Those without rotation are the translations T of the space;
// the rotation vectors that are left, modulo T, span Θ. Where one point c exists with u = −θ × c modulo T for every θ
// in Θ, all of Θ are rotations about axes through c (the one nearest to the middle of the part is told). Where none
// does, every direction of a basis of Θ gets an axis of its own and a pitch, the way along the axis per radian; of two
// directions whose pitches can have either sign the two without pitch are taken, which exist then.
// Directions are along the global axes as far as the space allows.
// Source: R. S. Ball, A Treatise on the Theory of Screws, Cambridge University Press 1900, chapters 2 and 6.
#pragma once

#include "inertia/RigidMotions.h"

#include <string>
#include <vector>

namespace tarnvexo {

struct FreeMotion {
    enum class Kind { Translation, Rotation };
    Kind kind = Kind::Translation;
    int dimension = 1;      // 1: along or about the direction; 2: every direction normal to it; 3: every direction
    Vector3 direction = {}; // unit vector; no meaning with dimension 3
    bool hasPoint = false;  // a rotation about axes through the point; else about any axis of the direction
    Vector3 point = {};     // in the coordinates of the part's reference point
    double pitch = 0.0;     // of a rotation with dimension 1: way along the axis per radian          length
};

// Dimensions add up to the number of free motions.
std::vector<FreeMotion> NameFreeMotions(const PartMotions& part);

// "move along x", "rotate about every axis through (1, 2, 0) normal to z". origin: of the part's coordinates, in those
// of the model file.
std::string MotionText(const FreeMotion& motion, const Vector3& origin);

// All of them behind "free to": "free to move along x", "free to move and rotate in every way". One text for each.
std::vector<std::string> FreeMotionTexts(const PartMotions& part, const Vector3& origin);

// A unit vector without components below the tolerance, which are round-off, and with its largest component (of equal
// ones, to the tolerance, the first) positive.
Vector3 CleanDirection(Vector3 direction, double tolerance);

// "(12.1, 0, 3.4)": six digits, without negative zeros.
std::string PointText(const Vector3& point);

// "x" for directions along a global axis, else "(0.6, 0.8, 0)".
std::string DirectionText(const Vector3& direction);

} // namespace tarnvexo

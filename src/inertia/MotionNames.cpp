#include "inertia/MotionNames.h"

#include "inertia/SymmetricEigen.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <functional>

namespace tarnvexo {

namespace {

// A motion of length 1 with less rotation (times the part's size) is a translation: its axis would stand 10⁵ sizes
// away.
constexpr double RotationTolerance = 1e-5;

// Shares of the part's size, and components of unit vectors, that are round-off.
constexpr double CleanTolerance = 1e-6;

// A rotation by one radian, and the displacement of the reference point with it.
struct Screw {
    Vector3 theta = {};
    Vector3 u = {};
};

constexpr Vector3 GlobalAxis(int k)
{
    Vector3 axis = {};
    axis[k] = 1.0;
    return axis;
}

Vector3 Clean(const Vector3& direction)
{
    return CleanDirection(direction, CleanTolerance);
}

// Orthonormal basis of the vectors normal to n, along global axes as far as it allows.
std::array<Vector3, 2> PlaneBasis(const Vector3& n)
{
    int k = 0; // the axis that is nearest to the plane
    for (int j = 1; j < 3; ++j) {
        if (std::fabs(n[j]) < std::fabs(n[k]) - CleanTolerance) {
            k = j;
        }
    }
    const Vector3 first = Clean(Normalised(GlobalAxis(k) - n[k] * n));
    return {first, Clean(Cross(n, first))};
}

// Of unit vectors that span a subspace: the vector that names it, along it (one of them), normal to it (two).
Vector3 NameOfSpan(const std::vector<Vector3>& basis)
{
    switch (basis.size()) {
    case 1:
        return Clean(basis[0]);
    case 2:
        return Clean(Normalised(Cross(basis[0], basis[1])));
    default:
        return {};
    }
}

std::vector<Vector3> BasisOfSpan(const std::vector<Vector3>& basis)
{
    if (basis.size() == 2) {
        const std::array<Vector3, 2> plane = PlaneBasis(NameOfSpan(basis));
        return {plane[0], plane[1]};
    }
    return basis.size() == 3 ? std::vector<Vector3>{GlobalAxis(0), GlobalAxis(1), GlobalAxis(2)}
                             : std::vector<Vector3>{Clean(basis[0])};
}

// The translations among the motions, and the screws that are left, normal to them, with orthonormal rotations.
struct MotionSpace {
    std::vector<Vector3> translations; // orthonormal
    std::vector<Screw> screws;
    std::vector<Vector3> rotations; // of the screws

    Vector3 WithoutTranslations(Vector3 v) const
    {
        for (const Vector3& t : translations) { v = v - Dot(v, t) * t; }
        return v;
    }

    Screw ScrewOf(const Vector3& theta) const // theta in the span of the rotations
    {
        Screw screw = {theta, {}};
        for (const Screw& one : screws) { screw.u = screw.u + Dot(theta, one.theta) * one.u; }
        return screw;
    }
};

MotionSpace SplitMotions(const PartMotions& part)
{
    // Rotation vectors of the basis: their Gram matrix has the squares of the singular values. Motions that are not
    // there get an eigenvalue above all.
    SquareMatrix<RigidMotionCount> gram = {};
    const std::size_t count = part.free.size();
    const auto rotationOf = [](const MotionVector& q) { return Vector3{q[RX], q[RY], q[RZ]}; };
    for (std::size_t i = 0; i < RigidMotionCount; ++i) {
        for (std::size_t j = 0; j < RigidMotionCount; ++j) {
            gram[i][j] = i < count && j < count ? Dot(rotationOf(part.free[i]), rotationOf(part.free[j]))
                         : i == j               ? 2.0
                                                : 0.0;
        }
    }
    const SymmetricEigen<RigidMotionCount> eigen = SolveSymmetricEigen<RigidMotionCount>(gram);
    MotionSpace space;
    for (std::size_t k = 0; k < count; ++k) {
        MotionVector q = {};
        for (std::size_t j = 0; j < count; ++j) {
            for (int d = 0; d < RigidMotionCount; ++d) { q[d] += eigen.vectors[k][j] * part.free[j][d]; }
        }
        const Vector3 u = {q[DX], q[DY], q[DZ]};
        if (eigen.values[k] < RotationTolerance * RotationTolerance) {
            space.translations.push_back(Normalised(u));
        } else {
            const double length = std::sqrt(eigen.values[k]);
            space.rotations.push_back(rotationOf(q) / length);
            space.screws.push_back({space.rotations.back(), part.size / length * u});
        }
    }
    return space;
}

// The point c, from the reference point, with the least Σ |u − c × θ|² over the screws, modulo translations: of all
// that serve the nearest. A screw (θ, u) turns about an axis through c when u = −θ × c = c × θ.
Vector3 CommonPoint(const MotionSpace& space, const std::vector<Screw>& screws)
{
    SquareMatrix<3> normal = {};
    Vector3 right = {};
    for (const Screw& screw : screws) {
        Vector3 columns[3];
        for (int k = 0; k < 3; ++k) { columns[k] = space.WithoutTranslations(Cross(GlobalAxis(k), screw.theta)); }
        for (int i = 0; i < 3; ++i) {
            right[i] += Dot(columns[i], screw.u);
            for (int j = 0; j < 3; ++j) { normal[i][j] += Dot(columns[i], columns[j]); }
        }
    }
    const SymmetricEigen<3> eigen = SolveSymmetricEigen<3>(normal);
    Vector3 c = {};
    for (int k = 0; k < 3; ++k) {
        if (eigen.values[k] > CleanTolerance * CleanTolerance) {
            c = c + Dot(eigen.vectors[k], right) / eigen.values[k] * eigen.vectors[k];
        }
    }
    return c;
}

// Rest of the screw beside a rotation about an axis through c.
Vector3 RestOf(const MotionSpace& space, const Screw& screw, const Vector3& c)
{
    return space.WithoutTranslations(screw.u - Cross(c, screw.theta));
}

FreeMotion Rotation(const PartMotions& part, const MotionSpace& space, int dimension, const Vector3& direction,
                    const Vector3& c)
{
    FreeMotion motion;
    motion.kind = FreeMotion::Kind::Rotation;
    motion.dimension = dimension;
    motion.direction = direction;
    motion.hasPoint = space.translations.size() < 3; // else about any point
    motion.point = part.reference + c;
    return motion;
}

// One axis, with its pitch. Lengths against the size of the part and the distance of the axis.
FreeMotion ScrewAbout(const PartMotions& part, const MotionSpace& space, const Vector3& direction)
{
    const Screw screw = space.ScrewOf(direction);
    const Vector3 c = CommonPoint(space, {screw});
    FreeMotion motion = Rotation(part, space, 1, direction, c);
    const double pitch = Dot(RestOf(space, screw, c), direction);
    motion.pitch = std::fabs(pitch) > CleanTolerance * (part.size + Length(c)) ? pitch : 0.0;
    return motion;
}

// Directions for axes of their own. Two rotations about skew axes span screws of either pitch: the quadratic form
// pitch(θ) = θ·u(θ) is indefinite, and its two zeros are these axes.
std::vector<Vector3> DirectionsOfAxes(const PartMotions& part, const MotionSpace& space)
{
    const std::vector<Vector3> basis = BasisOfSpan(space.rotations);
    if (basis.size() != 2 || !space.translations.empty()) {
        return basis;
    }
    const Screw first = space.ScrewOf(basis[0]), second = space.ScrewOf(basis[1]);
    const double mixed = 0.5 * (Dot(first.theta, second.u) + Dot(second.theta, first.u));
    const SymmetricEigen<2> pitches =
        SolveSymmetricEigen<2>({{{Dot(first.theta, first.u), mixed}, {mixed, Dot(second.theta, second.u)}}});
    const double tolerance = CleanTolerance * part.size;
    if (!(pitches.values[0] < -tolerance && pitches.values[1] > tolerance)) {
        return basis;
    }
    // cos²φ·low + sin²φ·high = 0
    const double slope = std::sqrt(-pitches.values[0] / pitches.values[1]);
    const auto inPlane = [&](double low, double high) {
        const Vector3 d = (low * pitches.vectors[0][0] + high * pitches.vectors[1][0]) * basis[0] +
                          (low * pitches.vectors[0][1] + high * pitches.vectors[1][1]) * basis[1];
        return Clean(Normalised(d));
    };
    std::vector<Vector3> axes = {inPlane(1.0, slope), inPlane(1.0, -slope)};
    std::sort(axes.begin(), axes.end(), std::greater<>()); // whatever sign the eigenvectors came with
    return axes;
}

std::string NumbersText(const Vector3& v, const char* format)
{
    std::string text = "(";
    for (int k = 0; k < 3; ++k) {
        char number[32];
        std::snprintf(number, sizeof number, format, v[k] + 0.0); // one zero of two
        text += (k == 0 ? "" : ", ") + std::string(number);
    }
    return text + ")";
}

} // namespace

std::vector<FreeMotion> NameFreeMotions(const PartMotions& part)
{
    const MotionSpace space = SplitMotions(part);
    std::vector<FreeMotion> motions;
    if (!space.translations.empty()) {
        FreeMotion motion;
        motion.dimension = static_cast<int>(space.translations.size());
        motion.direction = NameOfSpan(space.translations);
        motions.push_back(motion);
    }
    if (space.rotations.empty()) {
        return motions;
    }
    const Vector3 c = CommonPoint(space, space.screws);
    const double tolerance = CleanTolerance * (part.size + Length(c));
    const bool haveCommonPoint = std::all_of(space.screws.begin(), space.screws.end(), [&](const Screw& screw) {
        return Length(RestOf(space, screw, c)) <= tolerance;
    });
    if (haveCommonPoint) {
        motions.push_back(
            Rotation(part, space, static_cast<int>(space.rotations.size()), NameOfSpan(space.rotations), c));
    } else {
        for (const Vector3& direction : DirectionsOfAxes(part, space)) {
            motions.push_back(ScrewAbout(part, space, direction));
        }
    }
    // Coordinates that are round-off of the way from the reference point.
    for (FreeMotion& motion : motions) {
        for (int k = 0; k < 3; ++k) {
            const double noise = 1e-12 * (part.size + std::fabs(part.reference[k]));
            motion.point[k] = std::fabs(motion.point[k]) < noise ? 0.0 : motion.point[k];
        }
    }
    return motions;
}

std::string MotionText(const FreeMotion& motion, const Vector3& origin)
{
    const std::string direction = DirectionText(motion.direction);
    if (motion.kind == FreeMotion::Kind::Translation) {
        return motion.dimension == 3   ? "move in every direction"
               : motion.dimension == 2 ? "move in every direction normal to " + direction
                                       : "move along " + direction;
    }
    Vector3 place = motion.point + origin;
    for (int k = 0; k < 3; ++k) { // what the shift of the origin leaves of a zero
        place[k] = std::fabs(place[k]) < 1e-9 * (Length(motion.point) + std::fabs(origin[k])) ? 0.0 : place[k];
    }
    const std::string point = PointText(place);
    if (motion.dimension == 3) {
        return motion.hasPoint ? "rotate in every way about " + point : "rotate in every way";
    }
    if (motion.dimension == 2) {
        return "rotate about every axis " + (motion.hasPoint ? "through " + point + " " : std::string()) +
               "normal to " + direction;
    }
    std::string text = motion.hasPoint ? "rotate about the axis through " + point + " along " + direction
                                       : "rotate about every axis along " + direction;
    if (motion.pitch != 0.0) {
        char pitch[80];
        std::snprintf(pitch, sizeof pitch, ", moving along it by %.6g per radian", motion.pitch);
        text += pitch;
    }
    return text;
}

std::vector<std::string> FreeMotionTexts(const PartMotions& part, const Vector3& origin)
{
    if (part.free.size() == RigidMotionCount) {
        return {"free to move and rotate in every way"};
    }
    std::vector<std::string> texts;
    for (const FreeMotion& motion : NameFreeMotions(part)) { texts.push_back("free to " + MotionText(motion, origin)); }
    return texts;
}

Vector3 CleanDirection(Vector3 direction, double tolerance)
{
    int largest = 0;
    for (int k = 0; k < 3; ++k) {
        if (std::fabs(direction[k]) < tolerance) {
            direction[k] = 0.0;
        }
        if (std::fabs(direction[k]) > (1.0 + tolerance) * std::fabs(direction[largest])) {
            largest = k;
        }
    }
    direction = Normalised(direction);
    return direction[largest] < 0.0 ? -direction : direction;
}

std::string PointText(const Vector3& point)
{
    return NumbersText(point, "%.6g");
}

std::string DirectionText(const Vector3& direction)
{
    static constexpr const char* names[3] = {"x", "y", "z"};
    for (int k = 0; k < 3; ++k) {
        if (std::fabs(direction[k]) == 1.0) {
            return names[k];
        }
    }
    return NumbersText(direction, "%.4g");
}

} // namespace tarnvexo

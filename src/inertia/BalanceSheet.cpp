#include "inertia/BalanceSheet.h"

#include "inertia/SymmetricEigen.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tarnvexo {

namespace {

// Of the two senses of an axis the one whose largest component is positive.
Vector3 PositiveSense(const Vector3& axis)
{
    const auto larger = [](double a, double b) { return std::fabs(a) < std::fabs(b); };
    return *std::max_element(axis.begin(), axis.end(), larger) < 0.0 ? -axis : axis;
}

bool IsZero(const Vector3& v)
{
    return v == Vector3{};
}

// Newton: m·aG = F at the centre of gravity c; Euler: Ji·αi = Mi about each principal axis there, M = Mo − c × F.
// The origin then accelerates with a = aG − α × c. No inertia about an axis: αi = 0 when nothing turns about it.
RigidAcceleration ExactAcceleration(const MassSummary& summary, const LoadResultant& applied, const LoadSizes& sizes,
                                    std::string& shortage, std::string& aboutLine)
{
    char text[500];
    if (!(summary.mass > 0.0)) {
        if (!IsZero(applied.force) || !IsZero(applied.moment)) {
            std::snprintf(text, sizeof text,
                          "the structure has the mass %g, which cannot balance its loads\n"
                          "  expected: a mass above zero\n"
                          "  to do:    enter densities; look for thicknesses, sections, lengths or areas of zero",
                          summary.mass);
            shortage = text;
        }
        return {};
    }

    const Vector3 c = summary.centreOfGravity - summary.volumeCentroid;
    const Vector3 accelerationOfGravityCentre = applied.force / summary.mass;
    const Vector3 moment = applied.moment - Cross(c, applied.force);
    Vector3 alpha = {};
    for (int i = 0; i < 3; ++i) {
        const Vector3& axis = summary.principalAxes[i];
        const double about = Dot(axis, moment);
        if (summary.principalMoments[i] > InertiaTolerance * summary.principalMoments[2]) {
            alpha = alpha + about / summary.principalMoments[i] * axis;
        } else if (!(std::fabs(about) <= LineMomentTolerance * sizes.moments)) {
            std::snprintf(text, sizeof text,
                          "all mass stands on one line, and the loads turn about it with the moment %.6g\n"
                          "  where:    the line through (%.6g, %.6g, %.6g) along (%.6g, %.6g, %.6g)\n"
                          "  done:     this moment is left to the supports\n"
                          "  to do:    model what stands off the line, or load the beams at their centroids",
                          about, summary.centreOfGravity[0], summary.centreOfGravity[1], summary.centreOfGravity[2],
                          axis[0], axis[1], axis[2]);
            aboutLine = text;
        }
    }
    return {accelerationOfGravityCentre - Cross(alpha, c), alpha};
}

LoadResultant Sum(const LoadResultant& a, const LoadResultant& b)
{
    return {a.force + b.force, a.moment + b.moment};
}

double Relative(const Vector3& rest, double size)
{
    return size == 0.0 ? 0.0 : Length(rest) / size; // sizes that are not numbers must show
}

} // namespace

MassSummary SummariseMass(const ModelStore& model, const MassMoments& moments)
{
    MassSummary summary;
    summary.mass = moments.mass;
    summary.volumeCentroid = model.StructureCentroid;
    const Vector3 c = moments.mass == 0.0 ? Vector3{} : moments.first / moments.mass;
    summary.centreOfGravity = model.StructureCentroid + c;

    Matrix3 second = moments.second; // about the centre of gravity: P − m·c·cᵀ
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { second[i][j] -= moments.mass * c[i] * c[j]; }
    }
    summary.inertia = InertiaTensor(second);
    const SymmetricEigen<3> eigen = SolveSymmetricEigen<3>(summary.inertia);
    summary.principalMoments = eigen.values;
    summary.principalAxes[0] = PositiveSense(eigen.vectors[0]);
    summary.principalAxes[1] = PositiveSense(eigen.vectors[1]);
    summary.principalAxes[2] = Cross(summary.principalAxes[0], summary.principalAxes[1]);
    return summary;
}

LoadResultant InertialResultant(const MassMoments& moments, const RigidAcceleration& acceleration)
{
    const auto& [a, alpha] = acceleration;
    return {-(moments.mass * a + Cross(alpha, moments.first)),
            -(Cross(moments.first, a) + Multiply(InertiaTensor(moments.second), alpha))};
}

BalanceSheet BalanceLoads(ModelStore& model, const std::vector<NodeInertia>& shellInertia, BalanceKind kind)
{
    const MassMoments moments = MomentsOfMass(model, shellInertia);
    BalanceSheet sheet;
    sheet.mass = SummariseMass(model, moments);

    const LoadResultant applied = ResultantOfLoads(model);
    const LoadSizes sizes = SizesOfLoads(model);
    sheet.appliedAboutCentroid = applied;
    sheet.appliedAboutOrigin = {applied.force, applied.moment + Cross(model.StructureCentroid, applied.force)};
    sheet.forceSize = sizes.forces;
    sheet.momentSize = sizes.moments;

    sheet.classic = ClassicAcceleration(TotalMass(model), RotationalMass(model, shellInertia), applied);
    sheet.classicRemaining = Sum(applied, InertialResultant(moments, sheet.classic));

    sheet.kind = kind;
    sheet.applied = kind == BalanceKind::Classic
                        ? sheet.classic
                        : ExactAcceleration(sheet.mass, applied, sizes, sheet.shortage, sheet.aboutLine);
    if (sheet.shortage.empty()) {
        AddInertialLoads(model, shellInertia, sheet.applied, model.GLOAD);
    }
    sheet.remaining = ResultantOfLoads(model);
    sheet.relativeForce = Relative(sheet.remaining.force, sheet.forceSize);
    sheet.relativeMoment = Relative(sheet.remaining.moment, sheet.momentSize);
    return sheet;
}

} // namespace tarnvexo

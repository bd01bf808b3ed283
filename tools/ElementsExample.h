// ElementsExample.h
// One element of every kind, joined: a quad and a triangle with a common edge, on their edges a T, an L, a mirrored L
// and a rectangle, and a tube standing on a corner. Every kind of load once. Nothing is symmetric or square, so a wrong
// sign or index shows. x, y in the plane of the plates, z up. Units m, N, kg.
#pragma once

#include "ExampleModel.h"

namespace tarnvexo::examples {

inline ExampleModel ElementsExample()
{
    ExampleModel model;
    model.material = {2.06e11, 0.3, 7850.0}; // steel
    const double thickness = 0.012;
    const int plate = AddThickness(model, thickness), thinPlate = AddThickness(model, 0.010);
    const BeamSectionRef t = OnPlate(AddTSection(model, "T", {0.15, 0.008, 0.08, 0.012}), thickness);
    const BeamSectionRef rectangle = OnPlate(AddTSection(model, "rectangle", {0.10, 0.010, 0.0, 0.0}), thickness);
    const BeamSectionRef l = OnPlate(AddLSection(model, "L", {0.12, 0.008, 0.06, 0.010}), thickness);
    const BeamSectionRef tube = AddTubeSection(model, "tube", {0.06, 0.006});
    BeamSectionRef mirroredL = l;
    mirroredL.BeamSecMirrored = true;

    const Vector3 a = {0.0, 0.0, 0.0}, b = {1.2, 0.0, 0.0}, c = {1.1, 0.9, 0.0}, d = {-0.1, 1.0, 0.0};
    const Vector3 e = {2.0, 0.5, 0.0}, head = {0.1, -0.1, 0.9};
    const Vector3 up = {0.0, 0.0, 1.0};

    const int quad = AddQuad(model, a, b, c, d, up, plate);
    AddTri(model, b, e, c, up, thinPlate);
    const int tBeam = AddBeam(model, a, b, -up, t);
    AddBeam(model, b, c, -up, l);
    AddBeam(model, a, d, -up, mirroredL);
    AddBeam(model, b, e, -up, rectangle);
    AddBeam(model, a, head, {1.0, 0.0, 0.0}, tube);

    AddRestraint(model, a, {1, 1, 1, 0, 0, 0});
    AddRestraint(model, e, {0, 1, 1, 0, 0, 0});
    AddRestraint(model, d, {0, 0, 1, 0, 0, 0});

    AddForce(model, head, {300.0, -200.0, -1000.0}, {0.0, 40.0, 25.0});
    AddQuadPressure(model, quad, [](const Vector3& p) { return 2000.0 + 500.0 * p[0]; });
    model.triLoads.push_back({0, {1500.0, 1000.0, 1200.0}});
    model.beamLoads.push_back({tBeam, -800.0, -500.0});
    return model;
}

} // namespace tarnvexo::examples

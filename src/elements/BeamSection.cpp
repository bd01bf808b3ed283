#include "elements/BeamSection.h"

#include "elements/Elasticity.h"

#include <cmath>
#include <utility>

namespace tarnvexo {

namespace {

// Φ = 12·E·I / (G·As·L²) of the shear-deformable beam.
double ShearFactor(double E, double Mu, double I, double shearArea, double length)
{
    return 12 * E * I / ShearModulus(E, Mu) / shearArea / length / length;
}

BeamSectionConstants RectangleConstants(double h, double t, double E, double Mu, double length, double sectionOffset)
{
    BeamSectionConstants s;
    s.A = h * t;
    s.I1 = t * h * h * h / 12;
    s.I2 = h * t * t * t / 12;
    s.J = h * t * t * t / 3;
    s.phi1 = ShearFactor(E, Mu, s.I1, 2.0 / 3.0 * h * t, length);
    s.phi2 = 0.0;
    s.c1 = s.c2 = t / 2;
    s.c3 = s.c4 = h / 2;
    s.ez = h / 2 + sectionOffset;
    return s;
}

// What T and L have in common: heights, bending about the y' axis, torsion, shear. yf = lateral flange centre.
BeamSectionConstants WebFlangeConstants(const WebFlangeSection& section, double yf, double E, double Mu, double length,
                                        double sectionOffset)
{
    const double h = section.Hw, t = section.Tw, b = section.Bf, tf = section.Tf;
    const double Aw = h * t;
    const double Af = b * tf;
    BeamSectionConstants s;
    s.A = Af + Aw;
    const double zf = h + tf / 2;
    const double zc = (Aw * h / 2 + Af * zf) / s.A;
    const double yc = Af * yf / s.A;
    s.I1 = b * tf * tf * tf / 12 + Af * zf * zf + t * h * h * h / 12 + Aw * (h / 2) * (h / 2) - zc * zc * s.A;
    s.I2 = tf * b * b * b / 12 + Af * yf * yf + h * t * t * t / 12 - yc * yc * s.A;
    s.J = (h * t * t * t + b * tf * tf * tf) / 3;
    s.phi1 = ShearFactor(E, Mu, s.I1, Aw, length);
    s.phi2 = 0.0;
    s.c3 = h + tf - zc;
    s.c4 = zc;
    s.ey = yc;
    s.ez = zc + sectionOffset;
    return s;
}

void PlaceBeam(BeamElement& beam, const Vector3& node1, const Vector3& node2, const Vector3& reference,
               const Material& material, double sectionOffset)
{
    beam.node1 = node1;
    beam.node2 = node2;
    beam.reference = reference;
    beam.tolerance = 1e-15;
    beam.E = material.E;
    beam.Mu = material.Mu;
    beam.Density = material.Density;
    beam.sectionOffset = sectionOffset;
}

} // namespace

BeamSectionConstants TSectionConstants(const TBeamSection& section, double E, double Mu, double length,
                                       double sectionOffset)
{
    if (IsRectangle(section)) {
        return RectangleConstants(section.Hw, section.Tw, E, Mu, length, sectionOffset);
    }
    BeamSectionConstants s = WebFlangeConstants(section, 0.0, E, Mu, length, sectionOffset);
    s.c1 = s.c2 = section.Bf / 2;
    return s;
}

BeamSectionConstants LSectionConstants(const LBeamSection& section, double E, double Mu, double length,
                                       double sectionOffset, bool mirrored)
{
    if (IsRectangle(section)) {
        return RectangleConstants(section.Hw, section.Tw, E, Mu, length, sectionOffset);
    }
    const double b = section.Bf, t = section.Tw;
    BeamSectionConstants s = WebFlangeConstants(section, b / 2 - t / 2, E, Mu, length, sectionOffset);
    s.c1 = b - t / 2;
    s.c2 = t / 2;
    if (mirrored) {
        std::swap(s.c1, s.c2);
        s.ey = -s.ey;
    }
    return s;
}

BeamSectionConstants TubeSectionConstants(const CBeamSection& section, double E, double Mu, double length,
                                          double sectionOffset)
{
    const double Do = 2 * section.R + section.T;
    const double Di = 2 * section.R - section.T;
    const double pi = std::acos(-1.0);
    const double fourthPowers = Do * Do * Do * Do - Di * Di * Di * Di;
    BeamSectionConstants s;
    s.A = pi * (Do * Do / 4 - Di * Di / 4);
    s.I1 = s.I2 = pi * 0.015625 * fourthPowers;
    s.J = pi * 0.03125 * fourthPowers;
    s.phi1 = s.phi2 = ShearFactor(E, Mu, s.I1, s.A / 2, length);
    s.c1 = s.c2 = s.c3 = s.c4 = Do / 2;
    s.ez = sectionOffset;
    return s;
}

void TBeamSetUp(BeamElement& beam, const Vector3& node1, const Vector3& node2, const Vector3& reference,
                const Material& material, const TBeamSection& section, double sectionOffset)
{
    PlaceBeam(beam, node1, node2, reference, material, sectionOffset);
    beam.section = TSectionConstants(section, material.E, material.Mu, BeamLength(beam), sectionOffset);
}

void LBeamSetUp(BeamElement& beam, const Vector3& node1, const Vector3& node2, const Vector3& reference,
                const Material& material, const LBeamSection& section, double sectionOffset, bool mirrored)
{
    PlaceBeam(beam, node1, node2, reference, material, sectionOffset);
    beam.mirrored = mirrored;
    beam.section = LSectionConstants(section, material.E, material.Mu, BeamLength(beam), sectionOffset, mirrored);
}

void TubeBeamSetUp(BeamElement& beam, const Vector3& node1, const Vector3& node2, const Vector3& reference,
                   const Material& material, const CBeamSection& section, double sectionOffset)
{
    PlaceBeam(beam, node1, node2, reference, material, sectionOffset);
    beam.section = TubeSectionConstants(section, material.E, material.Mu, BeamLength(beam), sectionOffset);
}

double BeamLength(const BeamElement& beam)
{
    return Length(beam.node2 - beam.node1);
}

void BeamFrame(const BeamElement& beam, Vector3 frame[3])
{
    const Vector3 d = beam.node2 - beam.node1;
    const Vector3 pxd = Cross(beam.reference - beam.node1, d);
    frame[0] = Normalised(d);
    frame[1] = Normalised(pxd);
    frame[2] = Normalised(Cross(d, pxd));
}

Vector3 BeamCentroidOffset(const BeamElement& beam, const Vector3 frame[3])
{
    return beam.section.ex * frame[0] + beam.section.ey * frame[1] + beam.section.ez * frame[2];
}

} // namespace tarnvexo

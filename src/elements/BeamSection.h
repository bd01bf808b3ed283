// elements/BeamSection.h
// Section constants of the three beam cross-sections and the beam's local frame.
//
// T and L: the web h × t stands on the node line, its base at height 0 and its centre line at y' = 0; the flange b × tf
// lies on top of it, from height h to h + tf, centred for the T, from the web's outer face −t/2 to b − t/2 for the L
// (towards −y' when mirrored). With b = 0 or tf = 0 the section is the plain rectangle h × t.
// Shear areas: web alone (T, L), two thirds (rectangle), half (tube); bending about the web axis has no shear
// deformation (phi2 = 0) for T and L.
// Errors: none reported; a zero length or a zero dimension gives non-finite constants.
#pragma once

#include "core/BeamElement.h"
#include "core/ModelStore.h"

namespace tarnvexo {

// A section without flange: the web alone.
inline bool IsRectangle(const WebFlangeSection& section)
{
    return section.Bf == 0.0 || section.Tf == 0.0;
}

//   section        sizes                                                          length
//   E, Mu          Young's modulus, Poisson's ratio                               force/length², –
//   length         distance between the beam's nodes                              length
//   sectionOffset  BeamSecOz, height of the section's base (tube: centre) above the nodes   length
BeamSectionConstants TSectionConstants(const TBeamSection& section, double E, double Mu, double length,
                                       double sectionOffset);
BeamSectionConstants LSectionConstants(const LBeamSection& section, double E, double Mu, double length,
                                       double sectionOffset, bool mirrored);
BeamSectionConstants TubeSectionConstants(const CBeamSection& section, double E, double Mu, double length,
                                          double sectionOffset);

// Fills a beam element whole. reference = node1 + orientation vector.
void TBeamSetUp(BeamElement& beam, const Vector3& node1, const Vector3& node2, const Vector3& reference,
                const Material& material, const TBeamSection& section, double sectionOffset);
void LBeamSetUp(BeamElement& beam, const Vector3& node1, const Vector3& node2, const Vector3& reference,
                const Material& material, const LBeamSection& section, double sectionOffset, bool mirrored);
void TubeBeamSetUp(BeamElement& beam, const Vector3& node1, const Vector3& node2, const Vector3& reference,
                   const Material& material, const CBeamSection& section, double sectionOffset);

double BeamLength(const BeamElement& beam);

// Rows x', y', z' in global components: x' along the beam, z' in the plane of the beam and the reference point, on the
// side of that point, y' = z' × x'. A reference point on the beam's axis gives non-finite rows.
void BeamFrame(const BeamElement& beam, Vector3 frame[3]);

// Section centroid relative to the node line, global axes.
Vector3 BeamCentroidOffset(const BeamElement& beam, const Vector3 frame[3]);

} // namespace tarnvexo

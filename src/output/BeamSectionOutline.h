// output/BeamSectionOutline.h
// Mid-line outline of a beam's cross-section: points in the section plane (y' across, z' up) and the wall segments
// between them. A mid-line model: a flange lies at the height of the web's end, not half its thickness above.
#pragma once

#include "core/ModelStore.h"

#include <vector>

namespace tarnvexo {

struct OutlinePoint {
    double y;
    double z;
};

struct OutlineSegment {
    int from; // points
    int to;
    double thickness;
};

struct SectionOutline {
    std::vector<OutlinePoint> points;
    std::vector<OutlineSegment> segments;
    double leadingSize; // first value of the section's record (web height or mean radius): scale of the link tolerance
};

// sectionOffset = BeamSecOz, added to every height. A section without flange (Bf = 0 or Tf = 0) is its web alone.
SectionOutline TOutline(const TBeamSection& section, double sectionOffset);
SectionOutline LOutline(const LBeamSection& section, double sectionOffset, bool mirrored);
SectionOutline TubeOutline(const CBeamSection& section, double sectionOffset);

double LongestSegment(const SectionOutline& outline);

} // namespace tarnvexo

#include "output/BeamSectionOutline.h"

#include "elements/BeamSection.h"

#include <algorithm>
#include <cmath>

namespace tarnvexo {

namespace {

// The web in three segments: points 0 ... 3 from the node line up.
SectionOutline WebOutline(const WebFlangeSection& section, double sectionOffset)
{
    const double h = section.Hw, t = section.Tw;
    return {{{0.0, 0.0 + sectionOffset},
             {0.0, h / 3 + sectionOffset},
             {0.0, 2 * h / 3 + sectionOffset},
             {0.0, h + sectionOffset}},
            {{0, 1, t}, {1, 2, t}, {2, 3, t}},
            h};
}

} // namespace

SectionOutline TOutline(const TBeamSection& section, double sectionOffset)
{
    SectionOutline outline = WebOutline(section, sectionOffset);
    if (!IsRectangle(section)) {
        const double b = section.Bf, tf = section.Tf, top = section.Hw + sectionOffset;
        outline.points.insert(outline.points.end(), {{-b / 2, top}, {b / 2, top}});
        outline.segments.insert(outline.segments.end(), {{3, 4, tf}, {3, 5, tf}});
    }
    return outline;
}

SectionOutline LOutline(const LBeamSection& section, double sectionOffset, bool mirrored)
{
    SectionOutline outline = WebOutline(section, sectionOffset);
    if (!IsRectangle(section)) {
        const double b = mirrored ? -section.Bf : section.Bf;
        const double tf = section.Tf, top = section.Hw + sectionOffset;
        outline.points.insert(outline.points.end(), {{b / 2, top}, {b, top}});
        outline.segments.insert(outline.segments.end(), {{3, 4, tf}, {4, 5, tf}});
    }
    return outline;
}

SectionOutline TubeOutline(const CBeamSection& section, double sectionOffset)
{
    constexpr int points = 12;
    const double pi = std::acos(-1.0);
    SectionOutline outline;
    for (int k = 0; k < points; ++k) {
        const double angle = 2 * pi * k / points;
        outline.points.push_back({section.R * std::cos(angle), section.R * std::sin(angle) + sectionOffset});
        outline.segments.push_back({k, (k + 1) % points, section.T});
    }
    outline.leadingSize = section.R;
    return outline;
}

double LongestSegment(const SectionOutline& outline)
{
    double longest = 0.0;
    for (const OutlineSegment& segment : outline.segments) {
        const double dy = outline.points[segment.to].y - outline.points[segment.from].y;
        const double dz = outline.points[segment.to].z - outline.points[segment.from].z;
        longest = std::max(longest, std::sqrt(dy * dy + dz * dz));
    }
    return longest;
}

} // namespace tarnvexo

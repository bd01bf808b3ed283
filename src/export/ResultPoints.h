// export/ResultPoints.h
// Points of a drawn mesh that carry results. The averaged stresses of shells belong to a node and an element: across a
// fold, at a change of thickness and where normals are opposed, elements differ at the node that they share
// (output/NodalAveraging). So a point is a node together with one set of stresses: where elements agree they share the
// point and contours run through, where they differ each has its own and nothing is smeared over the fold.
#pragma once

#include "core/ModelStore.h"

#include <array>
#include <cstddef>
#include <vector>

namespace tarnvexo {

// Stresses of both faces, global axes: [StressCount] each, in the store.
struct FaceStresses {
    const double* positive;
    const double* negative;
};

// The larger of the equivalent stresses of the two faces; what is not a number wins.
double LargerEquivalentStress(const FaceStresses& stresses);

struct ShellPoint {
    int node;
    FaceStresses averaged;
};

struct ShellPoints {
    std::vector<ShellPoint> points;                       // in order of nodes
    std::vector<std::array<int, QuadNodeCount>> quads;    // points of each quadrilateral, in its order of nodes
    std::vector<std::array<int, TriNodeCount>> triangles; // the same of each triangle
};

// Elements share a point of a node when no component differs by more than 1e-10 of the largest one there: averages of
// the same stresses differ by round-off, since every element begins the sum with its own. Valid as long as the store's
// elements stay where they are. Cost: linear; an element looks at the last 16 points of a node only.
ShellPoints FindShellPoints(const ModelStore& model);

// Nodes and walls of all section meshes, one beam after the other. The beam ends, which belong to no wall, are left
// out.
struct SectionPoint {
    int beam;
    int node; // of the section mesh
};

struct SectionWall {
    int beam;
    int patch;
    std::array<int, QuadNodeCount> points;
};

struct SectionPoints {
    std::vector<SectionPoint> points;
    std::vector<SectionWall> walls;
};

SectionPoints FindSectionPoints(const ModelStore& model);

FaceStresses StressesAt(const ModelStore& model, const SectionPoint& point);
const Vector3& PlaceOf(const ModelStore& model, const SectionPoint& point);
const double* DisplacementOf(const ModelStore& model, const SectionPoint& point); // [DofsPerNode]

} // namespace tarnvexo

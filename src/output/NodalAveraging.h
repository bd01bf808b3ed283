// output/NodalAveraging.h
// Smooths the shells' face stresses at the nodes. An element takes the mean over those neighbours at the node whose
// positive face lies where its own does: d = (tj/2)·nj − (te/2)·ne no longer than te/10. Neighbours across a fold or of
// another thickness stay out; a neighbour whose normal points the other way (ne·nj <= 0) joins with its faces
// exchanged. The tolerance is a tenth of the element's own thickness, so the choice is not symmetric between two
// neighbours. Fills averagedPositiveFace and averagedNegativeFace. Cost: linear, through the elements around each node;
// elements are shared between threads, each sum keeps its order.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

void AverageShellStresses(ModelStore& model);

// How the faces of two shells (or section walls) that meet at a node lie to each other.
enum class FaceMatch { Apart, Same, Exchanged };
FaceMatch MatchFaces(const Vector3& normal, double thickness, const Vector3& otherNormal, double otherThickness);

// Mean of face stresses, gathered in a fixed order.
struct FaceStressMean {
    double positiveFace[StressCount] = {};
    double negativeFace[StressCount] = {};
    int count = 0;

    void Add(const double* positive, const double* negative);
    void Add(const double* positive, const double* negative, FaceMatch match); // Apart adds nothing
    void Store(double* positive, double* negative) const;                      // sums · 1/count
};

} // namespace tarnvexo

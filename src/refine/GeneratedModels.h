// refine/GeneratedModels.h
// Structures made by formula in any size, for studies of how time and memory grow with a model, and for tests on
// structures of a useful size. No random numbers: the same figure gives the same model.
//
//   equations   about how many equations the model shall have, 6 per node: met within a quarter from 3,000 on, within a
//               tenth from 100,000 on; smaller figures give the smallest model of the kind
//
// N, m, kg, s. Every structure is in one piece, floats free, is held by 3-2-1 supports only and carries smooth loads.
// Shells are squares or nearly so, triangles right-angled. Nodes are numbered station by station along the length.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

// Square plate, 10 m by 10 m, m × m elements, m = √(equations/7.2); every tenth line carries a stiffener of plate, two
// elements high. Nearly plane: the easiest kind for any order of elimination.
ModelStore StiffenedPlateModel(int equations);

// Box girder, 2 m × 2 m × 20 m, k × k elements in section and 10·k along, k = √(equations/300); bulkheads of plate
// every 2 m.
ModelStore BoxGirderModel(int equations);

// Hold of a ship, 24 m wide, 12 m deep: bottom, sides, deck with T and L longitudinals, web frames 2 m deep with face
// bars every 4 m of length. n elements per metre; the number of frame bays, and so the length, meets the size.
ModelStore ShipHoldModel(int equations);

// Fuselage barrel of radius 2 m: skin of flat strips, L frames every 0.5 m, L stringers every 15°, a floor of larger
// elements joined to the skin by triangles, T floor beams. n elements per frame bay and 24·n around; the number of
// bays meets the size.
ModelStore BarrelModel(int equations);

// Space frame of k × k cells in section, 4 m × 4 m × 3 m each: T beams along, L beams across, tubes upright and as
// bracing of the outer walls. The number of cells along meets the size.
ModelStore BeamLatticeModel(int equations);

} // namespace tarnvexo

// solver/SkylineProfile.h
// Column-wise skyline (variable band) storage of a symmetric matrix.
//
// Column j holds the rows j - ColumnHeight[j] + 1 ... j. Entry (i, j), i <= j, stands at DiagonalAddress[j] + (j - i):
// the diagonal first, then the entries above it going up. Only the upper triangle is kept.
// Cost: one pass over the elements; no renumbering, the profile follows the node numbers of the model file.
#pragma once

#include "core/ModelStore.h"

#include <cstdint>
#include <vector>

namespace tarnvexo {

// Largest number of entries a skyline may have: addresses are 32-bit.
constexpr std::int64_t SkylineLimit = 2147483647;

// Raises the heights of an element's columns so that they reach its lowest equation. map [n] equation numbers.
void RaiseColumns(const int* map, int n, std::vector<int>& columnHeight);

// ColumnHeight of the whole model from its connectivity; needs EquationCount. Without equations nothing is allocated.
void BuildSkylineProfile(ModelStore& model);

// Entries of a skyline with these heights.
std::int64_t SkylineEntries(const std::vector<int>& columnHeight);

// Address of each column's diagonal; the heights must not exceed SkylineLimit in all.
std::vector<int> DiagonalAddresses(const std::vector<int>& columnHeight);

// Adds the upper triangle of an element matrix Ke [n][n] (row-major, symmetric) at the equations map [n].
void AddElementMatrix(const double* Ke, const int* map, int n, const std::vector<int>& diagonalAddress,
                      std::vector<double>& stiffness);

} // namespace tarnvexo

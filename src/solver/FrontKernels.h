// solver/FrontKernels.h
// Dense kernels of the multifrontal factorisation, for the vector unit at hand. Nearly all of its operations are in
// SubtractProduct.
//
// A front's arrays are stored column by column. Rows and columns are counted from the top left corner of the front, in
// every array and argument. Columns come in sixes, the unknowns of a node. Strides are multiples of RowAlignment and
// arrays begin on a cache line, so that every eighth row does. Ranges of rows begin and end at multiples of
// RowAlignment: above the diagonal and below the last row kernels may write what nobody reads.
//
// A pivot may be negative: the factor is L·S·Lᵀ with S = diag(±1), which is Cholesky's L·Lᵀ where all are positive.
#pragma once

#include "solver/IndexRange.h"

#include <cstddef>
#include <string>

namespace tarnvexo {

constexpr int RowAlignment = 8; // doubles in a cache line

// A part of a front: row r of column c stands at At(r, c), for rows from firstRow and columns from firstColumn on.
struct FrontArray {
    double* values;
    std::ptrdiff_t stride; // from column to column
    int firstRow;          // a multiple of RowAlignment
    int firstColumn;

    double* At(int row, int column) const { return values + (row - firstRow) + (column - firstColumn) * stride; }
};

// C(rows, columns) −= L(rows, k)·S(k)·L(columns, k)ᵀ on and below the diagonal; columns.Size() is a multiple of six.
//   L      finished in the columns k
//   signs  ±1 of every column, counted as the columns of L; null: all +1
void SubtractProduct(const FrontArray& L, IndexRange k, const double* signs, IndexRange rows, IndexRange columns,
                     const FrontArray& C);

// The diagonal block of the columns: L·S·Lᵀ of its rows, and of what is left of the last RowAlignment rows with it.
//   signs   out, ±1 of these columns; counted as the columns of L, as are the pivots
//   pivots  out, the diagonal of D in L·D·Lᵀ with unit L. Where one is zero or no finite number its equation is taken
//           out of the system, the diagonal of L becomes infinite there and the column zero.
// Returns true when all pivots are positive and finite.
bool FactoriseDiagonal(const FrontArray& L, IndexRange columns, double* signs, double* pivots);

// Rows below a diagonal block that is done: L(rows, columns) becomes what solves with it, all columns before them
// subtracted already.
void SolveRows(const FrontArray& L, IndexRange columns, const double* signs, IndexRange rows);

// What is left of a child is added to its parent, by blocks of six rows and columns: block k of the child becomes block
// blockInParent[k] of the parent. Done for the block columns of `from` and of `to` that are given.
//   width          columns of the child that were eliminated: its block k begins with row and column width + 6·k
//   blockInParent  [blocks] ascending
void AddUpdate(const FrontArray& from, int width, const int* blockInParent, int blocks, IndexRange blockColumns,
               const FrontArray& to);

// y(rows) −= L(rows, columns)·x, x [columns.Size()]; y is counted as the rows of L.
void SubtractColumns(const FrontArray& L, IndexRange columns, const double* x, IndexRange rows, double* y);

// x[c] −= L(rows, c)ᵀ·y(rows) for the columns.
void SubtractColumnProducts(const FrontArray& L, IndexRange columns, IndexRange rows, const double* y, double* x);

// Name of the vector unit in use.
std::string FrontVectorUnit();

} // namespace tarnvexo

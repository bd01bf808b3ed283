#include "cholmod/FixedBlas.h"

#include "core/Parallel.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

extern "C" {
enum CblasOrder { ColumnMajor = 102 };
enum CblasTranspose { NoTranspose = 111, Transposed = 112 };
enum CblasTriangle { Lower = 122 };
enum CblasDiagonal { NonUnit = 131 };
enum CblasSide { Right = 142 };
void cblas_dgemm(CblasOrder, CblasTranspose, CblasTranspose, int m, int n, int k, double alpha, const double* A,
                 int lda, const double* B, int ldb, double beta, double* C, int ldc);
void cblas_dsyrk(CblasOrder, CblasTriangle, CblasTranspose, int n, int k, double alpha, const double* A, int lda,
                 double beta, double* C, int ldc);
void cblas_dtrsm(CblasOrder, CblasSide, CblasTriangle, CblasTranspose, CblasDiagonal, int m, int n, double alpha,
                 const double* L, int ldl, double* B, int ldb);
void dpotf2_(const char* uplo, const int* n, double* A, const int* lda, int* info);
}

namespace {

constexpr int PieceRows = 256;      // of a product or a triangular solution that threads share
constexpr int CholeskyColumns = 64; // of a block of the triangular factor
constexpr double LeastWork = 4e6;   // operations below which a call is one piece

// Calls piece(row, rows) for pieces of a matrix of m rows; work: operations of the whole call. The last pieces come
// first: of a triangle they are the longest.
template <class Piece> void ForPieces(int m, double work, Piece piece)
{
    if (work < LeastWork || m < 2 * PieceRows) {
        piece(0, m);
        return;
    }
    const std::size_t pieces = static_cast<std::size_t>((m + PieceRows - 1) / PieceRows);
    tarnvexo::ParallelFor(pieces, 1, [&](std::size_t index, std::size_t) {
        const int row = static_cast<int>(pieces - 1 - index) * PieceRows;
        piece(row, std::min(PieceRows, m - row));
    });
}

// CHOLMOD's supernodal factorisation calls each kernel in one form only. Another form would give wrong numbers.
void Require(bool isTheForm, const char* kernel)
{
    if (!isTheForm) {
        std::fprintf(stderr,
                     "error: %s is called in a form that this program does not know: another version of CHOLMOD\n",
                     kernel);
        std::abort();
    }
}

std::size_t At(int row, int column, int leadingDimension)
{
    return static_cast<std::size_t>(row) +
           static_cast<std::size_t>(column) * static_cast<std::size_t>(leadingDimension);
}

} // namespace

extern "C" {

void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k, const double* alpha,
            const double* A, const int* lda, const double* B, const int* ldb, const double* beta, double* C,
            const int* ldc)
{
    Require(*transa == 'N' && *transb == 'C', "dgemm");
    ForPieces(*m, 2.0 * *m * *n * *k, [&](int row, int rows) {
        cblas_dgemm(ColumnMajor, NoTranspose, Transposed, rows, *n, *k, *alpha, A + row, *lda, B, *ldb, *beta, C + row,
                    *ldc);
    });
}

void dsyrk_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha, const double* A,
            const int* lda, const double* beta, double* C, const int* ldc)
{
    Require(*uplo == 'L' && *trans == 'N', "dsyrk");
    ForPieces(*n, 1.0 * *n * *n * *k, [&](int row, int rows) {
        if (row > 0) { // left of the diagonal block
            cblas_dgemm(ColumnMajor, NoTranspose, Transposed, rows, row, *k, *alpha, A + row, *lda, A, *lda, *beta,
                        C + row, *ldc);
        }
        cblas_dsyrk(ColumnMajor, Lower, NoTranspose, rows, *k, *alpha, A + row, *lda, *beta, C + At(row, row, *ldc),
                    *ldc);
    });
}

void dtrsm_(const char* side, const char* uplo, const char* trans, const char* diag, const int* m, const int* n,
            const double* alpha, const double* L, const int* ldl, double* B, const int* ldb)
{
    Require(*side == 'R' && *uplo == 'L' && *trans == 'C' && *diag == 'N', "dtrsm");
    ForPieces(*m, 1.0 * *m * *n * *n, [&](int row, int rows) {
        cblas_dtrsm(ColumnMajor, Right, Lower, Transposed, NonUnit, rows, *n, *alpha, L, *ldl, B + row, *ldb);
    });
}

void dpotrf_(const char* uplo, const int* n, double* A, const int* lda, int* info)
{
    const double one = 1.0, minusOne = -1.0;
    *info = 0;
    for (int column = 0; column < *n && *info == 0; column += CholeskyColumns) {
        const int width = std::min(CholeskyColumns, *n - column);
        const int below = *n - column - width;
        double* const diagonal = A + At(column, column, *lda);
        dpotf2_(uplo, &width, diagonal, lda, info);
        if (*info != 0) {
            *info += column;
        } else if (below > 0) {
            double* const panel = diagonal + width;
            dtrsm_("R", "L", "C", "N", &below, &width, &one, diagonal, lda, panel, lda);
            dsyrk_("L", "N", &below, &width, &minusOne, panel, lda, &one, A + At(column + width, column + width, *lda),
                   lda);
        }
    }
}
}

// cholmod/FixedBlas.h
// The four dense kernels that CHOLMOD's supernodal factorisation calls, cut into pieces of fixed size that threads
// share. A library's own threads cut by the number of threads, and then the last bits of a factor depend on it. Here
// every piece is computed by one thread of OpenBLAS, whatever the number of threads, so the factor is the same to the
// last bit. The names are those of the Fortran BLAS, so that CHOLMOD finds these in place of the library's.
#pragma once

extern "C" {

// C = alpha·op(A)·op(B) + beta·C; only A·Bᵀ is wanted and taken.
void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k, const double* alpha,
            const double* A, const int* lda, const double* B, const int* ldb, const double* beta, double* C,
            const int* ldc);

// Lower triangle of C = alpha·A·Aᵀ + beta·C.
void dsyrk_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha, const double* A,
            const int* lda, const double* beta, double* C, const int* ldc);

// B = alpha·B·L⁻ᵀ, L lower triangular.
void dtrsm_(const char* side, const char* uplo, const char* trans, const char* diag, const int* m, const int* n,
            const double* alpha, const double* L, const int* ldl, double* B, const int* ldb);

// Lower Cholesky factor in place; info = 0, or the number (from 1) of the first pivot that is not positive.
void dpotrf_(const char* uplo, const int* n, double* A, const int* lda, int* info);
}

// machine_rates [all-threads]
// What the machine itself gives, to judge the rates of a run by: double precision matrix product (n = 4000) with the
// OpenBLAS kernels that tarnvexo chooses, and memory bandwidth of a[i] = b[i] + s·c[i] (24 bytes per i), with one
// thread and with all, or with all alone. Best of several turns; JSON on standard output.
#include "ReadyEnvironment.h"
#include "core/LargeArray.h"
#include "core/Parallel.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <limits>
#include <vector>

extern "C" {
char* openblas_get_corename();
void openblas_set_num_threads(int threads);
enum CblasOrder { ColumnMajor = 102 };
enum CblasTranspose { NoTranspose = 111, Transposed = 112 };
void cblas_dgemm(CblasOrder, CblasTranspose, CblasTranspose, int m, int n, int k, double alpha, const double* A,
                 int lda, const double* B, int ldb, double beta, double* C, int ldc);
}

namespace {

using namespace tarnvexo;

constexpr int Turns = 3;
constexpr int ProductOrder = 4000;
constexpr std::size_t TriadLength = std::size_t(1) << 26; // three arrays of 512 MB: beyond every cache

template <class Work> double BestSeconds(Work work)
{
    double best = std::numeric_limits<double>::infinity();
    for (int turn = 0; turn < Turns; ++turn) {
        const auto start = std::chrono::steady_clock::now();
        work();
        best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    return best;
}

// C = A·Bᵀ, the form that the factorisation needs; operations per second.
double ProductRate(int threads)
{
    constexpr int n = ProductOrder;
    const std::vector<double> A(std::size_t(n) * n, 1.0 / 3.0), B(std::size_t(n) * n, 0.7);
    std::vector<double> C(std::size_t(n) * n, 0.0);
    openblas_set_num_threads(threads);
    const double seconds = BestSeconds([&] {
        cblas_dgemm(ColumnMajor, NoTranspose, Transposed, n, n, n, 1.0, A.data(), n, B.data(), n, 0.0, C.data(), n);
    });
    return 2.0 * n * n * n / seconds;
}

// Bytes per second.
double TriadRate(int threads, LargeArray& a, const LargeArray& b, const LargeArray& c)
{
    constexpr std::size_t grain = std::size_t(1) << 20;
    SetThreadCount(threads);
    const double seconds = BestSeconds([&] {
        ParallelFor(TriadLength, grain, [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) { a.Data()[i] = b.Data()[i] + 3.0 * c.Data()[i]; }
        });
    });
    return 3.0 * sizeof(double) * TriadLength / seconds;
}

} // namespace

int main(int argc, char** argv)
{
    StartWithBlasEnvironment(argv);
    const bool allThreadsOnly = argc == 2 && std::strcmp(argv[1], "all-threads") == 0;
    if (argc != 1 && !allThreadsOnly) {
        std::fprintf(stderr, "usage: machine_rates [all-threads]\n");
        return 2;
    }
    const int threads = ThreadCount();
    std::printf("{\"kernels\": \"OpenBLAS %s\", \"threads\": %d", openblas_get_corename(), threads);
    if (!allThreadsOnly) {
        std::printf(",\n \"dgemm_one_thread\": %.4g", ProductRate(1));
    }
    std::printf(",\n \"dgemm_all_threads\": %.4g", ProductRate(threads));
    LargeArray a(TriadLength), b(TriadLength), c(TriadLength);
    for (LargeArray* array : {&a, &b, &c}) { std::fill_n(array->Data(), TriadLength, 1.0); }
    if (!allThreadsOnly) {
        std::printf(",\n \"triad_one_thread\": %.4g", TriadRate(1, a, b, c));
    }
    std::printf(",\n \"triad_all_threads\": %.4g}\n", TriadRate(threads, a, b, c));
}

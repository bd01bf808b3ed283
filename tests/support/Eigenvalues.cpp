#include "support/Eigenvalues.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace tarnvexo::test {

namespace {

constexpr double Vanishing = 1e-12; // beside the largest eigenvalue
constexpr int MaximumSweeps = 60;   // ten suffice for the sizes of element matrices

double OffDiagonalSum(const std::vector<double>& a, std::size_t n)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < i; ++j) { sum += a[i * n + j] * a[i * n + j]; }
    }
    return sum;
}

// Rotates rows and columns p and q so that entry (p, q) vanishes.
void Rotate(std::vector<double>& a, std::size_t n, std::size_t p, std::size_t q)
{
    const double apq = a[p * n + q];
    if (apq == 0.0) {
        return;
    }
    const double tau = (a[q * n + q] - a[p * n + p]) / (2.0 * apq);
    const double t = (tau >= 0.0 ? 1.0 : -1.0) / (std::fabs(tau) + std::sqrt(1.0 + tau * tau));
    const double c = 1.0 / std::sqrt(1.0 + t * t);
    const double s = t * c;
    for (std::size_t k = 0; k < n; ++k) {
        const double kp = a[k * n + p], kq = a[k * n + q];
        a[k * n + p] = c * kp - s * kq;
        a[k * n + q] = s * kp + c * kq;
    }
    for (std::size_t k = 0; k < n; ++k) {
        const double pk = a[p * n + k], qk = a[q * n + k];
        a[p * n + k] = c * pk - s * qk;
        a[q * n + k] = s * pk + c * qk;
    }
}

} // namespace

std::vector<double> SymmetricEigenvalues(const double* K, int size)
{
    const auto n = static_cast<std::size_t>(size);
    std::vector<double> a(K, K + n * n);
    double previous = OffDiagonalSum(a, n);
    for (int sweep = 0; sweep < MaximumSweeps && previous > 0.0; ++sweep) {
        for (std::size_t p = 0; p + 1 < n; ++p) {
            for (std::size_t q = p + 1; q < n; ++q) { Rotate(a, n, p, q); }
        }
        const double sum = OffDiagonalSum(a, n);
        if (sweep > 5 && sum >= previous) {
            break; // only round-off is left
        }
        previous = sum;
    }
    std::vector<double> values(n);
    for (std::size_t i = 0; i < n; ++i) { values[i] = a[i * n + i]; }
    std::sort(values.begin(), values.end());
    return values;
}

int ZeroEigenvalues(const double* K, int n)
{
    const std::vector<double> values = SymmetricEigenvalues(K, n);
    const double limit = Vanishing * values.back();
    return static_cast<int>(
        std::count_if(values.begin(), values.end(), [limit](double value) { return std::fabs(value) < limit; }));
}

double SmallestResistance(const double* K, int n)
{
    const std::vector<double> values = SymmetricEigenvalues(K, n);
    const double limit = Vanishing * values.back();
    const auto smallest =
        std::find_if(values.begin(), values.end(), [limit](double value) { return std::fabs(value) >= limit; });
    return *smallest / values.back();
}

} // namespace tarnvexo::test

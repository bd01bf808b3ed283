#include "inertia/Solve3x3.h"

#include <cmath>
#include <utility>

namespace tarnvexo {

Vector3 Solve3x3(Matrix3 a, Vector3 b)
{
    int unknown[3] = {0, 1, 2}; // which unknown stands in each column
    for (int k = 0; k < 2; ++k) {
        int row = k, column = k;
        for (int i = k; i < 3; ++i) {
            for (int j = k; j < 3; ++j) {
                if (std::fabs(a[i][j]) > std::fabs(a[row][column])) {
                    row = i;
                    column = j;
                }
            }
        }
        std::swap(a[k], a[row]);
        std::swap(b[k], b[row]);
        for (auto& values : a) { std::swap(values[k], values[column]); }
        std::swap(unknown[k], unknown[column]);

        for (int i = k + 1; i < 3; ++i) {
            const double factor = -a[i][k] / a[k][k];
            for (int j = k; j < 3; ++j) { a[i][j] += factor * a[k][j]; }
            b[i] += factor * b[k];
        }
    }

    double y[3];
    for (int i = 2; i >= 0; --i) {
        double rest = b[i];
        for (int j = i + 1; j < 3; ++j) { rest -= a[i][j] * y[j]; }
        y[i] = rest / a[i][i];
    }
    Vector3 x;
    for (int i = 0; i < 3; ++i) { x[unknown[i]] = y[i]; }
    return x;
}

} // namespace tarnvexo

// elements/ShellTransform-inl.h
// Join of membrane and plate and the turn to global axes, K = Tᵀ·Klocal·T, in one step: T has one λ per three DOFs, so
// each 3x3 block X of Klocal turns by itself, λᵀ·X·λ. Membrane and plate are uncoupled, which leaves only two kinds of
// block: translations with translations and rotations with rotations couple in-plane with in-plane components and the
// normal one with itself (InPlane); translations with rotations couple in-plane with normal components (Across).
// Products with the zeros are left out; the others are added in the order of the full matrix product.
// For one element or for one in each lane of a vector (see elements/QuadGeometry-inl.h).
#if defined(TARNVEXO_SHELL_TRANSFORM_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef TARNVEXO_SHELL_TRANSFORM_INL
#undef TARNVEXO_SHELL_TRANSFORM_INL
#else
#define TARNVEXO_SHELL_TRANSFORM_INL
#endif

#include "elements/ShellTransform.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

// X = [x00 x01 0; x10 x11 0; 0 0 x22].
template <class Real> struct InPlaneBlock {
    Real x00, x01;
    Real x10, x11;
    Real x22;
};

// X = [0 0 x02; 0 0 x12; x20 x21 0].
template <class Real> struct AcrossBlock {
    Real x02;
    Real x12;
    Real x20, x21;
};

// Row a of λᵀ·X.
template <class Real> void RowOfProduct(const Real lambda[3][3], const InPlaneBlock<Real>& X, int a, Real row[3])
{
    row[0] = lambda[0][a] * X.x00 + lambda[1][a] * X.x10;
    row[1] = lambda[0][a] * X.x01 + lambda[1][a] * X.x11;
    row[2] = lambda[2][a] * X.x22;
}

template <class Real> void RowOfProduct(const Real lambda[3][3], const AcrossBlock<Real>& X, int a, Real row[3])
{
    row[0] = lambda[2][a] * X.x20;
    row[1] = lambda[2][a] * X.x21;
    row[2] = lambda[0][a] * X.x02 + lambda[1][a] * X.x12;
}

// λᵀ·X·λ into K from (row, column) on.
template <int n, class Real, class Block>
void RotateBlock(const Real lambda[3][3], const Block& X, Real K[n][n], int row, int column)
{
    for (int a = 0; a < 3; ++a) {
        Real product[3];
        RowOfProduct<Real>(lambda, X, a, product);
        for (int b = 0; b < 3; ++b) {
            K[row + a][column + b] = product[0] * lambda[0][b] + product[1] * lambda[1][b] + product[2] * lambda[2][b];
        }
    }
}

// Rows or columns of a node in the membrane (u, v, θz) and in the plate matrix (w, θx, θy).
struct PartDofs {
    int u, v, rz;
    int w, rx, ry;
};

inline PartDofs PartDofsOfNode(int node)
{
    const int m = MembraneDofsPerNode * node, p = PlateDofsPerNode * node;
    return {m + MembraneU, m + MembraneV, m + MembraneRZ, p + PlateW, p + PlateRX, p + PlateRY};
}

// K in global axes from membrane Km and plate Kb in local axes. Reads the node blocks i ≤ j and writes the upper
// triangle (of the blocks on the diagonal more than that).
template <class Real, int Nodes>
void ShellToGlobal(const Real lambda[3][3], const Real Km[MembraneDofsPerNode * Nodes][MembraneDofsPerNode * Nodes],
                   const Real Kb[PlateDofsPerNode * Nodes][PlateDofsPerNode * Nodes],
                   Real K[DofsPerNode * Nodes][DofsPerNode * Nodes])
{
    constexpr int n = DofsPerNode * Nodes;
    for (int i = 0; i < Nodes; ++i) {
        const PartDofs r = PartDofsOfNode(i);
        for (int j = i; j < Nodes; ++j) {
            const PartDofs c = PartDofsOfNode(j);
            const InPlaneBlock<Real> forces = {Km[r.u][c.u], Km[r.u][c.v], Km[r.v][c.u], Km[r.v][c.v], Kb[r.w][c.w]};
            const AcrossBlock<Real> forcesOfRotations = {Km[r.u][c.rz], Km[r.v][c.rz], Kb[r.w][c.rx], Kb[r.w][c.ry]};
            const AcrossBlock<Real> momentsOfTranslations = {Kb[r.rx][c.w], Kb[r.ry][c.w], Km[r.rz][c.u],
                                                             Km[r.rz][c.v]};
            const InPlaneBlock<Real> moments = {Kb[r.rx][c.rx], Kb[r.rx][c.ry], Kb[r.ry][c.rx], Kb[r.ry][c.ry],
                                                Km[r.rz][c.rz]};
            const int row = DofsPerNode * i, column = DofsPerNode * j;
            RotateBlock<n>(lambda, forces, K, row + DX, column + DX);
            RotateBlock<n>(lambda, forcesOfRotations, K, row + DX, column + RX);
            if (i < j) {
                RotateBlock<n>(lambda, momentsOfTranslations, K, row + RX, column + DX);
            }
            RotateBlock<n>(lambda, moments, K, row + RX, column + RX);
        }
    }
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#endif // once for each vector unit

// elements/GradientStiffness-inl.h
// Stiffness of one pair of nodes against a symmetric gradient: Bᵢᵀ·D·Bⱼ with B = [∂x 0; 0 ∂y; ∂y ∂x] of a node and an
// isotropic D. Serves plane stress, ε of (u, v), and plate bending, κ of the section rotations (βx, βy) = (θy, −θx).
// Products with the zeros of B and D are left out; the others are added in the order of the full matrix product.
#if defined(TARNVEXO_GRADIENT_STIFFNESS_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef TARNVEXO_GRADIENT_STIFFNESS_INL
#undef TARNVEXO_GRADIENT_STIFFNESS_INL
#else
#define TARNVEXO_GRADIENT_STIFFNESS_INL
#endif

#include "elements/Elasticity.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

// D·B of a node: stresses of a unit displacement along x and along y.
template <class Real> struct GradientStress {
    Real x[PlaneStrainCount];
    Real y[PlaneStrainCount];
};

template <class Real>
GradientStress<Real> StressOfNode(const IsotropicPlane<Real>& D, const Real& dNdx, const Real& dNdy)
{
    return {{dNdx * D.D11, dNdx * D.D12, dNdy * D.D33}, {dNdy * D.D12, dNdy * D.D11, dNdx * D.D33}};
}

// Bᵢᵀ·D·Bⱼ: row i along x and y, column j along x and y.
template <class Real> struct GradientBlock {
    Real xx, xy;
    Real yx, yy;
};

template <class Real>
GradientBlock<Real> StiffnessOfNodes(const GradientStress<Real>& stress, const Real& dNdx, const Real& dNdy)
{
    return {stress.x[EpsX] * dNdx + stress.x[GammaXY] * dNdy, stress.x[EpsY] * dNdy + stress.x[GammaXY] * dNdx,
            stress.y[EpsX] * dNdx + stress.y[GammaXY] * dNdy, stress.y[EpsY] * dNdy + stress.y[GammaXY] * dNdx};
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#endif // once for each vector unit

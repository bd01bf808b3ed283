// elements/Elasticity.h
// Isotropic material matrices of thin walls. Real: double, or as many numbers as a vector has lanes, one element in
// each.
#pragma once

namespace tarnvexo {

enum PlaneStrain { EpsX, EpsY, GammaXY, PlaneStrainCount };
enum Curvature { KappaX, KappaY, KappaXY, CurvatureCount };
enum PlateShear { GammaXZ, GammaYZ, PlateShearCount };

// G = E / (2·(1 + ν))
inline double ShearModulus(double E, double Mu)
{
    return E * 0.5 / (1.0 + Mu);
}

// factor · [1 ν 0; ν 1 0; 0 0 (1-ν)/2]
inline void IsotropicPlaneMatrix(double factor, double Mu, double D[3][3])
{
    D[0][0] = D[1][1] = factor;
    D[0][1] = D[1][0] = factor * Mu;
    D[0][2] = D[1][2] = D[2][0] = D[2][1] = 0.0;
    D[2][2] = factor * (1.0 - Mu) / 2.0;
}

// Plane stress: σ = D·ε.   force/length²
inline void PlaneStressMatrix(double E, double Mu, double D[3][3])
{
    IsotropicPlaneMatrix(E / (1.0 - Mu * Mu), Mu, D);
}

// Plate bending: M = Db·κ.   force·length
inline void PlateRigidity(double E, double Mu, double t, double Db[3][3])
{
    IsotropicPlaneMatrix(E * t * t * t / (12.0 * (1.0 - Mu * Mu)), Mu, Db);
}

// Transverse shear of a plate: Q = k·γ, k = 5/6·G·t.   force/length
inline double PlateShearRigidity(double E, double Mu, double t)
{
    return E * t / (2.0 * (1.0 + Mu) * 1.2);
}

// Drilling rotation: penalty γ·(θz − ½(∂v/∂x − ∂u/∂y))² per unit area.   force/length
// Deliberate: ten times G·t, not the customary fraction of it: drilling rotations follow the membrane closely, at the
// price of coarse curved meshes being stiff.
inline double DrillingPenalty(double E, double Mu, double t)
{
    return 10.0 * ShearModulus(E, Mu) * t;
}

// The entries of an isotropic matrix [D11 D12 0; D12 D11 0; 0 0 D33]: all that the stiffness kernels read of it.
template <class Real> struct IsotropicPlane {
    Real D11;
    Real D12;
    Real D33;
};

// What the stiffness of a shell depends on besides its shape.
template <class Real> struct ShellRigidity {
    Real thickness;
    IsotropicPlane<Real> membrane; // PlaneStressMatrix
    IsotropicPlane<Real> bending;  // PlateRigidity
    Real shear;                    // PlateShearRigidity
    Real drilling;                 // DrillingPenalty
};

inline ShellRigidity<double> ShellRigidityOf(double E, double Mu, double t)
{
    double D[3][3], Db[3][3];
    PlaneStressMatrix(E, Mu, D);
    PlateRigidity(E, Mu, t, Db);
    return {t,
            {D[0][0], D[0][1], D[2][2]},
            {Db[0][0], Db[0][1], Db[2][2]},
            PlateShearRigidity(E, Mu, t),
            DrillingPenalty(E, Mu, t)};
}

} // namespace tarnvexo

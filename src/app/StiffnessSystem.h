// app/StiffnessSystem.h
// The equations K·u = f of a whole model behind the sparse engines, stage by stage: order, analyse, assemble and
// factorise, solve. Vectors outside are in the model's numbering, equation DofsPerNode·node + DOF.
#pragma once

#include "app/SolveOptions.h"
#include "app/SolveReport.h"
#include "core/ModelStore.h"
#include "solver/SparseEngine.h"

#include <memory>
#include <string>
#include <vector>

namespace tarnvexo {

// Models of at most this many equations go to the skyline engine unless another is named: it is as fast there.
constexpr std::int64_t FewEquations = 3000;

class StiffnessSystem {
public:
    // Errors: throws RunFailure when the engine cannot be loaded.
    StiffnessSystem(const ModelStore& model, SolverKind kind);

    void Order();

    // Errors: throws RunFailure (bad model) when the engine cannot address the factor.
    void Analyse(const std::string& modelFile);
    // From now on factors stand in a scratch file in this directory. Errors: throws RunFailure (usage) where the engine
    // cannot do that.
    void KeepFactorOnDisk(const std::string& directory, const std::string& modelFile);

    const FactorSize& Size() const { return size; }
    const BlockPattern& Pattern() const { return matrix.pattern; }

    void Assemble();

    // Takes the equations with isHeld != 0 out of the system and factorises. Pivots that are not positive or next to
    // nothing are traced (app/Mechanisms), all in one run.
    // Errors: throws RunFailure (numerical) where the stiffness is not positive definite; the text names the places.
    void Factorise(const std::vector<unsigned char>& isHeld, const std::string& modelFile);

    // Displacements for the loads, refined where they have lost digits (solver/Refinement); held equations get zero,
    // whatever their load.
    std::vector<double> Solve(const std::vector<double>& loads);

    // About motions that meet next to no resistance, a complete message; empty: none.
    const std::string& Warning() const { return warning; }

    // ½·uᵀ·K·u and the relative residual of the last solution.
    double StrainEnergy() const { return strainEnergy; }

    // Engine, ordering, size, pivots and residual, as far as known.
    SolverReport Report() const { return report; }

private:
    std::vector<double> ToEliminationOrder(const std::vector<double>& vector) const;
    std::vector<double> ToModelOrder(const std::vector<double>& vector) const;
    PivotReport FactoriseMatrix();
    bool ReportPivots(const std::vector<double>& diagonal, const PivotReport& pivots);
    void TraceMechanisms(bool isPositive, const std::string& modelFile);

    const ModelStore& model;
    std::unique_ptr<SparseEngine> engine;
    EngineKind engineKind;
    EliminationOrder order;
    BlockMatrix matrix;
    FactorSize size;
    std::vector<unsigned char> held; // elimination order
    double strainEnergy = 0.0;
    std::string warning;
    std::string inertiaLine; // of a message about pivots that are not positive; empty: the engine does not tell
    SolverReport report;
};

} // namespace tarnvexo

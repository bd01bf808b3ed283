// solver/MultifrontalEngine.h
// Multifrontal L·S·Lᵀ of matrices of node blocks, S = diag(±1): the program's own sparse engine. It needs no library,
// no BLAS, and takes any order of elimination (solver/NodeOrdering).
//
//     tree        which columns are eliminated together      solver/FrontTree, by the cost of solver/FrontCost
//     schedule    which thread computes what, and where      solver/FrontSchedule
//     numbers     assemble a front, eliminate it             solver/FrontElimination on solver/FrontKernels
//     factor      in memory or in a scratch file             solver/FactorStore
//     solution    down the tree and up again                 solver/MultifrontalSolution.cpp
//
// Rows are not exchanged. A pivot may have any sign; one that is zero or no number is told, its equation is left out
// and the factorisation goes on, so that all of them come out in one run. Results are the same to the last bit for any
// number of threads.
// Source: I. S. Duff, J. K. Reid, ACM Trans. Math. Softw. 9 (1983) 302–325.
#pragma once

#include "solver/FactorStore.h"
#include "solver/FrontElimination.h"
#include "solver/FrontSchedule.h"
#include "solver/FrontTree.h"
#include "solver/SparseEngine.h"

namespace tarnvexo {

class MultifrontalEngine : public SparseEngine {
public:
    explicit MultifrontalEngine(int threads) : threads(threads) {}

    std::string Name() const override;
    std::string Kernels() const override;

    FactorSize Analyse(const BlockPattern& pattern) override;
    PivotReport Factorise(const BlockMatrix& matrix) override;
    void Solve(double* vectors, int count) override;
    bool KeepFactorIn(const std::string& directory) override;

private:
    struct Workspace;
    struct Vectors;

    FrontArray PanelOf(int front, int stack);
    FrontUpdate UpdateOf(int front, int stack, const Workspace& work) const;
    void ComputeFront(int front, CrewMember& member, int stack, const Workspace& work);
    void AssembleColumns(int front, IndexRange blockColumns, const FrontArray& to, int stack,
                         const Workspace& work) const;
    void SolveDown(int front, CrewMember& member, int stack, const Vectors& vectors);
    void SolveUp(int front, CrewMember& member, int stack, const Vectors& vectors);

    int threads;
    FrontTree tree;
    FrontSchedule schedule;
    UpdatePlaces updatePlaces; // of what is left of each front
    UpdatePlaces vectorPlaces; // of a vector of its height
    FactorStore store;
    std::vector<double> signs;             // [6·columns] in the order of the fronts, as are these
    std::vector<double> pivots;            //
    std::vector<unsigned char> isPositive; // [fronts] all its pivots are
};

} // namespace tarnvexo

// app/SolveReport.h
// What `tarnvexo solve` and `tarnvexo info` know at their end, as plain data: the command line prints it as text and as
// JSON. Units are those of the model file unless a name says otherwise; nodes and elements by their numbers there.
#pragma once

#include "checks/Finding.h"
#include "core/Dofs.h"
#include "core/Vector3.h"
#include "inertia/BalanceSheet.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnvexo {

struct ModelCounts {
    int nodes = 0;
    int quads = 0;
    int tris = 0;
    int beams = 0;
    int materials = 0;
    int thicknesses = 0;
    int beamSections = 0;
    int restrainedDofs = 0;
    int nodalForces = 0;
    int distributedLoads = 0;
    std::int64_t equations = 0;
    Vector3 boxMin = {}, boxMax = {}; // bounding box of the nodes
};

struct NodeDof {
    int node = 0;
    Dof dof = DX;
};

// One connected part of the structure.
struct PartReport {
    int nodes = 0;
    int elements = 0;
    int firstNode = 0;
    int restrainedDofs = 0;
    int freeMotions = 0;                      // rigid motions that the supports leave, 0 ... 6
    std::vector<std::string> freeMotionTexts; // what they are: "free to rotate about ..."
    Vector3 middle = {};                      // of the box around its nodes
    std::vector<NodeDof> holds;               // held while solving, one per free motion
    bool massOrthogonal = false;              // the displacement given is orthogonal to the free motions
};

// How the equations were or would be solved.
struct SolverReport {
    std::string engine;   // "multifrontal LLᵀ", "skyline LDLᵀ"
    std::string ordering; // "bisection on nodes", "AMD on nodes", "METIS on nodes", "reverse Cuthill-McKee on nodes"
    std::string kernels;  // "Highway AVX3", "OpenBLAS 0.3.21 SkylakeX"
    int threads = 1;
    std::int64_t factorEntries = 0;
    double factorGigabytes = 0.0;
    std::string scratchDirectory;    // of the file that keeps the factor; empty: it is kept in memory
    double factorOperations = 0.0;   // additions and multiplications
    double smallestPivotRatio = 0.0; // smallest pivot against the diagonal of the stiffness at the same place
    NodeDof smallestPivot;
    double conditionEstimate = 0.0; // lower bound: that of the matrix scaled to a unit diagonal is at least this
    double relativeResidual = 0.0;  // |f − K·u| / (|K|·|u| + |f|), largest entries, of forces or of moments
    int refinementSteps = 0;
    double residualBeforeRefinement = 0.0;
    // Of the largest translation or rotation, estimates, 1 where no digit is right; none where nothing called for a
    // correction (solver/Refinement).
    std::optional<double> displacementErrorBefore;
    std::optional<double> displacementError;
};

struct SupportReaction {
    NodeDof at;
    double value = 0.0;
    bool hold = false; // an additional hold, not a support of the model file
};

struct ExtremeValue {
    double value = 0.0;
    int node = -1;
    int element = -1; // with kind "quad", "tri", "beam" where an element is meant
    std::string kind;
    Vector3 place = {};
};

// Smallest and largest value of a component, "dx" ... "rz" at the nodes, "SX" ... "TYZ" on both faces.
struct ComponentExtremes {
    std::string name;
    ExtremeValue smallest;
    ExtremeValue largest;
};

struct StageTime {
    std::string name; // "read", "order", "assemble", ...
    double seconds = 0.0;
    double memoryGigabytes = 0.0; // resident at its end
};

struct ResultFile {
    std::string path;
    std::uint64_t bytes = 0;
};

enum class Verdict { Pass, Warn, Fail };

// One check of the results (app/ResultChecks). It warns above warnLimit and fails above failLimit, which is infinite
// where it never fails.
struct ResultCheck {
    std::string name;
    Verdict verdict = Verdict::Pass;
    double value = 0.0;
    double warnLimit = 0.0;
    double failLimit = 0.0;
    std::string text;               // what was found, where, and what to do
    std::vector<std::string> files; // result files not to be trusted when it fails; none named: all of them
};

struct SolveReport {
    std::string modelFile;
    ModelCounts counts;
    std::vector<Finding> findings; // of the model before it was solved; no errors among them
    std::vector<PartReport> parts;
    BalanceSheet balance;
    SolverReport solver;
    std::vector<SupportReaction> reactions; // of restrained and held directions
    double largestReaction = 0.0;           // forces only; against balance.forceSize it must vanish
    double strainEnergy = 0.0; // ½·uᵀ·K·u; against ½·fᵀ·u it shows the residual where it matters, not a wrong K
    double externalWork = 0.0;
    ExtremeValue largestDisplacement;
    ExtremeValue largestRotation;
    ExtremeValue largestShellStress;                     // equivalent, averaged at the nodes as in the result files
    ExtremeValue largestBeamStress;                      // the same, on the section walls
    std::vector<ComponentExtremes> displacementExtremes; // one per direction
    std::vector<ComponentExtremes> shellStressExtremes;  // averaged as in the result files; empty without shells
    std::vector<ComponentExtremes> beamStressExtremes;   // the same, on the section walls
    std::vector<ResultCheck> resultChecks;
    std::vector<ResultFile> files;
    std::vector<StageTime> stages;
    double seconds = 0.0; // whole run
    double peakMemoryGigabytes = 0.0;
    double expectedMemoryGigabytes = 0.0; // the peak, as estimated before the factorisation
    std::vector<std::string> warnings;    // each a text of one or several lines, without a line end behind it
    std::string fileFault;                // result files could not be written; empty: they are, or none were wanted
};

// What `tarnvexo info` tells without solving.
struct InfoReport {
    std::string modelFile;
    ModelCounts counts;
    std::vector<Finding> findings;
    std::vector<PartReport> parts;
    BalanceSheet balance;
    SolverReport solver;             // factor size and operations of the sparse engine
    std::int64_t skylineEntries = 0; // of the console run's matrix, in the file's numbering
    double skylineGigabytes = 0.0;
    double skylineOperations = 0.0;
    double expectedSeconds = 0.0;         // of `tarnvexo solve` on this machine
    double expectedSkylineSeconds = 0.0;  // of the console run
    double expectedMemoryGigabytes = 0.0; // of `tarnvexo solve`
    double availableMemoryGigabytes = 0.0;
    std::vector<std::string> warnings;
    std::string fault; // why solve refuses the model, one or several complete messages; empty: it does not
};

} // namespace tarnvexo

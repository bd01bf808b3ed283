// app/SolveOptions.h
// What a user may choose for `tarnvexo solve`.
#pragma once

#include "core/Rules.h"
#include "inertia/BalanceSheet.h"

#include <string>

namespace tarnvexo {

enum class SolverKind { Automatic, Sparse, Skyline };
enum class DisplacementKind { MassOrthogonal, Held };

struct SolveOptions {
    std::string modelFile;
    std::string outputDirectory = "."; // made if it is missing
    SolverKind solver = SolverKind::Automatic;
    BalanceKind balance = BalanceKind::Exact;
    DisplacementKind displacements = DisplacementKind::MassOrthogonal;
    RuleBook rules;
    bool writeResults = true; // the six files; without them only the report
};

} // namespace tarnvexo

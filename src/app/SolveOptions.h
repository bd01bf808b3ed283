// app/SolveOptions.h
// What a user may choose for `tarnvexo solve`.
#pragma once

#include "app/ResultFormats.h"
#include "app/ResultWriting.h"
#include "core/Rules.h"
#include "inertia/BalanceSheet.h"

#include <string>

namespace tarnvexo {

enum class SolverKind { Automatic, Sparse, Cholmod, Skyline };
enum class FactorPlace { Automatic, Memory, Disk }; // Automatic: on disk where memory does not hold it
enum class DisplacementKind { MassOrthogonal, Held };

struct SolveOptions {
    std::string modelFile;
    std::string outputDirectory = "."; // made if it is missing
    SolverKind solver = SolverKind::Automatic;
    FactorPlace factor = FactorPlace::Automatic;
    BalanceKind balance = BalanceKind::Exact;
    DisplacementKind displacements = DisplacementKind::MassOrthogonal;
    RuleBook rules;                               // severities and limits of the model checks
    ResultFormats formats = {ResultFormat::Text}; // none: only the report
    ReportWriter jsonText;                        // needed for ResultFormat::Json
};

} // namespace tarnvexo

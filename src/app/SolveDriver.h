// app/SolveDriver.h
// The runs behind the command line: `tarnvexo solve` and `tarnvexo info`, from a model file to a report. Calls in
// order; nothing is printed here: progress goes to a listener, the outcome into the report.
#pragma once

#include "app/SolveReport.h"

#include <functional>
#include <stdexcept>
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
    bool writeResults = true; // the six files; without them only the report
};

// State of a run for a progress display, sent when a stage begins and when it ends.
struct Progress {
    const char* stage = "";    // "read", "order", ...
    int number = 0;            // of this stage, from 1
    int stages = 0;            // in all
    bool ended = false;        // false: begins
    double stageSeconds = 0.0; // of this stage, when it has ended
    double seconds = 0.0;      // since the run began
    double secondsLeft = 0.0;  // estimate for the rest of the run; 0: not known yet
    double memoryGigabytes = 0.0;
};
using ProgressListener = std::function<void(const Progress&)>;

// A run that cannot go on. The text is complete (what, where, expected, to do) and without a line end behind it.
struct RunFailure : std::runtime_error {
    RunFailure(int exitCode, const std::string& text) : std::runtime_error(text), exitCode(exitCode) {}
    int exitCode;
};

// Exit codes of the command line.
enum ExitCode { ExitGood = 0, ExitBadModel = 1, ExitUsage = 2, ExitNumerical = 3, ExitFile = 4, ExitInterrupted = 130 };

// Throws RunFailure. Result files appear under their names only when they are complete.
SolveReport Solve(const SolveOptions& options, const ProgressListener& listener);

InfoReport Info(const std::string& modelFile, const ProgressListener& listener);

} // namespace tarnvexo

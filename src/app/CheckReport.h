// app/CheckReport.h
// What `tarnvexo check` knows at its end, as plain data: the command line prints it as text and as JSON. Units are
// those of the model file; nodes and elements by their numbers there.
#pragma once

#include "app/SolveReport.h"
#include "checks/Finding.h"
#include "input/SourceDiagnostics.h"

#include <optional>
#include <string>
#include <vector>

namespace tarnvexo {

struct CheckOptions {
    std::string modelFile;
    RuleBook rules;
};

// A complete message, of one or several lines and without a line end behind it, about what no rule of the model checks
// finds: a model without elements, loads that nothing balances.
struct CheckMessage {
    Severity severity = Severity::Error;
    std::string text;
};

struct CheckReport {
    std::string modelFile;
    StrictReading reading;               // what is to be said of the text of the file
    bool isRead = false;                 // without it there are reading and messages and nothing else
    ModelCounts counts;                  // of the file
    std::vector<CheckMessage> messages;  // about the model as a whole and its balance
    std::vector<Finding> findings;       // in the order of RuleId
    std::vector<PartReport> parts;       // empty where elements are too bad to tell
    std::optional<BalanceSheet> balance; // the exact one, where the loads have it
    std::vector<StageTime> stages;
    double seconds = 0.0;
    double peakMemoryGigabytes = 0.0;
};

// What reading, rules and messages have of a severity. Without errors the model can be solved.
int CountOf(const CheckReport& report, Severity severity);

} // namespace tarnvexo

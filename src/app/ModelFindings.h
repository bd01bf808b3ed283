// app/ModelFindings.h
// What findings of the model checks mean for a run: which rules it looks at, what stops it, and how it says so.
#pragma once

#include "checks/Finding.h"
#include "inertia/BalanceSheet.h"

#include <string>
#include <vector>

namespace tarnvexo {

// The rules before solving. Notes are not looked for. The classic balance counts loads on nodes without elements, as
// the console run does, and holds parts that float: there both are a warning, unless the user has set their severity.
RuleBook RulesForSolving(RuleBook rules, BalanceKind balance);

// No error among them says that an element has neither stiffness nor mass, or no direction: only then can parts, mass
// and balance be had.
bool HaveSoundElements(const std::vector<Finding>& findings);

// An error among them says that a quadrilateral crosses itself or is concave: it may then have no area either, which
// needs no second message.
bool TellsOfShape(const std::vector<Finding>& findings);

// "quad 17", "part 2"
std::string OffenderName(const Offender& offender);

// Does the offender stand at a place? Materials and thicknesses do not.
bool HasPlace(const Offender& offender);

// Further findings of a model, all in the order of RuleId.
void AddFindings(const std::vector<Finding>& more, std::vector<Finding>& findings);

// Complete messages, one behind the other; either may be empty.
std::string JoinedMessages(const std::string& one, const std::string& other);

// Why a model is not solved: all errors with their worst offenders, a complete message each; empty: none.
std::string FindingsFault(const std::vector<Finding>& findings, const std::string& modelFile);

} // namespace tarnvexo

// cli/ReportPhrases.h
// Pieces of text that several reports say in the same words.
#pragma once

#include "app/SolveReport.h"
#include "cli/Quantities.h"

#include <string>

namespace tarnvexo {

// "1.5 kg", "1.5"
std::string WithUnit(double value, const char* unit);

// Two significant digits, for shares and remainders.
std::string ShareText(double share);

// How many leading digits are right with a relative error: 1e-7 gives "7", 1 and more "0".
std::string DigitsText(double error);

// "no free rigid motion", "2 free rigid motions"
std::string FreeMotionText(int count);

// "118 nodes, 100 elements, from node 0 on; 3 directions restrained; 3 free rigid motions; free to rotate about ..."
std::string PartText(const PartReport& part);

// What the balance leaves.
std::string BalanceSummary(const BalanceSheet& balance);

// The accelerations that balance the loads: large ones tell of a structure that was meant to stand on its supports.
std::string AccelerationSummary(const BalanceSheet& balance, const UnitTexts& unit);

} // namespace tarnvexo

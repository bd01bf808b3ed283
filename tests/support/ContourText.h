// support/ContourText.h
// The text of a contour file from what was read of one: the counterpart of input/ContourFileReader for tests and the
// fuzzer, which ask that reading and writing give the same bytes.
#pragma once

#include "input/ContourFileReader.h"

#include <string>

namespace tarnvexo::test {

std::string ContourText(const ContourModel& model);

} // namespace tarnvexo::test

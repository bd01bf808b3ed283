// input/FormatFaults.h
// The words for places of a model text that are not as the format has them.
#pragma once

#include "input/ModelTables.h"
#include "input/ScanDiagnostics.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnvexo {

// A scan that did not match, of a record (or header) that begins at a position; `layout`: how all of it is written.
// What stands there is quoted from the begin of its word, though it may begin as it should:
//     beam 3: found "BeamSecoz=0.005" where "BeamSecOz=" belongs
TextFault MismatchFault(std::string_view text, const ScanResult& scan, std::size_t recordBegin,
                        const std::string& subject, const std::string& layout);

// Text in the line of something that is complete.
TextFault TextBehindFault(std::string_view text, std::size_t position, const std::string& subject);

// Another number of records than was counted.
TextFault CountFault(const Table& table, long long records);

// The text ends too early; `where`: "within node 7".
TextFault EndFault(std::string_view text, const std::string& where, const std::string& expected);

} // namespace tarnvexo

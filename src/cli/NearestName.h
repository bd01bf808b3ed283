// cli/NearestName.h
// "Did you mean": the name that a misspelt one most likely stands for.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tarnvexo {

// Letters to insert, delete or replace to get from one text to the other (Levenshtein's distance).
// Source: R. A. Wagner, M. J. Fischer, J. ACM 21 (1974) 168–173.
std::size_t EditDistance(const std::string& from, const std::string& to);

// The name nearest to the one given, hyphens in front, "=value" behind and capitals aside; a name that begins with it
// is nearest. Empty when more than about a third of the letters would have to change.
std::string NearestName(const std::string& given, const std::vector<std::string>& names);

} // namespace tarnvexo

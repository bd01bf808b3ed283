#include "cli/NearestName.h"

#include <algorithm>
#include <numeric>

namespace tarnvexo {

namespace {

// Lower case, without hyphens in front and without "=value" behind.
std::string BareName(std::string text)
{
    text = text.substr(0, text.find('='));
    text.erase(0, std::min(text.find_first_not_of('-'), text.size()));
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return text;
}

} // namespace

std::size_t EditDistance(const std::string& from, const std::string& to)
{
    // row[j]: distance of the first i letters of `from` to the first j letters of `to`
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t(0));
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

std::string NearestName(const std::string& given, const std::vector<std::string>& names)
{
    constexpr std::size_t shortestBeginning = 2;
    const std::string bare = BareName(given);
    std::string nearest;
    std::size_t least = bare.size() / 3 + 2; // one more than is accepted
    for (const std::string& name : names) {
        const std::string candidate = BareName(name);
        const bool begun = bare.size() >= shortestBeginning && candidate.starts_with(bare);
        const std::size_t distance = begun ? 0 : EditDistance(bare, candidate);
        if (distance < least && distance < std::min(bare.size(), candidate.size())) {
            least = distance;
            nearest = name;
        }
    }
    return nearest;
}

} // namespace tarnvexo

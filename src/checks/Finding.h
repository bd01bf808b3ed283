// checks/Finding.h
// What a rule found in a model: how many, and the worst of them. One finding per rule, however many places break it.
#pragma once

#include "core/Rules.h"
#include "core/Vector3.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tarnvexo {

// Offenders that a finding keeps.
constexpr std::size_t WorstKept = 10;

struct Offender {
    const char* kind = "node"; // "node", "quad", "tri", "beam", "part", "material", "thickness"
    int number = -1;           // position in its table; parts, which have none, count from 1 as in reports
    double value = 0.0;        // in the measure of the rule; 0 where it has no limit
    Vector3 place = {};        // of the node, or the middle of the element or edge, in the model file's coordinates
    std::string detail;        // "with quad 17", "corner at node 4"; may be empty
};

struct Finding {
    RuleId rule;
    Severity severity;
    double limit;
    std::int64_t count = 0;
    std::vector<Offender> worst; // worst first; equal ones by kind and number
    std::string summary = {};    // about all of them together: "35.2 long in all"; may be empty
};

// Gathers what breaks one rule. Larger badness is worse; only those that may be among the worst are built, so that a
// check costs no text per offender:
//     FindingCollector warped(RuleId::Warping, rules);
//     if (warped.Adds(angle)) { warped.Keep({"quad", e, angle, middle, ""}, angle); }
class FindingCollector {
public:
    FindingCollector(RuleId rule, const RuleBook& rules);

    bool IsOn() const { return finding.severity != Severity::Off; }
    double Limit() const { return finding.limit; }

    // Counts an offender. True: it is one of the worst so far, and Keep must follow.
    bool Adds(double badness);
    void Keep(Offender offender, double badness);

    // Takes over what another collector of the same rule found in the places behind those of this one. Collectors of
    // successive ranges, merged in the order of the ranges, give the finding of one collector that saw them all.
    void Merge(FindingCollector&& later);

    // What is to be said of all of them together.
    void Summarise(std::string summary);

    // Appends the finding, if there is any, to the list.
    void AppendTo(std::vector<Finding>& findings);

private:
    struct Kept {
        Offender offender;
        double badness;
    };

    Finding finding;
    std::vector<Kept> kept; // worst first
};

} // namespace tarnvexo

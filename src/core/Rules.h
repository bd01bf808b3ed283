// core/Rules.h
// The rules that a model is held to before it is solved, in one table: name, severity, limit, what a finding means and
// what to do about it. A user may change severity and limit of any rule, one by one, for a run.
//
// Error: `tarnvexo solve` does not start, `tarnvexo check` ends with exit code 1. Warning: told, and the run goes on.
// Note: told by `check` alone. Off: not looked for.
#pragma once

#include <array>
#include <cstddef>

namespace tarnvexo {

enum class Severity { Off, Note, Warning, Error };

enum class RuleId {
    // The text of the model file.
    Format,
    MaterialValue,
    ThicknessValue,
    SectionValue,
    BeamOrientation,
    DuplicateRestraint,
    DuplicateLoad,
    TrailingText,
    LabelOrder,
    LabelsFromOne,
    LabelGap,
    FlagValue,
    // Shape of elements.
    CollapsedElement,
    ZeroArea,
    SelfCrossing,
    InvertedQuad,
    ConcaveQuad,
    Warping,
    AspectRatio,
    QuadAngle,
    TriAngle,
    Taper,
    ThickShell,
    ZeroLengthBeam,
    // How elements meet.
    DuplicateElement,
    CoincidentNodes,
    FreeEdge,
    TJunction,
    OpposedNormals,
    ThicknessJump,
    DensityJump,
    LooseBeamEnd,
    UnusedNode,
    DisconnectedParts,
    // Loads, supports and balance.
    UnstiffenedLoad,
    UnstiffenedSupport,
    NoLoad,
    MixedUnits,
    FloatingPart,
    UnbalancedPart,
    SupportsInBalance,
    Count
};
constexpr std::size_t RuleCount = static_cast<std::size_t>(RuleId::Count);

// A limit of NoLimit: the rule has none, and none can be set.
constexpr double NoLimit = -1.0;

struct Rule {
    RuleId id;
    const char* name; // as on the command line, in reports and in JSON: "aspect-ratio"
    Severity severity;
    double limit;
    const char* measure; // what the limit is of, with its unit; empty without a limit
    const char* finding; // what was found, behind a number: "shells with a long and a short side"
    const char* toDo;
};

const Rule& RuleOf(RuleId id);

// nullptr: no rule has that name.
const Rule* RuleNamed(const char* name);

// "error", "warning", "note", "off".
const char* SeverityName(Severity severity);

// What the model of one run is held to: severities and limits, those of the table until they are set, and the units that
// the user says it has.
class RuleBook {
public:
    RuleBook();

    Severity SeverityOf(RuleId id) const { return severities[static_cast<std::size_t>(id)]; }
    double LimitOf(RuleId id) const { return limits[static_cast<std::size_t>(id)]; }
    bool IsOn(RuleId id) const { return SeverityOf(id) != Severity::Off; }
    bool IsSeveritySet(RuleId id) const { return isSet[static_cast<std::size_t>(id)]; } // not the table's, or told so

    void SetSeverity(RuleId id, Severity severity)
    {
        severities[static_cast<std::size_t>(id)] = severity;
        isSet[static_cast<std::size_t>(id)] = true;
    }
    void SetLimit(RuleId id, double limit) { limits[static_cast<std::size_t>(id)] = limit; }

    // Name in checks/UnitSystems.h, "N, mm, t"; empty: not said.
    const char* DeclaredUnits() const { return declaredUnits; }
    void DeclareUnits(const char* name) { declaredUnits = name; }

private:
    std::array<Severity, RuleCount> severities;
    std::array<double, RuleCount> limits;
    std::array<bool, RuleCount> isSet = {};
    const char* declaredUnits = "";
};

} // namespace tarnvexo

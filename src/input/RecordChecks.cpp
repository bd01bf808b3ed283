#include "input/RecordChecks.h"

#include "input/TextPlaces.h"

#include <algorithm>
#include <string>
#include <utility>

namespace tarnvexo {

namespace {

constexpr double SmallestSine = 1e-6; // between a beam and its orientation
// Of the largest component of an orientation: its products with coordinates stay within the range of a double.
constexpr double ShortestOrientation = 1e-100, LongestOrientation = 1e100;

double LargestComponent(const Vector3& v)
{
    return std::max({std::fabs(v[0]), std::fabs(v[1]), std::fabs(v[2])});
}

// Scaled to a largest component of 1, so that no product leaves the range of a double.
Vector3 Scaled(const Vector3& v)
{
    const double largest = LargestComponent(v);
    return largest > 0.0 ? v / largest : v;
}

// The element keeps the point that the orientation leads to: beside large coordinates a short one is rounded away.
bool HasUsableLength(const Vector3& orientation, const Vector3& start)
{
    const double size = LargestComponent(orientation);
    const double lost = LargestComponent((start + orientation) - start - orientation);
    return size >= ShortestOrientation && size <= LongestOrientation && lost <= SmallestSine * size;
}

} // namespace

bool RecordChecks::IsOutside(int index, TableId id, std::size_t position, const RecordName& name)
{
    if (index >= 0 && tables[id].limit == INT_MAX) {
        return true;
    }
    if (diagnostics.Adds(RuleId::Format, position)) {
        TextFault fault = OutsideTable(text, tables[id], index, position, name);
        if (tables[id].CountsFromOne()) {
            fault.toDo = Joined({"lower every number of a ", tables[id].record,
                                 " by 1, if they count from 1 as the table does: the first one has the number 0"});
        }
        diagnostics.Keep(RuleId::Format, std::move(fault));
    }
    return false;
}

bool RecordChecks::IsNotFinite(std::size_t position, const RecordName& name)
{
    diagnostics.Report(RuleId::Format,
                       {position,
                        Joined({NameOf(name), ": \"", WrittenNumber(text, position), "\" is not a finite number"}),
                        "a finite number", "correct the number"});
    return false;
}

void RecordChecks::CheckMaterial(const Material& material, const std::size_t positions[3], const RecordName& name)
{
    const auto check = [&](double value, bool isGood, std::size_t position, const char* key, const char* expected) {
        if (IsFinite(value, position, name) && !isGood && !HasDecimalComma(text, position) &&
            diagnostics.Adds(RuleId::MaterialValue, position)) {
            diagnostics.Keep(RuleId::MaterialValue,
                             {position, Joined({NameOf(name), " has ", key, "=", WrittenNumber(text, position)}),
                              expected, "correct the material"});
        }
    };
    check(material.E, material.E > 0.0, positions[0], "E", "E above 0");
    check(material.Mu, material.Mu >= 0.0 && material.Mu < 0.5, positions[1], "Mu", "Mu from 0 to below 0.5");
    check(material.Density, material.Density >= 0.0, positions[2], "Density", "Density of 0 or more");
}

void RecordChecks::CheckSize(RuleId rule, double value, bool mayBeZero, const char* key, std::size_t position,
                             const RecordName& name)
{
    const bool isGood = value > 0.0 || (mayBeZero && value == 0.0);
    if (IsFinite(value, position, name) && !isGood && !HasDecimalComma(text, position) &&
        diagnostics.Adds(rule, position)) {
        diagnostics.Keep(rule, {position, Joined({NameOf(name), " has ", key, "=", WrittenNumber(text, position)}),
                                Joined({key, mayBeZero ? " of 0 (no flange) or above" : " above 0"}),
                                Joined({"correct the ", name.kind})});
    }
}

void RecordChecks::CheckWall(const CBeamSection& section, std::size_t positionOfR, std::size_t positionOfT,
                             const RecordName& name)
{
    if (section.R > 0.0 && section.T > 2.0 * section.R && diagnostics.Adds(RuleId::SectionValue, positionOfT)) {
        diagnostics.Keep(RuleId::SectionValue,
                         {positionOfT,
                          Joined({NameOf(name), ": the wall, T=", WrittenNumber(text, positionOfT),
                                  ", is thicker than the whole tube with R=", WrittenNumber(text, positionOfR)}),
                          "T of at most 2*R, the bar without a hole", "correct T, or R, the mean radius"});
    }
}

void RecordChecks::ReportSectionType(int type, std::size_t position, const RecordName& name)
{
    diagnostics.Report(RuleId::Format, {position, Joined({NameOf(name), " has section type ", std::to_string(type)}),
                                        "BeamSecType=0 (T), 1 (L) or 2 (tube)", "correct the record of this beam"});
}

void RecordChecks::CheckOrientation(const Vector3& start, const Vector3& end, const Vector3& orientation,
                                    std::size_t position, const RecordName& name)
{
    const Vector3 along = Scaled(end - start), v = Scaled(orientation);
    const bool isZero = Length(v) == 0.0;
    const bool isAlong = Length(Cross(v, along)) <= SmallestSine * Length(v) * Length(along) && Length(along) > 0.0;
    const bool isUsable = isZero || HasUsableLength(orientation, start);
    if ((isUsable && !isZero && !isAlong) || !diagnostics.Adds(RuleId::BeamOrientation, position)) {
        return;
    }
    if (!isUsable) {
        const char* size = LargestComponent(orientation) < 1.0 ? "short" : "long";
        diagnostics.Keep(
            RuleId::BeamOrientation,
            {position,
             Joined({NameOf(name), " has an orientation too ", size, " to give a direction beside its coordinates"}),
             "a vector about as long as the beam", "give the same direction with another length"});
        return;
    }
    diagnostics.Keep(RuleId::BeamOrientation,
                     {position,
                      Joined({NameOf(name), isZero ? " has an orientation of length 0" : " is oriented along itself"}),
                      "a direction across the beam, from its first node towards the top of its section",
                      "give a vector across the beam"});
}

void RecordChecks::CheckConstants(const BeamSectionConstants& section, std::size_t position, const RecordName& name)
{
    for (const double value : {section.A, section.I1, section.I2, section.J}) {
        if (!(value > 0.0) || !std::isfinite(value)) {
            diagnostics.Report(RuleId::SectionValue,
                               {position,
                                Joined({NameOf(name), " has a section whose area or stiffness is 0 or not finite"}),
                                "sizes whose fourth powers a double can hold", "correct the sizes of the section"});
            return;
        }
    }
}

void RecordChecks::CheckFlag(int flag, std::size_t position, const char* effect, const char* expected,
                             const RecordName& name)
{
    if (flag != 0 && flag != 1 && diagnostics.Adds(RuleId::FlagValue, position)) {
        diagnostics.Keep(RuleId::FlagValue,
                         {position, Joined({NameOf(name), " has the flag ", std::to_string(flag), ", which ", effect}),
                          expected, "write 0 or 1"});
    }
}

void RecordChecks::CheckFirst(FirstUses& uses, RuleId rule, int index, const char* what, std::size_t position,
                              const RecordName& name)
{
    const int before = uses.Before(index, name.number);
    if (before >= 0 && diagnostics.Adds(rule, position)) {
        diagnostics.Keep(rule, {position,
                                Joined({NameOf(name), " is for ", what, " ", std::to_string(index), ", as is ",
                                        NameOf({name.kind, before})}),
                                Joined({"one record for each ", what}),
                                rule == RuleId::DuplicateRestraint ? "keep one of the two: all of them hold"
                                                                   : "check that the sum of the two is meant"});
    }
}

} // namespace tarnvexo

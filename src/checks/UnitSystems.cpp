#include "checks/UnitSystems.h"

#include <iterator>

namespace tarnvexo {

namespace {

constexpr double Inch = 0.0254, Foot = 0.3048, Pound = 0.45359237, Gravity = 9.80665; // exact by definition
constexpr double PoundForce = Pound * Gravity;

// force/length² and force·s²/length⁴ of a system of force, length and second.
constexpr ConsistentUnits OfForce(const char* name, double force, double length)
{
    return {name, force / (length * length), force / (length * length * length * length), length};
}

constexpr ConsistentUnits Systems[] = {
    OfForce("N, m, kg", 1.0, 1.0),
    OfForce("N, mm, t", 1.0, 1e-3),
    OfForce("lbf, in, s", PoundForce, Inch),
    {"kN, mm, kg, ms", 1e9, 1e9, 1e-3},
    OfForce("kN, m, t", 1e3, 1.0),
    OfForce("kgf, cm, s", Gravity, 1e-2),
    OfForce("N, cm, s", 1.0, 1e-2),
    OfForce("lbf, ft, slug", PoundForce, Foot),
    OfForce("kip, in, s", 1e3 * PoundForce, Inch),
    {"N, mm, g, ms", 1e6, 1e6, 1e-3},
    {"lb/in3", 0.0, Pound / (Inch * Inch * Inch), 0.0},
};
static_assert(std::size(Systems) <= 32, "one bit each in UnitSystemSet");

struct Range {
    double low, high;
    bool Has(double value) const { return value >= low && value <= high; }
};

struct MaterialKind {
    const char* name;
    Range E;       // Pa
    Range Density; // kg/m³
};

// Along and across the fibres and of laminates, for the composites. Steel first: most structures are of it.
constexpr MaterialKind Kinds[] = {
    {"steel", {1.7e11, 2.3e11}, {7000.0, 8300.0}},
    {"aluminium", {6.2e10, 8.3e10}, {2500.0, 2900.0}},
    {"titanium", {9.5e10, 1.3e11}, {4300.0, 4900.0}},
    {"carbon-fibre composite", {7e9, 4e11}, {1400.0, 1700.0}},
    {"glass-fibre composite", {6e9, 6e10}, {1500.0, 2200.0}},
    {"magnesium", {4.0e10, 4.8e10}, {1700.0, 1900.0}},
    {"copper alloy", {9e10, 1.5e11}, {8200.0, 9000.0}},
    {"cast iron", {8e10, 1.8e11}, {6800.0, 7500.0}},
    {"concrete", {1.5e10, 5e10}, {2000.0, 2700.0}},
    {"wood", {3e9, 2e10}, {300.0, 1000.0}},
    {"plastic", {5e8, 1.2e10}, {850.0, 1600.0}},
};

bool IsSystem(const ConsistentUnits& system)
{
    return system.stress > 0.0;
}

// Nothing that a model may be made of on purpose is stiffer than diamond, denser than iridium, several times stiffer
// for its mass than carbon fibres (E/Density 2.5e8 m²/s²) or, if dense, soft: lead is the softest heavy metal. Light
// materials may be as soft as rubber and foam.
bool IsPossible(double E, double Density)
{
    const double softest = Density < 2300.0 ? 1e5 : Density < 4000.0 ? 1e9 : Density < 11000.0 ? 4e10 : 1.5e10;
    return Density >= 10.0 && Density <= 25000.0 && E >= softest && E <= 1.3e12 && E <= 1e9 * Density;
}

bool IsPossible(double E, double Density, const ConsistentUnits& system)
{
    return IsSystem(system) && IsPossible(E * system.stress, Density * system.density);
}

} // namespace

std::span<const ConsistentUnits> UnitSystems()
{
    return Systems;
}

UnitSystemSet SystemsOf(double E, double Density)
{
    UnitSystemSet systems = 0;
    for (std::size_t s = 0; s < std::size(Systems); ++s) {
        for (const MaterialKind& kind : Kinds) {
            if (IsSystem(Systems[s]) && kind.E.Has(E * Systems[s].stress) &&
                (Density == 0.0 || kind.Density.Has(Density * Systems[s].density))) {
                systems |= UnitSystemSet(1) << s;
            }
        }
    }
    return systems;
}

std::optional<UnitMixture> MixtureOf(double E, double Density)
{
    if (!(Density > 0.0) || SystemsOf(E, Density) != 0) {
        return std::nullopt;
    }
    for (const MaterialKind& kind : Kinds) {
        for (const ConsistentUnits& ofE : Systems) {
            if (!IsSystem(ofE) || !kind.E.Has(E * ofE.stress) || IsPossible(E, Density, ofE)) {
                continue;
            }
            for (const ConsistentUnits& ofDensity : Systems) {
                if (kind.Density.Has(Density * ofDensity.density) && !IsPossible(E, Density, ofDensity)) {
                    const double expectedE = IsSystem(ofDensity) ? E * ofE.stress / ofDensity.stress : 0.0;
                    return UnitMixture{kind.name, &ofE, &ofDensity, expectedE,
                                       Density * ofDensity.density / ofE.density};
                }
            }
        }
    }
    return std::nullopt;
}

} // namespace tarnvexo

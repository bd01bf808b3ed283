// checks/UnitSystems.h
// Which consistent system of units a material's E and Density belong to. A model file names no units; structural
// materials do: E tells the unit of stress, Density that of mass per volume, and in one system both must give a
// material that exists.
//
//   system            stress          density                 E, Density of steel
//   N, m, kg          Pa              kg/m³                   2.1e11    7850
//   N, mm, t          MPa             t/mm³                   2.1e5     7.85e-9
//   kN, mm, kg, ms    GPa             kg/mm³                  210       7.85e-6
//   N, mm, g, ms      MPa             g/mm³                   2.1e5     7.85e-3
//   kN, m, t          kPa             t/m³                    2.1e8     7.85
//   N, cm, s          N/cm²           N·s²/cm per cm³         2.1e7     7.85e-5
//   kgf, cm, s        kgf/cm²         kgf·s²/cm per cm³       2.14e6    8.0e-6
//   lbf, in, s        psi             lbf·s²/in per in³       3.05e7    7.35e-4
//   lbf, ft, slug     lbf/ft²         slug/ft³                4.39e9    15.2
//   kip, in, s        ksi             kip·s²/in per in³       3.05e4    7.35e-7
// A density in lb/in³ (0.284) is a weight: it belongs to no system, but is often found beside E in psi.
//
// Ranges of E and Density by kind of material: M. F. Ashby, Materials Selection in Mechanical Design, 4th ed. (2011),
// appendix A. Units: A. Thompson, B. N. Taylor, NIST Special Publication 811 (2008), appendix B.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace tarnvexo {

struct ConsistentUnits {
    const char* name;
    double stress;  // its unit in Pa; 0: a unit of density alone, which belongs to no system
    double density; // its unit in kg/m³
    double length;  // its unit in m
};

// Customary ones first.
std::span<const ConsistentUnits> UnitSystems();

// One bit per entry of UnitSystems().
using UnitSystemSet = std::uint32_t;

// Systems in which E and Density together are those of a structural material; with Density = 0, in which E is. 0: none
// (a made-up material, or one that mixes systems).
UnitSystemSet SystemsOf(double E, double Density);

// E of one system and Density of another one.
struct UnitMixture {
    const char* material;  // "steel"
    const ConsistentUnits* ofE; // where E belongs
    const ConsistentUnits* ofDensity;
    double expectedE;       // of this material in the system of Density; 0 where that is none
    double expectedDensity; // in the system of E
};

// A material whose E and Density give no structural material in any system, but each of them the same material in a
// system of its own, neither of which allows the pair as something else (foam, rubber, weights smeared over a
// structure). Without value: no such thing. Density = 0 never is.
std::optional<UnitMixture> MixtureOf(double E, double Density);

} // namespace tarnvexo

#include "checks/UnitChecks.h"

#include "checks/ModelExtent.h"
#include "checks/UnitSystems.h"

#include <algorithm>
#include <bit>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

namespace tarnvexo {

namespace {

// Young's modulus that no material of structures reaches, Pa (diamond has 1.2e12).
constexpr double StiffestE = 1.3e12;

// Thickness over extent: a foil of a hundredth of a millimetre over a ship. A thousand between the units of the two
// passes either this or the extent itself for every ratio from 1e-4 down or 1e-3 up.
constexpr double ThinnestShell = 1e-7;

// Ships, bridges and masts stay below, m.
constexpr double LongestStructure = 5000.0;

#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
std::string
Text(const char* format, ...)
{
    char text[300];
    va_list values;
    va_start(values, format);
    std::vsnprintf(text, sizeof text, format, values);
    va_end(values);
    return text;
}

template <class MakeDetail>
void Tell(FindingCollector& mixed, const char* kind, int number, double badness, MakeDetail detail)
{
    if (mixed.Adds(badness)) {
        mixed.Keep({kind, number, 0.0, {}, detail()}, badness);
    }
}

template <class Properties> void CountMaterials(const Properties& properties, std::vector<int>& elements)
{
    for (const auto& property : properties) { ++elements[property.material]; }
}

// Elements made of each material.
std::vector<int> ElementsOfMaterials(const ModelStore& model)
{
    std::vector<int> elements(model.Materials.size(), 0);
    CountMaterials(model.QuadProperties, elements);
    CountMaterials(model.TriProperties, elements);
    CountMaterials(model.BeamProperties, elements);
    return elements;
}

// Position in UnitSystems() of the one that most elements belong to, the customary one of equals; -1: none.
int SystemOfMost(const std::vector<UnitSystemSet>& systems, const std::vector<int>& elements)
{
    int most = -1;
    long long mostElements = 0;
    for (int s = 0; s < static_cast<int>(UnitSystems().size()); ++s) {
        long long count = 0;
        for (std::size_t m = 0; m < systems.size(); ++m) { count += (systems[m] >> s & 1) != 0 ? elements[m] : 0; }
        if (count > mostElements) {
            most = s;
            mostElements = count;
        }
    }
    return most;
}

std::string MixtureText(const Material& material, const UnitMixture& mixture)
{
    std::string text = Text("E=%g is %s in %s, Density=%g in %s; expected Density=%.3g", material.E, mixture.material,
                            mixture.ofE->name, material.Density, mixture.ofDensity->name, mixture.expectedDensity);
    if (mixture.expectedE > 0.0) {
        text += Text(" or E=%.3g", mixture.expectedE);
    }
    return text;
}

// Returns the system of the model, or -1.
int CheckMaterials(const ModelStore& model, FindingCollector& mixed)
{
    const std::vector<int> elements = ElementsOfMaterials(model);
    std::vector<UnitSystemSet> systems(model.Materials.size(), 0);
    for (std::size_t m = 0; m < systems.size(); ++m) {
        const Material& material = model.Materials[m];
        systems[m] = elements[m] > 0 && material.Density > 0.0 ? SystemsOf(material.E, material.Density) : 0;
    }
    const int most = SystemOfMost(systems, elements);

    for (std::size_t m = 0; m < systems.size(); ++m) {
        if (elements[m] == 0) {
            continue;
        }
        const Material& material = model.Materials[m];
        if (systems[m] != 0 && (systems[m] >> most & 1) == 0) {
            const std::size_t own = static_cast<std::size_t>(std::countr_zero(systems[m]));
            Tell(mixed, "material", static_cast<int>(m), 1.0, [&] {
                return Text("E=%g and Density=%g belong to %s; most elements are in %s", material.E, material.Density,
                            UnitSystems()[own].name, UnitSystems()[most].name);
            });
        } else if (const std::optional<UnitMixture> mixture = MixtureOf(material.E, material.Density)) {
            const bool isStiffOnPurpose = most >= 0 && mixture->ofDensity == &UnitSystems()[most] &&
                                          material.E * mixture->ofDensity->stress > StiffestE;
            if (!isStiffOnPurpose) {
                Tell(mixed, "material", static_cast<int>(m), 1.0, [&] { return MixtureText(material, *mixture); });
            }
        }
    }
    return most;
}

void CheckThicknesses(const ModelStore& model, double extent, FindingCollector& mixed)
{
    std::vector<unsigned char> isUsed(model.Thicknesses.size(), 0);
    for (const ShellPropertyRef& property : model.QuadProperties) { isUsed[property.thickness] = 1; }
    for (const ShellPropertyRef& property : model.TriProperties) { isUsed[property.thickness] = 1; }
    for (std::size_t t = 0; t < isUsed.size(); ++t) {
        const double thickness = model.Thicknesses[t];
        if (isUsed[t] == 0 || !(thickness > 0.0)) {
            continue;
        }
        if (thickness > extent || thickness < ThinnestShell * extent) {
            Tell(mixed, "thickness", static_cast<int>(t), 0.0, [&] {
                return Text("TK=%g in a model of size %.3g: expected the unit of the coordinates", thickness, extent);
            });
        }
    }
}

} // namespace

void CheckUnits(const ModelStore& model, FindingCollector& mixed)
{
    const double extent = ModelExtent(model);
    const int system = CheckMaterials(model, mixed);
    CheckThicknesses(model, extent, mixed);
    if (system >= 0 && extent * UnitSystems()[system].length > LongestStructure) {
        Tell(mixed, "model", -1, 0.0, [&] {
            return Text("size %.3g is %.3g km in %s, the units of its materials", extent,
                        1e-3 * extent * UnitSystems()[system].length, UnitSystems()[system].name);
        });
    }
}

} // namespace tarnvexo

#include "checks/UnitChecks.h"

#include "checks/ModelExtent.h"
#include "checks/UnitSystems.h"
#include "core/NumberText.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvexo {

namespace {

// Young's modulus that no material of structures reaches, Pa (diamond has 1.2e12).
constexpr double StiffestE = 1.3e12;

// Thickness, or size of a beam's section, over extent: a foil of a hundredth of a millimetre over a hundred metres. Of
// customary ratios of 1e-4 to 1e-1, one in mm to an extent in m becomes 0.1 to 100, the other way round 1e-7 to 1e-4.
constexpr double ThinnestPart = 1e-7;

// Ships, bridges and masts stay below, m.
constexpr double LongestStructure = 5000.0;

std::string Number(double value)
{
    char text[NumberTextCapacity];
    return std::string(text, WriteNumber(text, value));
}

bool Contains(UnitSystemSet systems, int system)
{
    return (systems >> system & 1U) != 0;
}

// Materials before sizes: a wrong one spoils every result.
enum Badness { OfSize, OfMaterial };

template <class MakeDetail>
void Tell(FindingCollector& mixed, const char* kind, std::size_t number, Badness badness, MakeDetail detail,
          const Vector3& place = {})
{
    if (mixed.Adds(badness)) {
        mixed.Keep({kind, static_cast<int>(number), 0.0, place, detail()}, badness);
    }
}

// Elements made of each material. Beams of an unknown section type are made of none, and their material may be none.
std::vector<int> ElementsOfMaterials(const ModelStore& model)
{
    std::vector<int> elements(model.Materials.size(), 0);
    for (const ShellPropertyRef& property : model.QuadProperties) { ++elements[property.material]; }
    for (const ShellPropertyRef& property : model.TriProperties) { ++elements[property.material]; }
    for (std::size_t b = 0; b < model.BeamProperties.size(); ++b) {
        const int type = model.BeamSectionRefs[b].BeamSecType;
        if (type >= TSection && type <= CSection) {
            ++elements[model.BeamProperties[b].material];
        }
    }
    return elements;
}

// Position in UnitSystems() of the one that most elements belong to, the customary one of equals; -1: none.
int SystemOfMost(const std::vector<UnitSystemSet>& systems, const std::vector<int>& elements)
{
    int most = -1;
    long long mostElements = 0;
    for (int s = 0; s < static_cast<int>(UnitSystems().size()); ++s) {
        long long count = 0;
        for (std::size_t m = 0; m < systems.size(); ++m) { count += Contains(systems[m], s) ? elements[m] : 0; }
        if (count > mostElements) {
            most = s;
            mostElements = count;
        }
    }
    return most;
}

std::string MixtureText(const Material& material, const UnitMixture& mixture)
{
    std::string text = "E=" + Number(material.E) + " is " + mixture.material + " in " + mixture.ofE->name +
                       ", Density=" + Number(material.Density) + " is in " + mixture.ofDensity->name +
                       ": expected Density=" + Number(mixture.expectedDensity);
    if (mixture.expectedE > 0.0) {
        text += " or E=" + Number(mixture.expectedE);
    }
    return text;
}

// Position in UnitSystems(); -1: no system has that name.
int SystemNamed(std::string_view name)
{
    const auto systems = UnitSystems();
    const auto found =
        std::find_if(systems.begin(), systems.end(), [name](const ConsistentUnits& one) { return name == one.name; });
    return found == systems.end() ? -1 : static_cast<int>(found - systems.begin());
}

void CheckMaterials(const ModelStore& model, double extent, std::string_view declaredUnits, FindingCollector& mixed)
{
    const std::vector<int> elements = ElementsOfMaterials(model);
    std::vector<UnitSystemSet> systems(model.Materials.size(), 0);
    for (std::size_t m = 0; m < systems.size(); ++m) {
        const Material& material = model.Materials[m];
        systems[m] = elements[m] > 0 && material.Density > 0.0 ? SystemsOf(material.E, material.Density) : 0;
    }
    const int most = SystemOfMost(systems, elements);

    const int declared = SystemNamed(declaredUnits);
    for (std::size_t m = 0; m < systems.size(); ++m) {
        if (elements[m] == 0) {
            continue;
        }
        const Material& material = model.Materials[m];
        if (systems[m] != 0 && declared >= 0 && !Contains(systems[m], declared)) {
            const std::size_t own = static_cast<std::size_t>(std::countr_zero(systems[m]));
            Tell(mixed, "material", m, OfMaterial, [&] {
                return "E=" + Number(material.E) + " and Density=" + Number(material.Density) + " are in " +
                       UnitSystems()[own].name + ", but --units says " + UnitSystems()[declared].name;
            });
            continue;
        }
        if (systems[m] != 0 && !Contains(systems[m], most)) {
            const std::size_t own = static_cast<std::size_t>(std::countr_zero(systems[m]));
            Tell(mixed, "material", m, OfMaterial, [&] {
                return "E=" + Number(material.E) + " and Density=" + Number(material.Density) + " are in " +
                       UnitSystems()[own].name + ", most elements in " + UnitSystems()[most].name;
            });
        } else if (const std::optional<UnitMixture> mixture = MixtureOf(material.E, material.Density)) {
            const bool isStiffOnPurpose = most >= 0 && mixture->ofDensity == &UnitSystems()[most] &&
                                          material.E * mixture->ofDensity->stress > StiffestE;
            if (!isStiffOnPurpose) {
                Tell(mixed, "material", m, OfMaterial, [&] { return MixtureText(material, *mixture); });
            }
        }
    }

    if (most >= 0 && extent * UnitSystems()[most].length > LongestStructure) {
        const auto isOfMost = [most](UnitSystemSet set) { return Contains(set, most); };
        const std::size_t first = std::find_if(systems.begin(), systems.end(), isOfMost) - systems.begin();
        Tell(mixed, "material", first, OfSize, [&] {
            return std::string("in ") + UnitSystems()[most].name + ", as it is, the model is " +
                   Number(1e-3 * extent * UnitSystems()[most].length) + " km large";
        });
    }
}

bool IsOfAnotherUnit(double size, double extent)
{
    return size > 0.0 && (size > extent || size < ThinnestPart * extent);
}

void CheckThicknesses(const ModelStore& model, double extent, FindingCollector& mixed)
{
    std::vector<unsigned char> isUsed(model.Thicknesses.size(), 0);
    for (const ShellPropertyRef& property : model.QuadProperties) { isUsed[property.thickness] = 1; }
    for (const ShellPropertyRef& property : model.TriProperties) { isUsed[property.thickness] = 1; }
    for (std::size_t t = 0; t < isUsed.size(); ++t) {
        if (isUsed[t] != 0 && IsOfAnotherUnit(model.Thicknesses[t], extent)) {
            Tell(mixed, "thickness", t, OfSize,
                 [&] { return "TK=" + Number(model.Thicknesses[t]) + " in a model of size " + Number(extent); });
        }
    }
}

// The larger of height and width; 0 for an unknown type.
double SectionSize(const ModelStore& model, const BeamSectionRef& ref)
{
    switch (ref.BeamSecType) {
    case TSection:
        return std::max(model.TBeamSections[ref.BeamSecIndex].Hw, model.TBeamSections[ref.BeamSecIndex].Bf);
    case LSection:
        return std::max(model.LBeamSections[ref.BeamSecIndex].Hw, model.LBeamSections[ref.BeamSecIndex].Bf);
    case CSection:
        return 2.0 * model.CBeamSections[ref.BeamSecIndex].R;
    default:
        return 0.0;
    }
}

void CheckSections(const ModelStore& model, double extent, FindingCollector& mixed)
{
    for (std::size_t b = 0; b < model.BeamSectionRefs.size(); ++b) {
        const double size = SectionSize(model, model.BeamSectionRefs[b]);
        if (IsOfAnotherUnit(size, extent)) {
            const std::array<int, BeamNodeCount>& nodes = model.BeamConnectivity[b];
            Tell(
                mixed, "beam", b, OfSize,
                [&] { return "section of size " + Number(size) + " in a model of size " + Number(extent); },
                0.5 * (model.NodeCoordinates[nodes[0]] + model.NodeCoordinates[nodes[1]]));
        }
    }
}

} // namespace

void CheckUnits(const ModelStore& model, std::string_view declaredUnits, FindingCollector& mixed)
{
    const double extent = ModelExtent(model);
    CheckMaterials(model, extent, declaredUnits, mixed);
    if (extent > 0.0) {
        CheckThicknesses(model, extent, mixed);
        CheckSections(model, extent, mixed);
    }
}

} // namespace tarnvexo

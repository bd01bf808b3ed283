#include "app/CostModel.h"

#include <cmath>

namespace tarnvexo {

namespace {

// Seconds per unit of work.
constexpr double PerFileByte = 4e-9;
constexpr double PerNodeAndDoubling = 1e-7; // nested dissection: n·log2(n)
constexpr double PerAssembledElement = 8e-7;
constexpr double PerFactorEntry = 3e-9;   // assembly of fronts, first touch of memory
constexpr double PerOperation = 1e-11;    // dense kernels
constexpr double PerEntrySolved = 1.5e-9; // without refinement, its residual included
constexpr double PerShellStress = 6e-7;
constexpr double PerSectionPatch = 5e-6; // patches of the beams' section meshes
constexpr double PerSkylineOperation = 1.2e-10;

double Shells(const ModelStore& model)
{
    return static_cast<double>(model.QuadElements.size()) + static_cast<double>(model.TriElements.size());
}

// Seconds per record of the result files.
struct WritingRates {
    double perShell;
    double perNode;
    double perPatch;
};

WritingRates RatesOf(ResultFormat format)
{
    switch (format) {
    case ResultFormat::Text:
        return {4e-6, 4e-7, 1.2e-6};
    case ResultFormat::Vtu:
        return {5e-6, 0.0, 5e-6};
    case ResultFormat::Gltf:
        return {2e-6, 0.0, 2e-6};
    case ResultFormat::Csv:
        return {1.4e-5, 1.2e-6, 1.4e-5};
    case ResultFormat::Json:
        break;
    }
    return {};
}

} // namespace

double ReadingSeconds(std::size_t fileBytes)
{
    return PerFileByte * static_cast<double>(fileBytes);
}

double OrderingSeconds(std::size_t nodes)
{
    return PerNodeAndDoubling * static_cast<double>(nodes) * std::log2(static_cast<double>(nodes) + 2.0);
}

double AssemblySeconds(const ModelStore& model)
{
    return PerAssembledElement * (Shells(model) + static_cast<double>(model.BeamElements.size()));
}

double FactorisationSeconds(const FactorSize& size)
{
    return PerFactorEntry * static_cast<double>(size.entries) + PerOperation * size.operations;
}

double SolutionSeconds(const FactorSize& size)
{
    return PerEntrySolved * static_cast<double>(size.entries);
}

double StressSeconds(const ModelStore& model)
{
    return PerShellStress * Shells(model);
}

double BeamSectionSeconds(double sectionPatches)
{
    return PerSectionPatch * sectionPatches;
}

double WritingSeconds(const ModelStore& model, double sectionPatches, const ResultFormats& formats)
{
    double seconds = 0.0;
    for (const ResultFormat format : formats) {
        const WritingRates rates = RatesOf(format);
        seconds += rates.perShell * Shells(model) + rates.perPatch * sectionPatches +
                   rates.perNode * static_cast<double>(model.NodeCoordinates.size());
    }
    return seconds;
}

double SkylineSeconds(double operations)
{
    return PerSkylineOperation * operations;
}

} // namespace tarnvexo

#include "app/ModelCheck.h"

#include "elements/BeamSection.h"
#include "inertia/StructureCentroid.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>

namespace tarnvexo {

namespace {

bool IsFinite(const Vector3& v)
{
    return std::all_of(v.begin(), v.end(), [](double component) { return std::isfinite(component); });
}

std::string Fault(const std::string& modelFile, const std::string& what, const char* expected, const char* toDo)
{
    return modelFile + ": error: " + what + "\n  expected: " + expected + "\n  to do:    " + toDo;
}

// area(element): of the shell, not a number where it has no frame.
template <class Shells, class Area>
std::string ShellFault(const Shells& shells, const char* kind, Area area, const std::string& modelFile)
{
    for (std::size_t e = 0; e < shells.size(); ++e) {
        const std::string name = std::string(kind) + " " + std::to_string(e);
        if (!(area(shells[e]) > 0.0) || !IsFinite(shells[e].axes[1])) {
            return Fault(modelFile, name + " has no area, or its first three nodes stand on one line",
                         "corners apart, in order around the element", "correct its nodes or their coordinates");
        }
    }
    return "";
}

std::string BeamFault(const ModelStore& model, const std::string& modelFile)
{
    for (std::size_t b = 0; b < model.BeamElements.size(); ++b) {
        if (!(BeamLength(model.BeamElements[b]) > 0.0)) {
            return Fault(modelFile, "beam " + std::to_string(b) + " has no length", "two nodes apart",
                         "correct the record of this beam");
        }
    }
    return "";
}

} // namespace

std::string ModelFault(const ModelStore& model, const std::string& modelFile)
{
    constexpr int mostNodes = INT_MAX / DofsPerNode;
    if (model.NPOIN < 1 || model.NPOIN > mostNodes) {
        return Fault(modelFile, "the model has " + std::to_string(model.NPOIN) + " nodes", "1 to 357913941 nodes",
                     "correct NPOIN and the table of nodes");
    }
    if (model.QuadElements.empty() && model.TriElements.empty() && model.BeamElements.empty()) {
        return Fault(modelFile, "the model has no elements", "shells or beams between the nodes",
                     "add elements to the model file");
    }
    return "";
}

std::string ElementFault(const ModelStore& model, const std::string& modelFile)
{
    std::string fault = ShellFault(model.QuadElements, "four-node shell", QuadArea, modelFile);
    if (fault.empty()) {
        fault = ShellFault(model.TriElements, "three-node shell", TriArea, modelFile);
    }
    if (fault.empty()) {
        fault = BeamFault(model, modelFile);
    }
    return fault;
}

} // namespace tarnvexo

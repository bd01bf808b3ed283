#include "app/ModelCheck.h"

#include "elements/BeamSection.h"
#include "inertia/StructureCentroid.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdio>

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

// Of the material of an element; NaN fails every comparison.
template <class Element>
std::string MaterialFault(const Element& element, const std::string& name, const std::string& modelFile)
{
    if (!(element.E > 0.0) || !std::isfinite(element.E) || !(element.Mu >= 0.0 && element.Mu < 0.5)) {
        char values[100];
        std::snprintf(values, sizeof values, " is made of a material with E=%g and Mu=%g", element.E, element.Mu);
        return Fault(modelFile, name + values, "E above 0, Mu from 0 to below 0.5", "correct its material");
    }
    if (!(element.Density >= 0.0) || !std::isfinite(element.Density)) {
        return Fault(modelFile, name + " has a density that is negative or not a number", "Density of 0 or more",
                     "correct its material");
    }
    return "";
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
        if (!(shells[e].thickness > 0.0) || !std::isfinite(shells[e].thickness)) {
            return Fault(modelFile, name + " has a thickness that is not above 0", "TK above 0",
                         "correct its thickness");
        }
        const std::string fault = MaterialFault(shells[e], name, modelFile);
        if (!fault.empty()) {
            return fault;
        }
    }
    return "";
}

std::string BeamFault(const ModelStore& model, const std::string& modelFile)
{
    for (std::size_t b = 0; b < model.BeamElements.size(); ++b) {
        const BeamElement& beam = model.BeamElements[b];
        const std::string name = "beam " + std::to_string(b);
        const int type = model.BeamSectionRefs[b].BeamSecType;
        if (type < TSection || type > CSection) {
            return Fault(modelFile, name + " has section type " + std::to_string(type),
                         "BeamSecType=0 (T), 1 (L) or 2 (tube)", "correct the record of this beam");
        }
        Vector3 frame[3];
        BeamFrame(beam, frame);
        if (!(BeamLength(beam) > 0.0) || !IsFinite(frame[1]) || !IsFinite(frame[2])) {
            return Fault(modelFile, name + " has no length, or its orientation vector is zero or along the beam",
                         "two nodes apart and an orientation across the beam", "correct the record of this beam");
        }
        const BeamSectionConstants& s = beam.section;
        if (!(s.A > 0.0) || !(s.I1 > 0.0) || !(s.I2 > 0.0) || !(s.J > 0.0)) {
            return Fault(modelFile, name + " has a section without area or stiffness",
                         "Hw, Tw, R and T above 0; Bf and Tf above 0, or 0 for a rectangle", "correct its section");
        }
        const std::string fault = MaterialFault(beam, name, modelFile);
        if (!fault.empty()) {
            return fault;
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
    const auto bad = std::find_if(model.NodeCoordinates.begin(), model.NodeCoordinates.end(),
                                  [](const Vector3& node) { return !IsFinite(node); });
    if (bad != model.NodeCoordinates.end()) {
        return Fault(modelFile,
                     "a coordinate of node " + std::to_string(bad - model.NodeCoordinates.begin()) + " is not a number",
                     "finite coordinates", "correct the record of this node");
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

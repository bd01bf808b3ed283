// calculix_export MODEL s4|us3 OUT.inp [OUT.txt]
// A shell model as an input file of CalculiX, so that both programs can be measured on one problem. Quadrilaterals
// become S4, or two US3 each, cut along a diagonal (S4 are expanded to solids there; US3 has six DOFs per node as our
// elements do). The nodes at the low end of the longest side are clamped, the loads are our nodal loads balanced by
// inertia relief, the results asked for are displacements and stresses. OUT.txt: the same clamped model and loads as a
// model file for tarnvexo; since they are balanced, inertia relief adds nothing to them.
#include "BalancedModel.h"
#include "inertia/StructureCentroid.h"
#include "output/ModelFileWriter.h"
#include "output/TextFile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>
#include <vector>

namespace {

using namespace tarnvexo;

constexpr double LoadNoise = 1e-13; // of the largest load: smaller components are round-off and left out

// The nodes whose coordinate along the longest side of the bounding box is the smallest.
std::vector<int> LowEnd(const std::vector<Vector3>& nodes)
{
    Vector3 low = nodes.front(), high = low;
    for (const Vector3& node : nodes) {
        for (int k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], node[k]);
            high[k] = std::max(high[k], node[k]);
        }
    }
    int longest = 0;
    for (int k = 1; k < 3; ++k) { longest = high[k] - low[k] > high[longest] - low[longest] ? k : longest; }
    std::vector<int> end;
    for (std::size_t n = 0; n < nodes.size(); ++n) {
        if (nodes[n][longest] <= low[longest] + 1e-9 * (high[longest] - low[longest])) {
            end.push_back(static_cast<int>(n));
        }
    }
    return end;
}

// Supports and loads of the model replaced by the clamped end and the load vector.
void ClampAndLoad(ModelStore& model)
{
    model.Restraints.clear();
    for (const int node : LowEnd(model.NodeCoordinates)) { model.Restraints.push_back({{1, 1, 1, 1, 1, 1}, node}); }
    model.QuadDistributedLoads.clear();
    model.TriDistributedLoads.clear();
    model.BeamDistributedLoads.clear();
    model.NodalForces.clear();
    double largest = 0.0;
    for (const double load : model.GLOAD) { largest = std::max(largest, std::fabs(load)); }
    for (int n = 0; n < model.NPOIN; ++n) {
        NodalForce force;
        force.node = n;
        bool isLoaded = false;
        for (int k = 0; k < DofsPerNode; ++k) {
            const double load = model.GLOAD[static_cast<std::size_t>(DofsPerNode * n + k)];
            force.components[k] = std::fabs(load) > LoadNoise * largest ? load : 0.0;
            isLoaded = isLoaded || force.components[k] != 0.0;
        }
        if (isLoaded) {
            model.NodalForces.push_back(force);
        }
    }
    model.NRN = static_cast<int>(model.Restraints.size());
    model.NFOR = static_cast<int>(model.NodalForces.size());
    model.NDL_S_4ND = model.NDL_S_3ND = model.NDL_B = 0;
}

std::string SetName(const ShellPropertyRef& property)
{
    return "M" + std::to_string(property.material) + "T" + std::to_string(property.thickness);
}

// A line of commas and node numbers from 1; CalculiX counts elements and nodes from 1.
void WriteElement(TextWriter& text, long long number, const std::vector<int>& nodes)
{
    text.Integer(number);
    for (const int node : nodes) { text.Text(",").Integer(node + 1); }
    text.EndLine();
}

// The quadrilaterals of each material and thickness in a set of their own, with its section.
void WriteShells(const ModelStore& model, bool asTriangles, TextWriter& text)
{
    if (asTriangles) {
        text.Text("*USER ELEMENT,TYPE=US3,INTEGRATION POINTS=3,MAXDOF=6,NODES=3").EndLine();
    }
    long long number = 0;
    for (int material = 0; material < model.NMT; ++material) {
        for (int thickness = 0; thickness < model.NTK; ++thickness) {
            const std::string set = SetName({material, thickness});
            bool isOpen = false;
            for (std::size_t e = 0; e < model.QuadConnectivity.size(); ++e) {
                const ShellPropertyRef& property = model.QuadProperties[e];
                if (property.material != material || property.thickness != thickness) {
                    continue;
                }
                if (!isOpen) {
                    text.Text(asTriangles ? "*ELEMENT,TYPE=US3,ELSET=" : "*ELEMENT,TYPE=S4,ELSET=").Text(set).EndLine();
                    isOpen = true;
                }
                const std::array<int, QuadNodeCount>& n = model.QuadConnectivity[e];
                if (asTriangles) {
                    WriteElement(text, ++number, {n[0], n[1], n[2]});
                    WriteElement(text, ++number, {n[0], n[2], n[3]});
                } else {
                    WriteElement(text, ++number, {n[0], n[1], n[2], n[3]});
                }
            }
            if (isOpen) {
                text.Text(asTriangles ? "*USER SECTION,CONSTANTS=1,ELSET=" : "*SHELL SECTION,ELSET=").Text(set);
                text.Text(",MATERIAL=M").Integer(material).EndLine();
                text.Number(model.Thicknesses[static_cast<std::size_t>(thickness)]).EndLine();
            }
        }
    }
}

void WriteCalculixText(const ModelStore& model, bool asTriangles, TextWriter& text)
{
    char line[100];
    text.Text("*NODE").EndLine();
    for (int n = 0; n < model.NPOIN; ++n) {
        const Vector3& at = model.NodeCoordinates[static_cast<std::size_t>(n)];
        std::snprintf(line, sizeof line, "%d,%.12g,%.12g,%.12g\n", n + 1, at[0], at[1], at[2]);
        text.Text(line);
    }
    for (int m = 0; m < model.NMT; ++m) {
        const Material& material = model.Materials[static_cast<std::size_t>(m)];
        text.Text("*MATERIAL,NAME=M").Integer(m).EndLine().Text("*ELASTIC").EndLine();
        text.Number(material.E).Text(",").Number(material.Mu).EndLine();
    }
    WriteShells(model, asTriangles, text);
    text.Text("*BOUNDARY").EndLine();
    for (const Restraint& restraint : model.Restraints) { text.Integer(restraint.node + 1).Text(",1,6").EndLine(); }
    text.Text("*STEP").EndLine().Text("*STATIC").EndLine().Text("*CLOAD").EndLine();
    for (const NodalForce& force : model.NodalForces) {
        for (int k = 0; k < DofsPerNode; ++k) {
            if (force.components[k] != 0.0) {
                std::snprintf(line, sizeof line, "%d,%d,%.12g\n", force.node + 1, k + 1, force.components[k]);
                text.Text(line);
            }
        }
    }
    text.Text("*NODE FILE").EndLine().Text("U").EndLine().Text("*EL FILE").EndLine().Text("S").EndLine();
    text.Text("*END STEP").EndLine();
}

int Export(const char* modelFile, bool asTriangles, const char* calculixFile, const char* clampedFile)
{
    ModelStore model = BalancedModel(modelFile);
    if (model.NELEM_S_3ND > 0 || model.NELEM_B > 0) {
        std::fprintf(stderr,
                     "%s: error: %d three-node shells and %d beams have no counterpart here\n"
                     "  expected: four-node shells only\n",
                     modelFile, model.NELEM_S_3ND, model.NELEM_B);
        return 1;
    }
    ShiftOrigin(model, model.StructureCentroid);
    ClampAndLoad(model);
    TextFile file;
    if (file.Open(calculixFile)) {
        WriteCalculixText(model, asTriangles, file.Text());
    }
    std::string fault = FileFault(file.Close());
    if (fault.empty() && clampedFile != nullptr) {
        fault = FileFault(WriteModelFile(model, clampedFile));
    }
    std::fputs(fault.c_str(), stderr);
    return fault.empty() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    const bool asTriangles = argc > 2 && std::strcmp(argv[2], "us3") == 0;
    if (argc < 4 || argc > 5 || (!asTriangles && std::strcmp(argv[2], "s4") != 0)) {
        std::fprintf(stderr, "usage: calculix_export MODEL s4|us3 OUT.inp [OUT.txt]\n");
        return 2;
    }
    try {
        return Export(argv[1], asTriangles, argv[3], argc == 5 ? argv[4] : nullptr);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}

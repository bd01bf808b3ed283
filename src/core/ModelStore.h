// core/ModelStore.h
// The one record of an analysis: counts and tables of the model file, elements, supports and loads, the skyline system
// and its solution. Every stage takes it by reference; there is no other channel between stages.
//
// Numbers: 0-based positions in file order for nodes, elements, materials, thicknesses and sections.
// Units: whatever consistent set the model file uses; nothing is converted.
// Names of counts and loads are the keys of the model file, so that file, code and messages agree.
#pragma once

#include "core/BeamElement.h"
#include "core/BeamSectionModel.h"
#include "core/Dofs.h"
#include "core/ShellElement.h"
#include "core/Vector3.h"

#include <array>
#include <vector>

namespace tarnvexo {

struct Material {
    double E = 0.0;       // Young's modulus   force/length²
    double Mu = 0.0;      // Poisson's ratio
    double Density = 0.0; // mass density      mass/length³
};

// T and L sections: web Hw x Tw standing on the node line, flange Bf x Tf on top of it.
struct WebFlangeSection {
    double Hw = 0.0;
    double Tw = 0.0;
    double Bf = 0.0;
    double Tf = 0.0;
};
using TBeamSection = WebFlangeSection;
using LBeamSection = WebFlangeSection;

// Circular tube: mean radius of the wall and wall thickness.
struct CBeamSection {
    double R = 0.0;
    double T = 0.0;
};

enum BeamSectionType { TSection = 0, LSection = 1, CSection = 2 };

// Positions in the tables of the model file of what an element is made of.
struct ShellPropertyRef {
    int material = 0;
    int thickness = 0;
};

struct BeamPropertyRef {
    int material = 0;
    Vector3 orientation = {}; // from the first node towards the top of the section
};

struct BeamSectionRef {
    // BeamSectionType. Any other number is refused by `solve` and `info` once the model is read; it ends the console
    // run before beam stresses are recovered, when displacements and shell stresses are written.
    int BeamSecType = 0;
    int BeamSecIndex = 0; // row in the table of that type
    double BeamSecOz = 0.0;
    bool BeamSecMirrored = false;
};

struct Restraint {
    int flags[DofsPerNode] = {}; // exactly 1 restrains the DOF, anything else leaves it free
    int node = 0;
};

struct NodalForce {
    int node = 0;
    double components[DofsPerNode] = {}; // Fx, Fy, Fz, Mx, My, Mz, global axes
};

struct ShellDistributedLoad {
    int element = 0;
    double pressure[3] = {}; // at the element's nodes 1, 2, 3, positive along e3   force/length²
};

struct BeamDistributedLoad {
    int element = 0;
    double q1 = 0.0; // at node 1, along z'   force/length
    double q2 = 0.0; // at node 2
};

struct ModelStore {
    // Filled by input/ModelFileReader and refine/; each count is the size of the table beside it. Materials,
    // thicknesses and the property references are read by those that set up elements (every element keeps its own
    // values) and by output/ModelFileWriter, sections by these and by output/BeamSectionStress, nodes and elements by
    // all stages, restraints and loads by the assembly driver.
    int NMT = 0;
    std::vector<Material> Materials;
    int NTK = 0;
    std::vector<double> Thicknesses;
    int NTBS = 0;
    std::vector<TBeamSection> TBeamSections;
    int NLBS = 0;
    std::vector<LBeamSection> LBeamSections;
    int NCBS = 0;
    std::vector<CBeamSection> CBeamSections;
    int NPOIN = 0;
    std::vector<Vector3> NodeCoordinates; // relative to StructureCentroid between the two origin shifts of a run
    int NELEM_S_4ND = 0;
    std::vector<QuadShellElement> QuadElements;
    std::vector<std::array<int, QuadNodeCount>> QuadConnectivity;
    std::vector<ShellPropertyRef> QuadProperties;
    int NELEM_S_3ND = 0;
    std::vector<TriShellElement> TriElements;
    std::vector<std::array<int, TriNodeCount>> TriConnectivity;
    std::vector<ShellPropertyRef> TriProperties;
    int NELEM_B = 0;
    std::vector<BeamElement> BeamElements;
    std::vector<std::array<int, BeamNodeCount>> BeamConnectivity;
    std::vector<BeamPropertyRef> BeamProperties;
    std::vector<BeamSectionRef> BeamSectionRefs;
    int NRN = 0;
    std::vector<Restraint> Restraints;
    int NFOR = 0;
    std::vector<NodalForce> NodalForces;
    int NDL_S_4ND = 0;
    std::vector<ShellDistributedLoad> QuadDistributedLoads;
    int NDL_S_3ND = 0;
    std::vector<ShellDistributedLoad> TriDistributedLoads;
    int NDL_B = 0;
    std::vector<BeamDistributedLoad> BeamDistributedLoads;
    long long UnmatchedScans = 0; // places where the text was not what the format says; read by the run driver

    // Filled by the assembly driver (app/AssemblyDriver) from inertia/StructureCentroid; read by both drivers.
    Vector3 StructureCentroid = {};

    // Skyline system, laid out by solver/SkylineProfile, filled by the assembly driver and inertia/InertiaRelief,
    // solved in place by solver/SkylineSolver; the solution is read by output/.
    int EquationCount = 0;            // DofsPerNode * NPOIN: supports remove no equation
    int SkylineSize = 0;              // entries of GlobalStiffness
    std::vector<int> ColumnHeight;    // entries of column j, its diagonal included
    std::vector<int> DiagonalAddress; // index of the diagonal of column j; the entries above it follow upwards
    std::vector<double> GlobalStiffness;
    std::vector<double> GLOAD;              // load vector; reduced in place by the solver
    std::vector<double> GlobalDisplacement; // solution

    // Filled by output/BeamSectionStress, one per beam; read by output/ContourFile.
    std::vector<BeamSectionModel> BeamStressRecords;
};

} // namespace tarnvexo

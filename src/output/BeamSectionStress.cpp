#include "output/BeamSectionStress.h"

#include "core/Failure.h"
#include "core/Messages.h"
#include "core/Parallel.h"
#include "elements/BeamSection.h"
#include "elements/BeamStiffness.h"
#include "elements/QuadGeometry.h"
#include "elements/ShellNodeStress.h"
#include "elements/ShellSetUp.h"
#include "elements/ShellStiffnessBatch.h"
#include "output/BeamJointAveraging.h"
#include "output/ShellStressRecovery.h"
#include "platform/Platform.h"
#include "solver/SkylineProfile.h"
#include "solver/SkylineSolver.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <queue>
#include <stdexcept>
#include <string>
#include <utility>

namespace tarnvexo {

namespace {

// Links between a beam end and its ring of walls: tubes far stiffer than any wall. Results depend on these numbers.
constexpr CBeamSection LinkSection = {5.0, 1.0};
constexpr Material LinkMaterial = {1e20, 0.3, 0.0};
constexpr double LinkTolerance = 0.001; // shorter links, in section heights or radii, are left out

// Prescribed displacements: diagonal 1e40, load u·1e20·1e20.
constexpr double DisplacementPenalty = 1e20;

constexpr double BytesToGigabytes = 1.0 / (1 << 30);

// Outline points looked at for one that lies on the node line.
constexpr int NearEndSearch = 6;

// Beams that a thread takes at a time; their systems share memory.
constexpr std::size_t BeamsPerRange = 16;

struct Link {
    std::array<int, BeamNodeCount> nodes;
    BeamElement element;
};

// The small system of one beam. Its memory serves one beam after another.
struct SectionSystem {
    std::vector<QuadShellElement> walls; // one per patch
    std::vector<Link> links;
    std::vector<int> columnHeight;
    std::vector<int> diagonalAddress;
    std::vector<double> stiffness;
    std::vector<double> load;
};

// Beam end 1, the rings of outline points, beam end 2.
std::vector<Vector3> SectionNodes(const BeamElement& beam, const SectionOutline& outline, int slices)
{
    Vector3 frame[3];
    BeamFrame(beam, frame);
    const Vector3 axis = beam.node2 - beam.node1;
    std::vector<Vector3> nodes;
    nodes.reserve(outline.points.size() * (slices + 1) + 2);
    nodes.push_back(beam.node1);
    for (int ring = 0; ring <= slices; ++ring) {
        for (const OutlinePoint& point : outline.points) {
            const Vector3 inSection = point.y * frame[1] + point.z * frame[2];
            nodes.push_back(beam.node1 + inSection + (ring * axis) / slices);
        }
    }
    nodes.push_back(beam.node2);
    return nodes;
}

std::vector<SectionPatch> SectionPatches(const SectionOutline& outline, int slices)
{
    const int points = static_cast<int>(outline.points.size());
    std::vector<SectionPatch> patches;
    patches.reserve(outline.segments.size() * slices);
    for (int slice = 0; slice < slices; ++slice) {
        const int ring = 1 + slice * points; // first node of this ring
        for (const OutlineSegment& segment : outline.segments) {
            SectionPatch patch;
            patch.nodes[0] = ring + segment.from;
            patch.nodes[1] = ring + points + segment.from;
            patch.nodes[2] = ring + points + segment.to;
            patch.nodes[3] = ring + segment.to;
            patch.thickness = segment.thickness;
            patches.push_back(patch);
        }
    }
    return patches;
}

// One link from each beam end to every outline point of its ring.
void SetUpLinks(const BeamElement& beam, const std::vector<Vector3>& nodes, int points, std::vector<Link>& links)
{
    const Vector3 axis = beam.node2 - beam.node1;
    const int last = static_cast<int>(nodes.size()) - 1;
    links.clear();
    const auto addLinks = [&](int end, int firstOfRing) {
        for (int i = 0; i < points; ++i) {
            Link link;
            link.nodes = {end, firstOfRing + i};
            TubeBeamSetUp(link.element, nodes[end], nodes[firstOfRing + i], nodes[end] + axis, LinkMaterial,
                          LinkSection, 0.0);
            links.push_back(link);
        }
    };
    addLinks(0, 1);
    addLinks(last, last - points);
}

void SetUpWalls(const BeamElement& beam, const BeamSectionModel& section, std::vector<QuadShellElement>& walls)
{
    walls.resize(section.patches.size());
    for (std::size_t p = 0; p < walls.size(); ++p) {
        const SectionPatch& patch = section.patches[p];
        Vector3 corners[QuadNodeCount];
        for (int i = 0; i < QuadNodeCount; ++i) { corners[i] = section.nodes[patch.nodes[i]]; }
        QuadShellSetUp(walls[p], corners, QuadNodeCount, beam.E, beam.Mu, 0.0, patch.thickness);
    }
}

// Profile and zeroed matrix. Links that are left out of the matrix still count in the profile.
void LayOutSystem(const BeamSectionModel& section, SectionSystem& system)
{
    const std::size_t equations = DofsPerNode * section.nodes.size();
    system.columnHeight.assign(equations, 1);
    for (const SectionPatch& patch : section.patches) {
        int map[QuadDofCount];
        ElementDofMap<QuadNodeCount>(patch.nodes, map);
        RaiseColumns(map, QuadDofCount, system.columnHeight);
    }
    for (const Link& link : system.links) {
        int map[BeamDofCount];
        ElementDofMap<BeamNodeCount>(link.nodes.data(), map);
        RaiseColumns(map, BeamDofCount, system.columnHeight);
    }
    system.diagonalAddress = DiagonalAddresses(system.columnHeight);
    system.stiffness.assign(SkylineEntries(system.columnHeight), 0.0);
    system.load.assign(equations, 0.0);
}

void AssembleWalls(const BeamSectionModel& section, SectionSystem& system)
{
    const int wallCount = static_cast<int>(system.walls.size());
    for (int first = 0; first < wallCount; first += ShellBatch) {
        const int count = std::min(ShellBatch, wallCount - first);
        const QuadShellElement* batch[ShellBatch];
        double K[ShellBatch][QuadDofCount][QuadDofCount];
        for (int e = 0; e < count; ++e) { batch[e] = &system.walls[first + e]; }
        QuadShellStiffnessBatch(batch, count, K);
        for (int e = 0; e < count; ++e) {
            int map[QuadDofCount];
            ElementDofMap<QuadNodeCount>(section.patches[first + e].nodes, map);
            AddElementMatrix(&K[e][0][0], map, QuadDofCount, system.diagonalAddress, system.stiffness);
        }
    }
}

void AssembleLinks(double leadingSize, SectionSystem& system)
{
    for (const Link& link : system.links) {
        if (BeamLength(link.element) < LinkTolerance * leadingSize) {
            continue;
        }
        double K[BeamDofCount][BeamDofCount];
        int map[BeamDofCount];
        BeamStiffness(link.element, K);
        ElementDofMap<BeamNodeCount>(link.nodes.data(), map);
        AddElementMatrix(&K[0][0], map, BeamDofCount, system.diagonalAddress, system.stiffness);
    }
}

// The diagonal is replaced, not added to.
void PrescribeDisplacements(int node, const double u[DofsPerNode], SectionSystem& system)
{
    for (int k = 0; k < DofsPerNode; ++k) {
        const int equation = DofsPerNode * node + k;
        system.stiffness[system.diagonalAddress[equation]] = DisplacementPenalty * DisplacementPenalty;
        system.load[equation] = u[k] * DisplacementPenalty * DisplacementPenalty;
    }
}

// A beam end, and the first of the nodes from `firstNear` on that lies on it.
void PrescribeEnd(const BeamSectionModel& section, int end, int firstNear, const double u[DofsPerNode],
                  double leadingSize, SectionSystem& system)
{
    PrescribeDisplacements(end, u, system);
    for (int n = firstNear; n < firstNear + NearEndSearch; ++n) {
        if (Length(section.nodes[n] - section.nodes[end]) < LinkTolerance * leadingSize) {
            PrescribeDisplacements(n, u, system);
            break;
        }
    }
}

void RecoverPatchStresses(const std::vector<QuadShellElement>& walls, BeamSectionModel& section)
{
    for (std::size_t p = 0; p < walls.size(); ++p) {
        SectionPatch& patch = section.patches[p];
        patch.normal = walls[p].axes[2];
        double d[QuadDofCount];
        GatherDisplacements<QuadNodeCount>(patch.nodes, section.displacements, d);
        for (int i = 0; i < QuadNodeCount; ++i) {
            QuadNodeStress(walls[p], patch.positiveFace[i], patch.negativeFace[i], d, QuadNodeXi[i], QuadNodeEta[i]);
        }
    }
}

BeamSectionModel SolveSection(const BeamElement& beam, const SectionOutline& outline,
                              const double endDisplacements[BeamDofCount], SectionSystem& system)
{
    const int slices = static_cast<int>(SliceCount(BeamLength(beam), outline));
    BeamSectionModel section;
    section.nodes = SectionNodes(beam, outline, slices);
    section.patches = SectionPatches(outline, slices);
    SetUpWalls(beam, section, system.walls);
    SetUpLinks(beam, section.nodes, static_cast<int>(outline.points.size()), system.links);

    LayOutSystem(section, system);
    AssembleWalls(section, system);
    AssembleLinks(outline.leadingSize, system);
    const int count = static_cast<int>(section.nodes.size());
    PrescribeEnd(section, 0, 1, endDisplacements, outline.leadingSize, system);
    PrescribeEnd(section, count - 1, count - 1 - NearEndSearch, endDisplacements + DofsPerNode, outline.leadingSize,
                 system);

    const SkylineView matrix = {DofsPerNode * count, system.columnHeight.data(), system.diagonalAddress.data(),
                                system.stiffness.data()};
    section.displacements.resize(system.load.size());
    FactoriseSkyline(matrix);
    ForwardReduce(matrix, system.load.data());
    BackSubstitute(matrix, system.load.data(), section.displacements.data());

    RecoverPatchStresses(system.walls, section);
    return section;
}

bool HasKnownSection(const ModelStore& model, int b)
{
    const int type = model.BeamSectionRefs[b].BeamSecType;
    return type >= TSection && type <= CSection;
}

[[noreturn]] void FailOnUnknownSection(const ModelStore& model, int b)
{
    Warn("beam " + std::to_string(b) + ": error: section type " + std::to_string(model.BeamSectionRefs[b].BeamSecType) +
         "\n"
         "  expected: BeamSecType=0 (T), 1 (L) or 2 (tube)\n"
         "  to do:    correct the record of this beam in the model file, then run again");
    FailWithPause(messages::BeamSectionTypeError);
}

// Memory of a beam's section mesh as it is kept, and the entries of its skyline, as upper bounds.
struct SectionSize {
    double nodes;
    double bytes;
    double entries;
};

SectionSize SizeOfSection(const SectionOutline& outline, double slices)
{
    const double points = static_cast<double>(outline.points.size());
    const double nodes = points * (slices + 1) + 2;
    const double patches = slices * static_cast<double>(outline.segments.size());
    SectionSize size;
    size.nodes = nodes;
    size.bytes = patches * sizeof(SectionPatch) +
                 nodes * (sizeof(Vector3) + sizeof(SectionNodeStress) + DofsPerNode * sizeof(double));
    size.entries = DofsPerNode * nodes * DofsPerNode * 2 * (points + 1); // no column reaches beyond the ring before
    return size;
}

} // namespace

SectionOutline OutlineOfBeam(const ModelStore& model, int b)
{
    const BeamSectionRef& ref = model.BeamSectionRefs[b];
    switch (ref.BeamSecType) {
    case TSection:
        return TOutline(model.TBeamSections[ref.BeamSecIndex], ref.BeamSecOz);
    case LSection:
        return LOutline(model.LBeamSections[ref.BeamSecIndex], ref.BeamSecOz, ref.BeamSecMirrored);
    case CSection:
        return TubeOutline(model.CBeamSections[ref.BeamSecIndex], ref.BeamSecOz);
    default:
        throw std::invalid_argument("beam " + std::to_string(b) + " has section type " +
                                    std::to_string(ref.BeamSecType));
    }
}

double SliceCount(double length, const SectionOutline& outline)
{
    const double slices = std::floor(length / LongestSegment(outline));
    return slices >= 1.0 && std::isfinite(slices) ? slices : 1.0;
}

BeamSectionModel SolveBeamSection(const BeamElement& beam, const SectionOutline& outline,
                                  const double endDisplacements[BeamDofCount])
{
    SectionSystem system;
    return SolveSection(beam, outline, endDisplacements, system);
}

SectionMeshSize MeasureSectionMeshes(const ModelStore& model)
{
    const double available = static_cast<double>(platform::AvailableMemory());
    SectionMeshSize sum;
    // As many systems as there are threads may be in memory at once: at worst the largest ones.
    std::priority_queue<double, std::vector<double>, std::greater<>> largest;
    double meshBytes = 0.0, entriesAtOnce = 0.0;
    char text[500];
    for (int b = 0; b < model.NELEM_B && HasKnownSection(model, b) && sum.fault.empty(); ++b) {
        const SectionOutline outline = OutlineOfBeam(model, b);
        const double slices = SliceCount(BeamLength(model.BeamElements[b]), outline);
        const SectionSize size = SizeOfSection(outline, slices);
        meshBytes += size.bytes;
        largest.push(size.entries);
        entriesAtOnce += size.entries;
        if (static_cast<int>(largest.size()) > ThreadCount()) {
            entriesAtOnce -= largest.top();
            largest.pop();
        }
        sum.nodes += size.nodes;
        sum.patches += slices * static_cast<double>(outline.segments.size());
        sum.systemBytes = entriesAtOnce * sizeof(double);
        sum.bytes = meshBytes + sum.systemBytes;
        if (size.entries > static_cast<double>(SkylineLimit)) {
            std::snprintf(text, sizeof text,
                          "the section mesh of beam %d would have %.6g slices along the beam, too many to solve\n"
                          "  expected: a section whose longest wall segment is not tiny against the beam's length\n"
                          "  to do:    correct the section's sizes (Hw, Bf or R), or divide the beam",
                          b, slices);
            sum.fault = text;
        } else if (available > 0.0 && sum.bytes > available) {
            std::snprintf(text, sizeof text,
                          "the section meshes of beams 0 to %d would take %.3g GB or more\n"
                          "  expected: at most %.3g GB, the memory that is free now\n"
                          "  to do:    check that sections and lengths are in one unit, close other programs, or leave "
                          "out beams whose\n            wall stresses are not needed",
                          b, sum.bytes * BytesToGigabytes, available * BytesToGigabytes);
            sum.isBeyondMemory = true;
            sum.fault = text;
        }
    }
    return sum;
}

void RequireBeamSections(const ModelStore& model)
{
    const std::string fault = MeasureSectionMeshes(model).fault;
    if (!fault.empty()) {
        FailWithDiagnostic(("error: " + fault).c_str());
    }
    for (int b = 0; b < model.NELEM_B; ++b) {
        if (!HasKnownSection(model, b)) {
            FailOnUnknownSection(model, b);
        }
    }
}

void RecoverBeamSectionStresses(ModelStore& model)
{
    const std::size_t beams = static_cast<std::size_t>(model.NELEM_B);
    model.BeamStressRecords.clear();
    model.BeamStressRecords.resize(beams);
    ParallelFor(beams, BeamsPerRange, [&model](std::size_t begin, std::size_t end) {
        SectionSystem system;
        for (std::size_t b = begin; b < end; ++b) {
            const SectionOutline outline = OutlineOfBeam(model, static_cast<int>(b));
            double d[BeamDofCount];
            GatherDisplacements<BeamNodeCount>(model.BeamConnectivity[b].data(), model.GlobalDisplacement, d);
            model.BeamStressRecords[b] = SolveSection(model.BeamElements[b], outline, d, system);
        }
    });
    AverageBeamJoints(model);
}

} // namespace tarnvexo

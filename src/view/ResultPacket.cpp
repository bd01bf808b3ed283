#include "view/ResultPacket.h"

#include "elements/BeamSection.h"
#include "elements/ShellPressureLoad.h"
#include "elements/ShellTransform.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <nlohmann/json.hpp>

namespace tarnvexo {

namespace {

static_assert(std::endian::native == std::endian::little, "the arrays of a packet are written as they stand in memory");

using Json = nlohmann::ordered_json;
using Floats = std::vector<float>;
using Numbers = std::vector<std::uint32_t>;

constexpr std::size_t Alignment = 8;

// A negative zero becomes a zero, so that both give the same vertex.
float Single(double value)
{
    constexpr double largest = std::numeric_limits<float>::max();
    if (std::fabs(value) > largest) {
        return std::copysign(std::numeric_limits<float>::infinity(), static_cast<float>(value > 0.0 ? 1.0 : -1.0));
    }
    return static_cast<float>(value) + 0.0f;
}

template <class Values> void Append(Floats& array, const Values& values)
{
    for (const double value : values) { array.push_back(Single(value)); }
}

std::uint32_t Number(std::size_t value)
{
    return static_cast<std::uint32_t>(value);
}

// ---- the packet being put together

class PacketWriter {
public:
    Json head;

    void Add(const char* name, const Floats& array) { Add(name, "f32", array.data(), array.size()); }
    void Add(const char* name, const Numbers& array) { Add(name, "u32", array.data(), array.size()); }

    std::string Packet() const
    {
        // A title that is not UTF-8 shows marks in place of its bytes.
        std::string text = head.dump(-1, ' ', false, Json::error_handler_t::replace);
        constexpr std::string_view magic = "TVXRES1\n";
        constexpr std::size_t fixed = magic.size() + sizeof(std::uint32_t);
        text.append((Alignment - (fixed + text.size()) % Alignment) % Alignment, ' ');
        const std::uint32_t length = Number(text.size());
        std::string packet;
        packet.reserve(fixed + text.size() + arrays.size());
        packet += magic;
        packet.append(reinterpret_cast<const char*>(&length), sizeof length);
        packet += text;
        packet += arrays;
        return packet;
    }

private:
    void Add(const char* name, const char* type, const void* items, std::size_t count)
    {
        constexpr std::size_t itemSize = 4;
        head["arrays"][name] = {{"type", type}, {"offset", arrays.size()}, {"length", count}};
        arrays.append(static_cast<const char*>(items), count * itemSize);
        arrays.append((Alignment - arrays.size() % Alignment) % Alignment, '\0');
    }

    std::string arrays;
};

// ---- nodes and vertices

struct Nodes {
    Floats coordinates;
    Floats displacements;

    void Add(const ContourNodes& nodes)
    {
        for (const Vector3& point : nodes.coordinates) { Append(coordinates, point); }
        for (const ContourDisplacement& displacement : nodes.displacements) { Append(displacements, displacement); }
    }

    std::size_t Count() const { return coordinates.size() / 3; }
};

// Finds equal vertices by a hash table with open addresses, at most half full.
class VertexTable {
public:
    Numbers nodes;
    Floats positiveFace;
    Floats negativeFace;

    std::uint32_t NumberOf(std::size_t node, const ContourStress& positive, const ContourStress& negative)
    {
        Vertex vertex;
        vertex.node = Number(node);
        for (std::size_t k = 0; k < ContourStressCount; ++k) {
            vertex.positive[k] = Single(positive[k]);
            vertex.negative[k] = Single(negative[k]);
        }
        if (2 * nodes.size() >= slots.size()) {
            Grow();
        }
        std::size_t slot = FirstSlot(vertex);
        while (slots[slot] != Empty && !IsAt(slots[slot], vertex)) { slot = (slot + 1) % slots.size(); }
        if (slots[slot] == Empty) {
            slots[slot] = Number(nodes.size());
            nodes.push_back(vertex.node);
            positiveFace.insert(positiveFace.end(), vertex.positive, vertex.positive + ContourStressCount);
            negativeFace.insert(negativeFace.end(), vertex.negative, vertex.negative + ContourStressCount);
        }
        return slots[slot];
    }

private:
    static constexpr std::uint32_t Empty = 0xFFFFFFFF;
    static constexpr std::size_t FirstSize = 1024; // a power of two, as all sizes

    struct Vertex {
        std::uint32_t node;
        float positive[ContourStressCount];
        float negative[ContourStressCount];
    };

    // Bytes are compared, not numbers: of two faces that are not numbers, equal ones are the same.
    bool IsAt(std::uint32_t number, const Vertex& vertex) const
    {
        return nodes[number] == vertex.node &&
               std::memcmp(&positiveFace[number * ContourStressCount], vertex.positive, sizeof vertex.positive) == 0 &&
               std::memcmp(&negativeFace[number * ContourStressCount], vertex.negative, sizeof vertex.negative) == 0;
    }

    // FNV-1a, word by word, then the high bits into the low ones that choose the slot.
    std::size_t FirstSlot(const Vertex& vertex) const
    {
        std::uint32_t words[sizeof vertex / sizeof(std::uint32_t)];
        std::memcpy(words, &vertex, sizeof vertex);
        std::uint64_t hash = 0xCBF29CE484222325;
        for (const std::uint32_t word : words) { hash = (hash ^ word) * 0x100000001B3; }
        return static_cast<std::size_t>(hash ^ hash >> 32) % slots.size();
    }

    void Grow()
    {
        slots.assign(slots.empty() ? FirstSize : 2 * slots.size(), Empty);
        for (std::size_t v = 0; v < nodes.size(); ++v) {
            Vertex vertex;
            vertex.node = nodes[v];
            std::memcpy(vertex.positive, &positiveFace[v * ContourStressCount], sizeof vertex.positive);
            std::memcpy(vertex.negative, &negativeFace[v * ContourStressCount], sizeof vertex.negative);
            std::size_t slot = FirstSlot(vertex);
            while (slots[slot] != Empty) { slot = (slot + 1) % slots.size(); }
            slots[slot] = Number(v);
        }
    }

    std::vector<std::uint32_t> slots;
};

template <int N>
void AddShells(const ContourShells<N>& shells, std::size_t firstNode, VertexTable& vertices, Numbers& elements)
{
    for (std::size_t e = 0; e < shells.connectivity.size(); ++e) {
        for (std::size_t i = 0; i < N; ++i) {
            elements.push_back(vertices.NumberOf(firstNode + static_cast<std::size_t>(shells.connectivity[e][i]),
                                                 shells.positiveFace[e][i], shells.negativeFace[e][i]));
        }
    }
}

void AddResults(const ContourModel& contour, PacketWriter& packet)
{
    Nodes nodes;
    VertexTable vertices;
    Numbers quads, tris;
    nodes.Add(contour.nodes);
    AddShells(contour.quads, 0, vertices, quads);
    AddShells(contour.tris, 0, vertices, tris);
    Floats ends;
    Numbers wallBegin = {Number(contour.quads.connectivity.size())};
    Numbers nodeBegin = {Number(nodes.Count())};
    for (const ContourBeam& beam : contour.beams) {
        Append(ends, beam.end1);
        Append(ends, beam.end2);
        AddShells(beam.walls, nodes.Count(), vertices, quads);
        nodes.Add(beam.nodes);
        wallBegin.push_back(Number(quads.size() / QuadNodeCount));
        nodeBegin.push_back(Number(nodes.Count()));
    }
    packet.head["structureNodes"] = contour.nodes.coordinates.size();
    packet.head["shellQuads"] = contour.quads.connectivity.size();
    packet.head["beamCount"] = contour.beams.size();
    packet.Add("coordinates", nodes.coordinates);
    packet.Add("displacements", nodes.displacements);
    packet.Add("vertexNodes", vertices.nodes);
    packet.Add("positiveFace", vertices.positiveFace);
    packet.Add("negativeFace", vertices.negativeFace);
    packet.Add("quads", quads);
    packet.Add("tris", tris);
    packet.Add("beamEnds", ends);
    packet.Add("beamWallBegin", wallBegin);
    packet.Add("beamNodeBegin", nodeBegin);
}

// ---- stresses of the elements themselves

template <int N> Floats FaceStresses(const std::vector<std::array<ContourStress, N>>& face)
{
    Floats stresses;
    stresses.reserve(face.size() * N * ContourStressCount);
    for (const std::array<ContourStress, N>& element : face) {
        for (const ContourStress& stress : element) { Append(stresses, stress); }
    }
    return stresses;
}

void AddOwnStresses(const ShellStresses& own, PacketWriter& packet)
{
    packet.Add("ownQuadPositive", FaceStresses<QuadNodeCount>(own.quads.positiveFace));
    packet.Add("ownQuadNegative", FaceStresses<QuadNodeCount>(own.quads.negativeFace));
    packet.Add("ownTriPositive", FaceStresses<TriNodeCount>(own.tris.positiveFace));
    packet.Add("ownTriNegative", FaceStresses<TriNodeCount>(own.tris.negativeFace));
}

// ---- what the model file says

// "T 200x8/100x15": height and thickness of the web, width and thickness of the flange.
std::string WebFlangeText(char type, const WebFlangeSection& s)
{
    char text[128];
    std::snprintf(text, sizeof text, "%c %gx%g/%gx%g", type, s.Hw, s.Tw, s.Bf, s.Tf);
    return text;
}

// "tube R50x3": mean radius and thickness of the wall.
std::string TubeText(const CBeamSection& s)
{
    char text[128];
    std::snprintf(text, sizeof text, "tube R%gx%g", s.R, s.T);
    return text;
}

Json SectionTexts(const ModelStore& model)
{
    Json texts = Json::array();
    for (const TBeamSection& section : model.TBeamSections) { texts.push_back(WebFlangeText('T', section)); }
    for (const LBeamSection& section : model.LBeamSections) { texts.push_back(WebFlangeText('L', section)); }
    for (const CBeamSection& section : model.CBeamSections) { texts.push_back(TubeText(section)); }
    return texts;
}

std::uint32_t SectionNumber(const ModelStore& model, const BeamSectionRef& section)
{
    const std::size_t first = section.BeamSecType == TSection ? 0
                              : section.BeamSecType == LSection
                                  ? model.TBeamSections.size()
                                  : model.TBeamSections.size() + model.LBeamSections.size();
    return Number(first + static_cast<std::size_t>(section.BeamSecIndex));
}

void AddShellProperties(const std::vector<ShellPropertyRef>& shells, const char* thicknessName,
                        const char* materialName, PacketWriter& packet)
{
    Numbers thickness, material;
    for (const ShellPropertyRef& shell : shells) {
        thickness.push_back(Number(static_cast<std::size_t>(shell.thickness)));
        material.push_back(Number(static_cast<std::size_t>(shell.material)));
    }
    packet.Add(thicknessName, thickness);
    packet.Add(materialName, material);
}

void AddBeamProperties(const ModelStore& model, PacketWriter& packet)
{
    Numbers section, material, nodes;
    for (std::size_t b = 0; b < model.BeamProperties.size(); ++b) {
        section.push_back(SectionNumber(model, model.BeamSectionRefs[b]));
        material.push_back(Number(static_cast<std::size_t>(model.BeamProperties[b].material)));
        for (const int node : model.BeamConnectivity[b]) { nodes.push_back(Number(static_cast<std::size_t>(node))); }
    }
    packet.Add("beamSection", section);
    packet.Add("beamMaterial", material);
    packet.Add("beamNodes", nodes);
}

void AddSupportsAndForces(const ModelStore& model, const std::vector<double>& inertiaForces, PacketWriter& packet)
{
    Numbers supportNodes, supportBits, forceNodes;
    for (const Restraint& restraint : model.Restraints) {
        std::uint32_t bits = 0;
        for (int dof = 0; dof < DofsPerNode; ++dof) { bits |= restraint.flags[dof] == 1 ? 1u << dof : 0u; }
        supportNodes.push_back(Number(static_cast<std::size_t>(restraint.node)));
        supportBits.push_back(bits);
    }
    Floats forces, inertia;
    for (const NodalForce& force : model.NodalForces) {
        forceNodes.push_back(Number(static_cast<std::size_t>(force.node)));
        Append(forces, force.components);
    }
    Append(inertia, inertiaForces);
    packet.Add("supportNodes", supportNodes);
    packet.Add("supportBits", supportBits);
    packet.Add("forceNodes", forceNodes);
    packet.Add("forces", forces);
    packet.Add("inertiaForces", inertia);
}

// The pressure at the fourth node follows from those at the first three, as in the element's load vector.
void AddQuadPressures(const ModelStore& model, PacketWriter& packet)
{
    Numbers elements;
    Floats pressures;
    for (const ShellDistributedLoad& load : model.QuadDistributedLoads) {
        const std::size_t element = static_cast<std::size_t>(load.element);
        double x[QuadNodeCount], y[QuadNodeCount];
        LocalShellCoordinates(model.QuadElements[element], x, y);
        elements.push_back(Number(element));
        Append(pressures, load.pressure);
        pressures.push_back(Single(PressureInPlane(x, y, load.pressure, x[3], y[3])));
    }
    packet.Add("quadPressureElements", elements);
    packet.Add("quadPressures", pressures);
}

void AddTriPressures(const ModelStore& model, PacketWriter& packet)
{
    Numbers elements;
    Floats pressures;
    for (const ShellDistributedLoad& load : model.TriDistributedLoads) {
        elements.push_back(Number(static_cast<std::size_t>(load.element)));
        Append(pressures, load.pressure);
    }
    packet.Add("triPressureElements", elements);
    packet.Add("triPressures", pressures);
}

void AddLineLoads(const ModelStore& model, PacketWriter& packet)
{
    Numbers beams;
    Floats loads, directions;
    for (const BeamDistributedLoad& load : model.BeamDistributedLoads) {
        const std::size_t beam = static_cast<std::size_t>(load.element);
        Vector3 frame[3];
        BeamFrame(model.BeamElements[beam], frame);
        beams.push_back(Number(beam));
        Append(loads, std::initializer_list<double>{load.q1, load.q2});
        Append(directions, frame[2]);
    }
    packet.Add("lineLoadBeams", beams);
    packet.Add("lineLoads", loads);
    packet.Add("lineLoadDirections", directions);
}

void AddModel(const ModelStore& model, const std::vector<double>& inertiaForces, PacketWriter& packet)
{
    packet.head["thicknesses"] = model.Thicknesses;
    packet.head["sections"] = SectionTexts(model);
    packet.head["materials"] = Json::array();
    for (const Material& material : model.Materials) {
        packet.head["materials"].push_back({{"E", material.E}, {"Mu", material.Mu}, {"Density", material.Density}});
    }
    AddShellProperties(model.QuadProperties, "quadThickness", "quadMaterial", packet);
    AddShellProperties(model.TriProperties, "triThickness", "triMaterial", packet);
    AddBeamProperties(model, packet);
    AddSupportsAndForces(model, inertiaForces, packet);
    AddQuadPressures(model, packet);
    AddTriPressures(model, packet);
    AddLineLoads(model, packet);
}

} // namespace

std::string ResultPacket(const ResultParts& parts)
{
    PacketWriter packet;
    packet.head["title"] = parts.title;
    AddResults(parts.contour, packet);
    if (parts.hasOwnStresses) {
        AddOwnStresses(parts.ownStresses, packet);
    }
    if (parts.hasModel) {
        AddModel(parts.model, parts.inertiaForces, packet);
    }
    if (!parts.view.empty()) {
        packet.head["view"] = parts.view;
    }
    return packet.Packet();
}

} // namespace tarnvexo

#include "input/ContourFileReader.h"

#include "core/NumberText.h"
#include "input/FileText.h"
#include "input/PlainScan.h"
#include "input/ScanDiagnostics.h"

#include <charconv>
#include <climits>
#include <cstring>

namespace tarnvexo {

namespace {

// Bytes of the shortest lines: "0,0,0", "0,0,0,0,0,0,0" and so on, each with its line end.
constexpr std::size_t ShortestLine(int values)
{
    return 2 * std::size_t(values);
}
constexpr std::size_t ShortestNode = ShortestLine(3) + ShortestLine(DofsPerNode);
template <int Nodes>
constexpr std::size_t ShortestShell = ShortestLine(Nodes) + 2 * Nodes* ShortestLine(ContourStressCount);
constexpr std::size_t ShortestBeam = std::string_view("BEI=0\nSND(0,0,0)\nEND(0,0,0)\nNPOIN=0\nNELEM=0\n").size();

// What one reading is about, for messages: "displacements of node 7 of the walls of beam 2".
struct Place {
    const char* record = ""; // empty: a line that every file has
    std::size_t number = 0;
    bool inBeam = false;
    std::size_t beam = 0;
};

class ContourTextReader {
public:
    ContourTextReader(ContourModel& model, std::string_view text, const char* fileName)
        : model(model), source{text, fileName}, at(text.data()), end(text.data() + text.size())
    {
    }

    // True when all of the text has been taken; otherwise Fault tells what is wrong.
    bool Read();
    const std::string& Fault() const { return fault; }

private:
    bool ReadNodes(ContourNodes& nodes);
    template <int Nodes>
    bool ReadShells(const char* key, const char* kind, ContourShells<Nodes>& shells, std::size_t nodeCount);
    bool ReadBeam(ContourBeam& beam, std::size_t number);
    bool ReadBeamEnd(const char* key, Vector3& point);

    // Each takes its text and what ends it, or reports the fault at its place and returns false.
    bool TakeCount(const char* key, std::size_t shortestRecord, const char* records, std::size_t& count);
    bool TakeText(const char* text);
    bool TakeLineEnd();
    bool TakeInteger(int& value);
    bool TakeNumber(double& value);
    template <class Values> bool TakeNumbers(Values& values);
    template <class Nodes> bool TakeNodeNumbers(Nodes& nodes, std::size_t nodeCount);

    bool Mismatch(const char* position, const std::string& expected);
    bool Report(const char* position, const std::string& what, const std::string& expected);
    std::size_t BytesLeft() const { return std::size_t(end - at); }

    ContourModel& model;
    NamedText source;
    const char* at;
    const char* end;
    Place place;
    std::string fault;
};

bool ContourTextReader::Read()
{
    if (!ReadNodes(model.nodes)) {
        return false;
    }
    const std::size_t nodeCount = model.nodes.coordinates.size();
    std::size_t beamCount = 0;
    if (!ReadShells("NELEM_S_4ND=", "four-node shell", model.quads, nodeCount) ||
        !ReadShells("NELEM_S_3ND=", "three-node shell", model.tris, nodeCount) ||
        !TakeCount("NELEM_B=", ShortestBeam, "beams", beamCount)) {
        return false;
    }
    model.beams.assign(beamCount, {});
    for (std::size_t b = 0; b < beamCount; ++b) {
        if (!ReadBeam(model.beams[b], b)) {
            return false;
        }
    }
    place = {};
    return at == end || Mismatch(at, "the end of the file behind the last beam");
}

bool ContourTextReader::ReadNodes(ContourNodes& nodes)
{
    std::size_t count = 0;
    if (!TakeCount("NPOIN=", ShortestNode, "nodes", count)) {
        return false;
    }
    nodes.coordinates.assign(count, {});
    nodes.displacements.assign(count, {});
    place.record = "coordinates of node";
    for (std::size_t n = 0; n < count; ++n) {
        place.number = n;
        if (!TakeNumbers(nodes.coordinates[n]) || !TakeLineEnd()) {
            return false;
        }
    }
    place.record = "displacements of node";
    for (std::size_t n = 0; n < count; ++n) {
        place.number = n;
        if (!TakeNumbers(nodes.displacements[n]) || !TakeLineEnd()) {
            return false;
        }
    }
    place.record = "";
    return true;
}

template <int Nodes>
bool ContourTextReader::ReadShells(const char* key, const char* kind, ContourShells<Nodes>& shells,
                                   std::size_t nodeCount)
{
    std::size_t count = 0;
    if (!TakeCount(key, ShortestShell<Nodes>, "elements", count)) {
        return false;
    }
    shells.connectivity.assign(count, {});
    shells.positiveFace.assign(count, {});
    shells.negativeFace.assign(count, {});
    place.record = kind;
    for (std::size_t e = 0; e < count; ++e) {
        place.number = e;
        if (!TakeNodeNumbers(shells.connectivity[e], nodeCount)) {
            return false;
        }
        for (int i = 0; i < Nodes; ++i) {
            if (!TakeNumbers(shells.positiveFace[e][i]) || !TakeLineEnd() || //
                !TakeNumbers(shells.negativeFace[e][i]) || !TakeLineEnd()) {
                return false;
            }
        }
    }
    place.record = "";
    return true;
}

bool ContourTextReader::ReadBeam(ContourBeam& beam, std::size_t number)
{
    place = {"", 0, true, number};
    const std::string head = Joined({"BEI=", std::to_string(number)});
    return TakeText(head.c_str()) && TakeLineEnd() && ReadBeamEnd("SND(", beam.end1) &&
           ReadBeamEnd("END(", beam.end2) && ReadNodes(beam.nodes) &&
           ReadShells("NELEM=", "wall", beam.walls, beam.nodes.coordinates.size());
}

bool ContourTextReader::ReadBeamEnd(const char* key, Vector3& point)
{
    return TakeText(key) && TakeNumbers(point) && TakeText(")") && TakeLineEnd();
}

bool ContourTextReader::TakeCount(const char* key, std::size_t shortestRecord, const char* records, std::size_t& count)
{
    if (!TakeText(key)) {
        return false;
    }
    const char* position = at;
    int value = 0;
    if (!TakeInteger(value) || !TakeLineEnd()) {
        return false;
    }
    count = std::size_t(value);
    const std::size_t most = BytesLeft() / shortestRecord;
    if (count <= most) {
        return true;
    }
    return Report(position,
                  Joined({key, std::to_string(value), ", but the rest of the file cannot hold so many ", records}),
                  Joined({"at most ", std::to_string(most), " (", std::to_string(BytesLeft()),
                          " bytes follow, each takes ", std::to_string(shortestRecord), " or more)"}));
}

bool ContourTextReader::TakeText(const char* text)
{
    const std::size_t size = std::strlen(text);
    if (BytesLeft() < size || std::memcmp(at, text, size) != 0) {
        return Mismatch(at, Joined({"\"", text, "\""}));
    }
    at += size;
    return true;
}

bool ContourTextReader::TakeLineEnd()
{
    const char* lineFeed = BytesLeft() >= 2 && *at == '\r' ? at + 1 : at;
    if (lineFeed == end || *lineFeed != '\n') {
        return Mismatch(at, "the end of the line");
    }
    at = lineFeed + 1;
    return true;
}

// A count or a number of a node: 0 or more, without zeros in front.
bool ContourTextReader::TakeInteger(int& value)
{
    const auto [next, error] = std::from_chars(at, end, value);
    if (error != std::errc() || *at == '-' || (*at == '0' && next - at > 1)) {
        return Mismatch(at, Joined({"an integer from 0 to ", std::to_string(INT_MAX)}));
    }
    at = next;
    return true;
}

bool ContourTextReader::TakeNumber(double& value)
{
    const char* next = at;
    bool isNumber = BytesLeft() >= plain::FieldReach && plain::ReadField(next, value);
    if (!isNumber) {
        const std::from_chars_result general = std::from_chars(at, end, value);
        isNumber = general.ec == std::errc();
        next = general.ptr;
    }
    if (isNumber) {
        char text[NumberTextCapacity];
        const std::size_t size = std::size_t(WriteNumber(text, value) - text);
        isNumber = size == std::size_t(next - at) && std::memcmp(text, at, size) == 0;
    }
    if (!isNumber) {
        return Mismatch(at, "a number in general notation with six significant digits, as \"-1.5\" or \"2e-07\"");
    }
    at = next;
    return true;
}

// With commas between them.
template <class Values> bool ContourTextReader::TakeNumbers(Values& values)
{
    for (std::size_t i = 0; i < values.size(); ++i) {
        if ((i > 0 && !TakeText(",")) || !TakeNumber(values[i])) {
            return false;
        }
    }
    return true;
}

// With commas between them, and the line's end.
template <class Nodes> bool ContourTextReader::TakeNodeNumbers(Nodes& nodes, std::size_t nodeCount)
{
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (i > 0 && !TakeText(",")) {
            return false;
        }
        const char* position = at;
        if (!TakeInteger(nodes[i])) {
            return false;
        }
        if (std::size_t(nodes[i]) >= nodeCount) {
            return Mismatch(position, Joined({"a node number below ", std::to_string(nodeCount)}));
        }
    }
    return TakeLineEnd();
}

bool ContourTextReader::Mismatch(const char* position, const std::string& expected)
{
    std::string where = place.record;
    if (!where.empty()) {
        where = Joined({where, " ", std::to_string(place.number)});
    }
    if (place.inBeam) {
        where = Joined({where, where.empty() ? "beam " : " of beam ", std::to_string(place.beam)});
    }
    const char* what = "the text does not match the format of the contour file";
    return Report(position, where.empty() ? what : Joined({where, ": ", what}), expected);
}

bool ContourTextReader::Report(const char* position, const std::string& what, const std::string& expected)
{
    fault = FaultMessage(source, {std::size_t(position - source.text.data()), what, expected,
                                  "solve the model again; the file was cut off or altered"});
    return false;
}

} // namespace

std::string ReadContourText(ContourModel& model, std::string_view text, const char* fileName)
{
    model = {};
    ContourTextReader reader(model, text, fileName);
    return reader.Read() ? std::string() : reader.Fault();
}

std::optional<std::string> TryReadContourFile(ContourModel& model, const char* fileName)
{
    const FileText file(fileName);
    if (!file.IsRead()) {
        return std::nullopt;
    }
    return ReadContourText(model, file.Bytes(), fileName);
}

} // namespace tarnvexo
